#pragma once

#include <string>

namespace varnith {

// A kind of file that the program writes, for a save dialog.
class FileType {
  public:
    // The file name extension, with the dot.
    std::string Extensions;
    // The name of the type that the dialog shows.
    std::string Name;

    // The type as a dialog's filter: "Name (*.extension)".
    std::string Text() const { return Name + " (*" + Extensions + ")"; }
};

}  // namespace varnith
