#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/base/Ref.h"
#include "platform/files/FolderListing.h"

namespace varnith {

// Gives a walk through a folder its listings and page counts. Files and subfolders are identified by a
// listing of this source and their index (`place`) in it, from 0.
class WalkSource : public RefCounted {
  public:
    // The listing of the folder that the walk starts from, and that of a subfolder. Never null; empty if the
    // folder can't be read.
    virtual ListingPointer ListFirst() = 0;
    virtual ListingPointer ListEntry(const ListingPointer& listing, std::size_t place) = 0;

    // The number of pages of a file (CountPages). Nothing if it can't be opened, is no regular file or has no
    // TIFF header.
    virtual std::optional<std::int32_t> CountEntry(const ListingPointer& listing, std::size_t place) = 0;
};

}  // namespace varnith
