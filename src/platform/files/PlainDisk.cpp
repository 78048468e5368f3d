#include "platform/files/PlainDisk.h"

#include "platform/files/TiffPages.h"

namespace varnith {

namespace {

bool IsRegular(const FileSystem& disk, const FileDescriptor& file) {
    const auto status = disk.Status(file);
    return status && status->kind == FileKind::Regular;
}

}  // namespace

std::optional<std::int32_t> PlainDisk::CountPagesOf(const OpenFolder& folder, const ListedEntry& file) {
    const FileSystem& disk = FileSystem::Current();
    const FileDescriptor opened = disk.OpenForReading(folder, std::string(file.name));
    // An entry that was a regular file in the listing is taken at its word, since asking is one call more for
    // each file. What it may have become instead can't be read at an offset, or holds no TIFF header.
    const bool is_regular = file.kind == FileKind::Regular || (opened && IsRegular(disk, opened));
    return opened && is_regular ? CountPages(opened) : std::nullopt;
}

// The folder is closed after its listing, and opened again when a file in it is asked for: whoever only lists
// keeps nothing open.
ListingPointer PlainDisk::List(const std::shared_ptr<const OpenFolder>& folder) {
    auto listing = std::make_shared<const Listing>(folder);
    folder->LetGo();
    return listing;
}

}  // namespace varnith
