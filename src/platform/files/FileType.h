#pragma once

#include <string>

namespace varnith {

// A kind of file that the program writes, as a dialog is told of it.
class FileType {
  public:
    // What the names of such files end in, with the dot.
    std::string Extensions;
    // What the user reads.
    std::string Name;

    // The type as text: "Name (*.extension)".
    std::string Text() const { return Name + " (*" + Extensions + ")"; }
};

}  // namespace varnith
