#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <future>
#include <list>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/base/Ref.h"
#include "platform/files/FolderListing.h"
#include "platform/threads/Workers.h"

namespace varnith {

// What a walk through a folder is going to do with its entries.
struct WalkPlan {
    // Whether an entry will be opened as a TIFF. Workers ask it: it looks at the entry and at nothing else.
    bool (*opens)(const ListedEntry& entry);
    // Whether the visible folders among the entries are walked too, each where it stands in the listing.
    bool enters_folders;
};

// Asks the disk ahead of a walk what the walk is going to ask: workers list its folders and count the images
// of its files, in the order of the walk, many at once, because on a share each question waits for a round
// trip. The walk gets the same answers as it would without, at the same places, and every file is opened
// once: what has not been asked ahead is asked when the walk wants it.
class ReadAhead : public RefCounted {
  public:
    ReadAhead(const std::string& folder_path, const WalkPlan& plan);

    // The listing of a folder. Until it is there, others run.
    std::vector<ListedEntry> List(const std::string& path);

    // The number of images of a file, as CountImages has it. Until it is there, others run.
    std::optional<std::int32_t> Count(const std::string& path, bool is_regular);

  private:
    struct Listing {
        std::vector<ListedEntry> entries;
        std::deque<ListedEntry> stops;  // those of them at which the walk will ask something
    };
    struct Counted {
        std::string path;
        std::optional<std::int32_t> count;
    };

    // The way in front of the walk: the questions that have been asked, and what the folders on it still have
    // in store.
    struct Listed {
        std::string path;
        std::future<Listing> answer;
        std::vector<ListedEntry> entries;  // once it is unfolded: its stops then lie on the way behind it
        bool unfolded = false;
    };
    using Run = std::future<std::deque<Counted>>;
    struct Rest {
        std::string path;
        std::deque<ListedEntry> stops;
    };
    using Way = std::list<std::variant<Listed, Run, Rest>>;

    // The piece at the front of the way if it is of that kind, else null.
    template <class Piece>
    Piece* Front() {
        return way_.empty() ? nullptr : std::get_if<Piece>(&way_.front());
    }
    void Take();

    void AskOn();
    void AskListing(Way::iterator in_front_of, std::string path);
    void AskNext(Way::iterator rest);
    void AskRun(Way::iterator rest);
    static std::deque<Counted> CountAll(const std::string& folder_path,
                                        const std::vector<ListedEntry>& files);
    void Unfold(Way::iterator listed);

    const WalkPlan plan_;
    Workers workers_;
    Way way_;
    std::deque<Counted> counted_;  // the answers of the run that was taken last
    std::size_t asked_ = 0;        // the questions on the way
    std::size_t folded_ = 0;       // the listings among them whose stops aren't on it
};

}  // namespace varnith
