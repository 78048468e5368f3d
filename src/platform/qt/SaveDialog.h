#pragma once

#include <QString>
#include <optional>
#include <string>

namespace varnith {

// Lets the user choose a file to write; see Desktop::ChooseFileToWrite. The dialog opens in `folder`, and
// `folder` becomes the one of the chosen file.
std::optional<std::string> AskForFileToWrite(const std::string& filter, const std::string& name,
                                             QString& folder);

}  // namespace varnith
