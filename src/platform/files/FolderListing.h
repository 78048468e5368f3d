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
    FileKind kind;  // of the entry itself: a link to a folder is a link, so that walks can't run in circles
    bool visible;
};

// A snapshot of a folder's direct entries, in natural order of their names. Entries that the desktops' file
// managers hide are not visible: those whose names begin with a dot, and those whose names the folder's file
// ".hidden" lists, one per line. A listing never changes, so threads may share it. To save memory, all names
// are stored in one string.
class Listing {
  public:
    // A listing without entries. REQUIRES: Folder is not called.
    Listing() = default;
    // Lists a folder. A folder that can't be read has no entries.
    explicit Listing(std::shared_ptr<const OpenFolder> folder);

    std::size_t Size() const { return marks_.size(); }
    // REQUIRES: place < Size(). The listing owns the name.
    ListedEntry operator[](std::size_t place) const;
    const OpenFolder& Folder() const { return *folder_; }
    // The entry as a folder, which is not opened yet. REQUIRES: place < Size().
    std::shared_ptr<const OpenFolder> FolderAt(std::size_t place) const;

    // Whether both listings have the same entries.
    bool HasEntriesOf(const Listing& other) const { return names_ == other.names_ && marks_ == other.marks_; }
    // The memory of the entries, in bytes.
    std::size_t Bytes() const { return names_.capacity() + marks_.capacity() * sizeof(Mark); }

  private:
    struct Mark {
        std::size_t end;  // of the name, in `names_`
        FileKind kind;
        bool visible;
        bool operator==(const Mark&) const = default;
    };

    const std::shared_ptr<const OpenFolder> folder_;
    std::string names_;
    std::vector<Mark> marks_;
};

using ListingPointer = std::shared_ptr<const Listing>;

// Whether the entry of that name in that folder is visible, by the rule of Listing.
bool IsVisibleEntry(const std::string& folder_path, const std::string& name);

}  // namespace varnith
