#include "platform/files/PlainDisk.h"

#include "platform/base/Trace.h"
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
    // What the listing calls a regular file isn't checked again, to save a system call for each file. If it
    // has been replaced by something else since, it can't be read at an offset or has no TIFF header.
    const bool is_regular = file.kind == FileKind::Regular || (opened && IsRegular(disk, opened));
    const auto pages = opened && is_regular ? CountPages(opened) : std::nullopt;
    if (opened && !pages && IsTracing())
        TraceFailure("count", folder.PathOf(file.name), is_regular ? "no TIFF header" : "no regular file");
    return pages;
}

// Closes the folder after listing it. It is reopened only if the walk counts a file in it, so a walk that
// only lists keeps no folder open.
ListingPointer PlainDisk::List(const std::shared_ptr<const OpenFolder>& folder) {
    auto listing = std::make_shared<const Listing>(folder);
    folder->LetGo();
    return listing;
}

}  // namespace varnith
