#pragma once

#include <string>

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// Shows the folder dialog and returns the choice; nil if the user cancels.
Ref<FolderItem> SelectFolder();

// Shows a message with one button and waits for it.
void MsgBox(const std::string& text);

// Opens an address in the user's browser.
void ShowURL(const std::string& url);

}  // namespace varnith
