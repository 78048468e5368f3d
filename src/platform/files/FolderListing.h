#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/OpenFolder.h"

namespace varnith {

struct ListedEntry {
    std::string_view name;
    FileKind kind;  // of the entry itself: a link to a folder is a link, so no walk can go round in circles
    bool visible;
};

// A snapshot of a folder's direct entries, in natural order of their names. The entries that the desktops'
// file managers hide are invisible: those whose names begin with a dot, and those whose names stand, one a
// line, in the folder's file ".hidden". The names lie one after another in one block. It never changes, so
// threads may share it.
class Listing {
  public:
    // Lists a folder. One that can't be read has no entries.
    explicit Listing(std::shared_ptr<const OpenFolder> folder);

    std::size_t Size() const { return marks_.size(); }
    // REQUIRES: place < Size(). The name is valid as long as the listing.
    ListedEntry operator[](std::size_t place) const;
    const OpenFolder& Folder() const { return *folder_; }
    // The folder of an entry, not opened yet.
    std::shared_ptr<const OpenFolder> FolderAt(std::size_t place) const;

    // Whether another listing has the same entries.
    bool HasEntriesOf(const Listing& other) const { return names_ == other.names_ && marks_ == other.marks_; }
    // The memory that the entries take, in bytes.
    std::size_t Bytes() const { return names_.capacity() + marks_.capacity() * sizeof(Mark); }

  private:
    struct Mark {
        std::size_t end;  // of the name in the block
        FileKind kind;
        bool visible;
        bool operator==(const Mark&) const = default;
    };

    const std::shared_ptr<const OpenFolder> folder_;
    std::string names_;
    std::vector<Mark> marks_;
};

using ListingPointer = std::shared_ptr<const Listing>;

// Whether an entry of that name in the folder of that path is visible, by the same rule.
bool IsVisibleEntry(const std::string& folder_path, const std::string& name);

}  // namespace varnith
