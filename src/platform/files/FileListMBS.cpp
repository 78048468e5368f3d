#include "platform/files/FileListMBS.h"

#include "platform/base/Exceptions.h"

namespace varnith {

FileListMBS::FileListMBS(const Ref<FolderItem>& folder) : folder_(folder), listing_(folder->Listing()) {}

Ref<FolderItem> FileListMBS::Item(std::int32_t index) const {
    return MakeRef<FolderItem>(folder_, At(index));
}

const ListedEntry& FileListMBS::At(std::int32_t index) const {
    if (index < 0 || index >= Count()) throw OutOfBoundsException();
    return listing_[static_cast<std::size_t>(index)];
}

}  // namespace varnith
