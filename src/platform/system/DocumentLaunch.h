#pragma once

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// Opens a document or folder in the application that the desktop associates with its type, and with
// `to_front` brings that application to the front. The item itself is never executed, whatever its mode.
// Without effect on failure. REQUIRES: item is not nil (NilObjectException).
void LaunchDocument(const Ref<FolderItem>& item, bool to_front);

}  // namespace varnith
