#pragma once

#include <string>

namespace varnith {

// Shows a text with one button and waits until the user has seen it. A long one scrolls.
void ShowMessageBox(const std::string& text);

}  // namespace varnith
