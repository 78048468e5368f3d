#pragma once

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// The user's folder for settings: $XDG_CONFIG_HOME if that is an absolute path, else ~/.config
// (https://specifications.freedesktop.org/basedir-spec/latest). Made, for the user alone, if it is missing.
// Never nil; where it can't be made the item leads to nothing.
Ref<FolderItem> PreferencesFolder();

}  // namespace varnith
