#include "platform/files/FileListMBS.h"

#include <memory>

#include "platform/base/Exceptions.h"
#include "platform/base/Trace.h"
#include "platform/files/ListedItem.h"
#include "platform/threads/Scheduler.h"

namespace varnith {

FileListMBS::FileListMBS(const Ref<FolderItem>& folder) : folder_(folder) {
    if (Scheduler::Current().HasStack()) {
        snapshot_ = folder->TakeSnapshot();
    } else {
        TraceFailure("list", folder->Name(), "it is too deep for the stack");
        snapshot_.listing = std::make_shared<const Listing>();
    }
}

Ref<FolderItem> FileListMBS::Item(std::int32_t index) const {
    At(index);
    return MakeRef<ListedItem>(folder_, snapshot_, static_cast<std::size_t>(index));
}

ListedEntry FileListMBS::At(std::int32_t index) const {
    if (index < 0 || index >= Count()) throw OutOfBoundsException();
    return (*snapshot_.listing)[static_cast<std::size_t>(index)];
}

}  // namespace varnith
