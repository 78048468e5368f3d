#pragma once

#include <cstdint>

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// A snapshot of a folder's direct entries, in natural order. Indices run from 0 to Count() - 1; any other
// raises OutOfBoundsException. A folder that can't be read has no entries. Nor has one that a recursive walk
// reaches where its Thread's stack is nearly used up, more than 100,000 levels down.
class FileListMBS {
  public:
    // REQUIRES: folder is not nil (NilObjectException).
    explicit FileListMBS(const Ref<FolderItem>& folder);

    std::int32_t Count() const { return static_cast<std::int32_t>(snapshot_.listing->Size()); }

    // Whether the entry itself is a directory; a link to one is not.
    bool Directory(std::int32_t index) const { return At(index).kind == FileKind::Directory; }

    bool Visible(std::int32_t index) const { return At(index).visible; }

    // The entry as an item, never nil.
    Ref<FolderItem> Item(std::int32_t index) const;

  private:
    ListedEntry At(std::int32_t index) const;

    Ref<FolderItem> folder_;
    FolderItem::Snapshot snapshot_;
};

}  // namespace varnith
