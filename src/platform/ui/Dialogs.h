#pragma once

#include <string>

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// Shows the folder dialog and returns the choice; nil if the user cancels.
Ref<FolderItem> SelectFolder();

// Shows the save dialog for files of a type, given as the type's text, with a name to offer, and returns the
// choice; nil if the user cancels. The dialog asks before it gives a file that exists.
Ref<FolderItem> GetSaveFolderItem(const std::string& file_type, const std::string& default_name);

// Shows a message with one button and waits for it.
void MsgBox(const std::string& text);

// Sounds the system's signal.
void Beep();

// Opens an address in the user's browser.
void ShowURL(const std::string& url);

}  // namespace varnith
