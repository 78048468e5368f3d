#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "platform/files/FolderItem.h"

namespace varnith {

// The folder that a walk starts from. Its source answers for everything below it.
class WalkedItem : public FolderItem {
  public:
    WalkedItem(const Ref<FolderItem>& parent, const std::string& name, Ref<WalkSource> source)
        : FolderItem(parent, name), source_(std::move(source)) {}

  protected:
    Snapshot TakeSnapshot() override { return {source_, source_->ListFirst()}; }

  private:
    const Ref<WalkSource> source_;
};

// An entry of a listing. It takes its name and visibility from the listing and asks the listing's source for
// the rest.
class ListedItem : public FolderItem {
  public:
    ListedItem(const Ref<FolderItem>& folder, const Snapshot& snapshot, std::size_t place)
        : FolderItem(folder, std::string((*snapshot.listing)[place].name)),
          snapshot_(snapshot),
          place_(place) {}

    bool Visible() const override { return (*snapshot_.listing)[place_].visible; }
    std::optional<std::int32_t> PageCount() const override {
        return snapshot_.source->CountEntry(snapshot_.listing, place_);
    }

  protected:
    Snapshot TakeSnapshot() override {
        return {snapshot_.source, snapshot_.source->ListEntry(snapshot_.listing, place_)};
    }

  private:
    const Snapshot snapshot_;
    const std::size_t place_;
};

}  // namespace varnith
