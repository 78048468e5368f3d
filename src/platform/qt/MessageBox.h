#pragma once

#include <string>

namespace varnith {

// Shows a message (UTF-8, plain text) in a modal dialog with one button, which runs a nested event loop until
// the user closes it. A long text scrolls.
void ShowMessageBox(const std::string& text);

}  // namespace varnith
