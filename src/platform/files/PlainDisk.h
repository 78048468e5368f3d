#pragma once

#include <memory>
#include <string>

#include "platform/files/WalkSource.h"

namespace varnith {

// A source that reads from the disk when it is asked and blocks until the disk has answered.
class PlainDisk : public WalkSource {
  public:
    // REQUIRES: the path is absolute.
    explicit PlainDisk(const std::string& path) : first_(std::make_shared<OpenFolder>(path)) {}

    ListingPointer ListFirst() override { return List(first_); }
    ListingPointer ListEntry(const ListingPointer& listing, std::size_t place) override {
        return List(listing->FolderAt(place));
    }
    std::optional<std::int32_t> CountEntry(const ListingPointer& listing, std::size_t place) override {
        return CountPagesOf(listing->Folder(), (*listing)[place]);
    }

    // Opens a file of a folder and counts its pages, with results as CountEntry has them. May be called from
    // any thread.
    static std::optional<std::int32_t> CountPagesOf(const OpenFolder& folder, const ListedEntry& file);

  private:
    ListingPointer List(const std::shared_ptr<const OpenFolder>& folder);

    const std::shared_ptr<const OpenFolder> first_;
};

}  // namespace varnith
