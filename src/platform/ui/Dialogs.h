#pragma once

#include <string>

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// Lets the user choose a folder in a modal dialog; nil if the user cancels.
Ref<FolderItem> SelectFolder();

// Lets the user choose a file to write in a modal dialog that suggests default_name; nil if the user cancels.
// file_type has the form "Name (*.extension)". The dialog asks before it accepts an existing file.
Ref<FolderItem> GetSaveFolderItem(const std::string& file_type, const std::string& default_name);

// Shows a message with one button and waits until the user closes it.
void MsgBox(const std::string& text);

// Plays the desktop's alert sound.
void Beep();

// Opens an address in the user's browser.
void ShowURL(const std::string& url);

}  // namespace varnith
