#include "platform/system/DocumentLaunch.h"

#include "platform/ui/Desktop.h"

namespace varnith {

void LaunchDocument(const Ref<FolderItem>& item, bool to_front) {
    Desktop::Current().OpenDocument(item->AbsolutePath(), to_front);
}

}  // namespace varnith
