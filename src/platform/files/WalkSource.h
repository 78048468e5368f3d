#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/base/Ref.h"
#include "platform/files/FolderListing.h"

namespace varnith {

// Where a walk through a folder gets its listings and its counts from. A file and a subfolder are named by
// their place in a listing that the source has given.
class WalkSource : public RefCounted {
  public:
    // The listing of the folder that the walk begins with, and of one among the entries of a listing. A
    // folder that can't be read has an empty listing. Never null.
    virtual ListingPointer ListFirst() = 0;
    virtual ListingPointer ListEntry(const ListingPointer& listing, std::size_t place) = 0;

    // The pages of a file, as CountPages has them. Nothing, too, for what can't be opened or is no regular
    // file.
    virtual std::optional<std::int32_t> CountEntry(const ListingPointer& listing, std::size_t place) = 0;
};

}  // namespace varnith
