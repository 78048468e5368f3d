#pragma once

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// The user's folder for settings: $XDG_CONFIG_HOME if that is an absolute path, else ~/.config
// (https://specifications.freedesktop.org/basedir-spec/latest). Made, for the user alone, if it is missing.
// Never nil; where it can't be made the item leads to nothing.
Ref<FolderItem> PreferencesFolder();

// The program's folder for temporary files, a folder of the user's own below $TMPDIR if that is an absolute
// path, else below /tmp, where everybody may write. It has the same name at every start, and is made with
// mode 0700 if it is missing. Nil if what is there is a link, belongs to someone else or lets others write:
// programs are unpacked and run from here, so nobody else may have a say in what it holds. One that others
// can only read is closed to them. To be asked for when something is put into it, each time anew.
Ref<FolderItem> TemporaryFolder();

// The same folder for whoever only looks into it: nil, too, if it is missing.
Ref<FolderItem> ExistingTemporaryFolder();

}  // namespace varnith
