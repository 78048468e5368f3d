#pragma once

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// Opens a document or folder in the application that the desktop assigns to it, and brings that one to the
// front if asked for. The item itself is never run, whatever its mode says. Failure is silent. REQUIRES: item
// is not nil (NilObjectException).
void LaunchDocument(const Ref<FolderItem>& item, bool to_front);

}  // namespace varnith
