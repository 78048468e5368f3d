#pragma once

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// Starts an application, a bundle folder or an executable file, as a process that outlives this program. If
// the process of an earlier launch of the same item still runs, no second one is started; `to_front` brings
// its windows to the front instead. Without effect on failure. It is separate from LaunchDocument so that a
// file that the user opens from a list is never executed. REQUIRES: application is not nil
// (NilObjectException).
void LaunchApplication(const Ref<FolderItem>& application, bool to_front);

}  // namespace varnith
