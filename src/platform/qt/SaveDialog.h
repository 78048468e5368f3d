#pragma once

#include <QString>
#include <optional>
#include <string>

namespace varnith {

// Asks the user where to write a file, see Desktop::ChooseFileToWrite. The dialog shows that folder at first,
// which becomes the one that the user has chosen.
std::optional<std::string> AskForFileToWrite(const std::string& filter, const std::string& name,
                                             QString& folder);

}  // namespace varnith
