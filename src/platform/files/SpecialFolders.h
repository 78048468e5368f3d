#pragma once

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// The user's folder for settings: $XDG_CONFIG_HOME if that is an absolute path, else ~/.config
// (https://specifications.freedesktop.org/basedir-spec/latest). Created with mode 0700 if it is missing.
// Never nil; if the folder can't be created, the item doesn't exist.
Ref<FolderItem> PreferencesFolder();

// The program's folder for temporary files: a folder named after the user's id in $TMPDIR if that is an
// absolute path, else in /tmp. Created with mode 0700 if it is missing. Nil if it can't be created, and if
// what is there is no folder, belongs to another user or lets others write: everybody may write to /tmp, and
// programs are unpacked and run from here, so nobody else may control the content. If others can only read
// it, its mode is set to 0700. Call this each time that something is put into it, since it may have changed.
Ref<FolderItem> TemporaryFolder();

// The same folder, but it is not created: nil if it is missing.
Ref<FolderItem> ExistingTemporaryFolder();

}  // namespace varnith
