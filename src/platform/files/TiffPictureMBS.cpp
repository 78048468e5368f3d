#include "platform/files/TiffPictureMBS.h"

namespace varnith {

Ref<TiffPictureMBS> OpenAsTiffMBS(const Ref<FolderItem>& item, bool /*HeaderOnly*/) {
    const auto count = item->PageCount();
    return count ? MakeRef<TiffPictureMBS>(*count) : nullptr;
}

}  // namespace varnith
