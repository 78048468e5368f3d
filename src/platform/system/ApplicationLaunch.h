#pragma once

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// Starts an application, a bundle folder or a plain executable, as a process of its own that lives on after
// this program. While that process lives, a further launch of the same item starts no second one and, if
// asked for, brings its windows to the front. Nothing happens for what can't be started.
// A call of its own and no kind of opening a document: what the user finds in a list is never executed.
// REQUIRES: application is not nil (NilObjectException).
void LaunchApplication(const Ref<FolderItem>& application, bool to_front);

}  // namespace varnith
