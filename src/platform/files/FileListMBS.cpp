#include "platform/files/FileListMBS.h"

#include "platform/base/Exceptions.h"
#include "platform/files/ListedItem.h"

namespace varnith {

FileListMBS::FileListMBS(const Ref<FolderItem>& folder)
    : folder_(folder), snapshot_(folder->TakeSnapshot()) {}

Ref<FolderItem> FileListMBS::Item(std::int32_t index) const {
    At(index);
    return MakeRef<ListedItem>(folder_, snapshot_, static_cast<std::size_t>(index));
}

ListedEntry FileListMBS::At(std::int32_t index) const {
    if (index < 0 || index >= Count()) throw OutOfBoundsException();
    return (*snapshot_.listing)[static_cast<std::size_t>(index)];
}

}  // namespace varnith
