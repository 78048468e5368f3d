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
    // Whether the walk will count the pages of an entry. Called by worker threads, so it may use nothing but
    // the entry.
    bool (*opens)(const ListedEntry& entry);
    // Whether the walk enters the visible folders among the entries, in the order of the listing.
    bool enters_folders;
};

// A source that reads ahead of a walk. Worker threads list its folders and count the pages of its files, in
// the order of the walk and many at once, because on a network share each question waits for a round trip.
// The results are the same as without reading ahead, and each file is opened once. What the walk asks out of
// order is read when it asks. While the walk waits for an answer, the program's other threads run.
//
// An answer that is older than 250 ms when the walk asks for it is asked for again.
// Like the walk, it is used from the program's one thread.
class ReadAhead : public WalkSource {
  public:
    // Starts reading the folder. REQUIRES: the path is absolute.
    ReadAhead(const std::string& path, const WalkPlan& plan);

    ListingPointer ListFirst() override;
    ListingPointer ListEntry(const ListingPointer& listing, std::size_t place) override;
    std::optional<std::int32_t> CountEntry(const ListingPointer& listing, std::size_t place) override;

  private:
    // A listing, and the indices of its stops: the entries that the walk will ask about.
    struct Stops {
        ListingPointer listing;  // null after an exception: the walk lists the folder itself
        std::vector<std::size_t> places;
        std::chrono::nanoseconds since{};  // when it was listed, by CoarseNow
    };
    // The page counts of a run of files; NoPages for a file that has no count. Ends early after an exception:
    // the walk counts the missing files itself.
    struct Counts {
        std::vector<std::int32_t> pages;
        std::chrono::nanoseconds since{};     // when the first was counted, by CoarseNow
        std::chrono::nanoseconds for_each{};  // the average time of a file
    };
    static constexpr std::int32_t NoPages = -1;

    // The queue of questions, in the order of the walk. A folder's question is followed by the questions
    // about its stops, and those by its Rest: the stops that aren't asked about yet. The Rest stays in the
    // queue, even if empty, until the walk enters the folder.
    struct FolderQuestion {
        ListingPointer above;  // the listing that has the folder as an entry; null for the first folder
        std::size_t place;     // its index there
        std::shared_ptr<const OpenFolder> folder;
        Workers::Answer<std::shared_ptr<const Stops>> answer;
        std::shared_ptr<const Stops> unfolded;  // the answer whose stops are in the queue; null before Unfold
    };
    // A question about a run of files: the stops [next, end) of a folder that the walk has still to come to.
    struct FilesQuestion {
        std::shared_ptr<const Stops> folder;
        std::size_t first;  // the stop of the answer's first count
        std::size_t next;
        std::size_t end;
        Workers::Answer<Counts> answer;
    };
    struct Rest {
        std::shared_ptr<const Stops> folder;
        std::size_t next;  // the first stop that isn't asked about yet
    };
    using Way = std::list<std::variant<FolderQuestion, FilesQuestion, Rest>>;

    template <class Question>
    Question* Front();
    void Take();

    void AskOn();
    bool AskNext(Way::iterator piece);
    void AskFolder(Way::iterator before, FolderQuestion question);
    void AskFiles(Way::iterator piece);
    void Ask(FolderQuestion& question);
    void Ask(FilesQuestion& question);
    void AskAgainWhatIsOld();
    void Unfold(Way::iterator piece);
    void Fold();
    void Drop(const Way::value_type& piece);
    ListingPointer TakeListing(FolderQuestion& question);
    ListingPointer ListAnew(std::shared_ptr<const OpenFolder> folder);
    std::size_t FilesAtOnce() const;
    std::size_t MostToAsk() const;
    bool HasRoomForListing() const;
    void KeepOpen(const std::shared_ptr<const OpenFolder>& folder);

    const WalkPlan plan_;
    PlainDisk plain_;
    Workers workers_;
    Way way_;
    std::size_t most_ = 0;   // the number of questions to queue, by the last scan of the queue
    std::size_t taken_ = 0;  // the number of questions taken since that scan
    // The number of folders that workers have listed. Shared with jobs, which may outlive this object.
    std::shared_ptr<std::atomic<std::size_t>> listed_ = std::make_shared<std::atomic<std::size_t>>(0);
    std::size_t listed_before_ = 0;  // the value of `listed_` at the last scan of the queue
    std::chrono::nanoseconds for_each_file_{};
    std::size_t listing_ = 0;          // the number of folder questions that are not unfolded
    std::size_t listed_bytes_ = 0;     // the memory of the queued listings
    std::size_t largest_listing_ = 0;  // in bytes
    // The folders whose descriptors the walk may still need, oldest first.
    std::deque<std::weak_ptr<const OpenFolder>> open_folders_;
};

}  // namespace varnith
