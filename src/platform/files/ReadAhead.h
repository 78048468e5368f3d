#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/files/PlainDisk.h"
#include "platform/files/WalkSource.h"
#include "platform/threads/Workers.h"

namespace varnith {

// What a walk through a folder is going to do with its entries.
struct WalkPlan {
    // Whether an entry will be opened as a TIFF. Workers ask it: it looks at the entry and at nothing else.
    bool (*opens)(const ListedEntry& entry);
    // Whether the visible folders among the entries are walked too, each where it stands in the listing.
    bool enters_folders;
};

// Asks the disk ahead of a walk what the walk is going to ask: workers list its folders and count the pages
// of its files, in the order of the walk, many at once, because on a share each question waits for a round
// trip. The walk gets the answers that it would get without, and every file is opened once. What has not been
// asked ahead is asked when the walk wants it. Until an answer is there, others run.
//
// An answer has an age: one that is older than 250 ms when the walk comes to it is asked for again.
class ReadAhead : public WalkSource {
  public:
    // Begins to ask. REQUIRES: the path is absolute.
    ReadAhead(const std::string& path, const WalkPlan& plan);

    ListingPointer ListFirst() override;
    ListingPointer ListEntry(const ListingPointer& listing, std::size_t place) override;
    std::optional<std::int32_t> CountEntry(const ListingPointer& listing, std::size_t place) override;

  private:
    // A listing, and the places in it at which the walk will ask something: its stops.
    struct Stops {
        ListingPointer listing;  // null if the folder is left for the walk to list
        std::vector<std::size_t> places;
        std::chrono::nanoseconds since{};
    };
    // The pages of some files, NoPages for none, up to the first that is left for the walk to count.
    struct Counts {
        std::vector<std::int32_t> pages;
        std::chrono::nanoseconds since{};
        std::chrono::nanoseconds for_each{};  // how long one took
    };
    static constexpr std::int32_t NoPages = -1;

    // The way ahead of the walk, in its order: the questions that have been asked, and after those of a
    // folder the rest of it, which is kept until the walk leaves the folder.
    struct FolderQuestion {
        ListingPointer above;  // the listing that the folder is an entry of, null for the first
        std::size_t place;
        std::shared_ptr<const OpenFolder> folder;
        Workers::Answer<std::shared_ptr<const Stops>> answer;
        std::shared_ptr<const Stops> unfolded;  // the answer whose stops lie on the way after it
    };
    struct FilesQuestion {
        std::shared_ptr<const Stops> folder;
        std::size_t first;  // the stop to which the answer's first count belongs
        std::size_t next;   // the stop that the walk comes to next
        std::size_t end;
        Workers::Answer<Counts> answer;
    };
    struct Rest {
        std::shared_ptr<const Stops> folder;
        std::size_t next;
    };
    using Way = std::list<std::variant<FolderQuestion, FilesQuestion, Rest>>;

    template <class Question>
    Question* Front();
    void Take();

    void AskOn();
    bool AskNext(Way::iterator rest);
    void AskFolder(Way::iterator before, FolderQuestion question);
    void AskFiles(Way::iterator rest);
    void Ask(FolderQuestion& question);
    void Ask(FilesQuestion& question);
    void AskAgainWhatIsOld();
    void Unfold(Way::iterator folder);
    void Fold();
    void Drop(const Way::value_type& piece);
    ListingPointer TakeListing(FolderQuestion& question);
    ListingPointer ListAnew(std::shared_ptr<const OpenFolder> folder);
    std::size_t FilesAtOnce() const;
    bool HasRoomForListing() const;
    void KeepOpen(const std::shared_ptr<const OpenFolder>& folder);

    const WalkPlan plan_;
    PlainDisk plain_;
    Workers workers_;
    Way way_;
    std::size_t taken_ = 0;  // questions since the last look along the way
    std::shared_ptr<std::atomic<std::size_t>> listed_ = std::make_shared<std::atomic<std::size_t>>(0);
    std::size_t listed_before_ = 0;  // what it was at that look
    std::chrono::nanoseconds for_each_file_{};
    std::size_t listing_ = 0;          // the listings that were asked for and are not unfolded
    std::size_t listed_bytes_ = 0;     // of the listings on the way
    std::size_t largest_listing_ = 0;  // in bytes
    std::deque<std::weak_ptr<const OpenFolder>> open_folders_;
};

}  // namespace varnith
