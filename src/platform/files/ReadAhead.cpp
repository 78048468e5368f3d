#include "platform/files/ReadAhead.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/base/CoarseClock.h"
#include "platform/base/Trace.h"

namespace varnith {

namespace {

constexpr std::chrono::milliseconds OldestAnswer{250};

// Numbers of workers. Files in the page cache keep few threads busy (bench/run cached); on a network share
// each question waits for a round trip, so many overlap (bench/run share). The queue holds twice as many
// questions, so that a worker that comes free finds one.
constexpr std::size_t LeastAtOnce = 2;
constexpr std::size_t MostAtOnce = 64;
constexpr std::size_t MostAhead = 2 * MostAtOnce;

// Handing a question to a worker has a fixed cost, so files are handed over in runs. A run has as many files
// as a worker counts in this time; on a slow share that is one.
constexpr std::chrono::milliseconds TimeOfRun{1};
constexpr std::size_t LongestRun = 256;

constexpr std::size_t MostListedBytes = 64 << 20;
constexpr std::size_t MostOpenFolders = 200;

bool IsEntered(const ListedEntry& entry, const WalkPlan& plan) {
    return plan.enters_folders && entry.visible && entry.kind == FileKind::Directory;
}

}  // namespace

ReadAhead::ReadAhead(const std::string& path, const WalkPlan& plan)
    : plan_(plan), plain_(path), workers_(LeastAtOnce, MostAtOnce) {
    AskFolder(way_.end(), {nullptr, 0, std::make_shared<OpenFolder>(path), {}, nullptr});
}

ListingPointer ReadAhead::ListFirst() {
    auto* question = Front<FolderQuestion>();
    return question && !question->above ? TakeListing(*question) : plain_.ListFirst();
}

ListingPointer ReadAhead::ListEntry(const ListingPointer& listing, std::size_t place) {
    AskOn();
    auto* question = Front<FolderQuestion>();
    const bool is_asked = question && question->above == listing && question->place == place;
    return is_asked ? TakeListing(*question) : plain_.ListEntry(listing, place);
}

ListingPointer ReadAhead::TakeListing(FolderQuestion& question) {
    auto found = Awaited(workers_, question.answer);
    if (found->listing && CoarseNow() - found->since > OldestAnswer) {
        AskAgainWhatIsOld();
        found = Awaited(workers_, question.answer);
    }
    // If the folder has changed since its entries were queued, the answers about them are useless.
    const ListingPointer before = question.unfolded ? question.unfolded->listing : nullptr;
    if (before && (!found->listing || !before->HasEntriesOf(*found->listing))) Fold();
    if (!found->listing) return ListAnew(question.folder);
    if (!question.unfolded) Unfold(way_.begin());
    const ListingPointer listing = question.unfolded->listing;
    listed_bytes_ -= listing->Bytes();
    Take();
    return listing;
}

// A worker has caught an exception while listing this folder. Lists it on the walk's own thread, so that the
// exception is thrown in the walk.
ListingPointer ReadAhead::ListAnew(std::shared_ptr<const OpenFolder> folder) {
    --listing_;
    Take();
    return std::make_shared<const Listing>(std::move(folder));
}

std::optional<std::int32_t> ReadAhead::CountEntry(const ListingPointer& listing, std::size_t place) {
    AskOn();
    auto* question = Front<FilesQuestion>();
    const bool is_asked =
        question && question->folder->listing == listing && question->folder->places[question->next] == place;
    if (!is_asked) return plain_.CountEntry(listing, place);
    const Counts* counts = &Awaited(workers_, question->answer);
    if (CoarseNow() - counts->since > OldestAnswer) {
        AskAgainWhatIsOld();
        counts = &Awaited(workers_, question->answer);
    }
    for_each_file_ = counts->for_each;
    const std::size_t number = question->next - question->first;
    const std::int32_t pages = number < counts->pages.size() ? counts->pages[number] : NoPages;
    const bool is_left = number >= counts->pages.size();
    if (++question->next == question->end) Take();
    if (is_left) return plain_.CountEntry(listing, place);
    return pages == NoPages ? std::nullopt : std::optional(pages);
}

// The first question in the queue if it is of that type, else null. Removes finished folders before it.
template <class Question>
Question* ReadAhead::Front() {
    while (!way_.empty()) {
        const auto* rest = std::get_if<Rest>(&way_.front());
        if (!rest || rest->next < rest->folder->places.size()) break;
        way_.pop_front();
    }
    return way_.empty() ? nullptr : std::get_if<Question>(&way_.front());
}

void ReadAhead::Take() {
    way_.pop_front();
    ++taken_;
}

// Fills the queue: unfolds the folders whose listings have arrived and asks about their entries, in the
// walk's order, until enough questions are queued. Scanning the queue is costly, so refill in batches.
void ReadAhead::AskOn() {
    const std::size_t listed = *listed_;
    if (taken_ < most_ / 4 && listed == listed_before_ && !Front<Rest>()) return;
    taken_ = 0;
    listed_before_ = listed;
    most_ = MostToAsk();
    std::size_t ahead = 0;
    // The folders around the piece whose own questions the walk has still to take.
    std::vector<const Stops*> outer;
    for (auto piece = way_.begin(); piece != way_.end() && ahead < most_;) {
        const auto* folder = std::get_if<FolderQuestion>(&*piece);
        if (folder && !folder->unfolded && folder->answer.IsThere() && folder->answer.Get()->listing)
            Unfold(piece);
        if (folder && folder->unfolded) outer.push_back(folder->unfolded.get());
        if (!std::holds_alternative<Rest>(*piece)) ++ahead;
        while (ahead < most_ && AskNext(piece)) ++ahead;
        const auto* rest = std::get_if<Rest>(&*piece);
        const bool is_end = rest && !outer.empty() && outer.back() == rest->folder.get();
        if (is_end) outer.pop_back();
        // Otherwise each level of a deep tree would leave an empty Rest to pass over.
        const bool is_useless = rest && !is_end && rest->next == rest->folder->places.size();
        piece = is_useless ? way_.erase(piece) : std::next(piece);
    }
}

// Asks the next question about a folder's remaining entries. False if none remain, and if the queued listings
// take too much memory; the first piece in the queue may always ask, or the walk would stand still.
bool ReadAhead::AskNext(Way::iterator piece) {
    auto* rest = std::get_if<Rest>(&*piece);
    if (!rest || rest->next == rest->folder->places.size()) return false;
    const ListingPointer& listing = rest->folder->listing;
    const std::size_t place = rest->folder->places[rest->next];
    if (!IsEntered((*listing)[place], plan_)) {
        AskFiles(piece);
        return true;
    }
    if (piece != way_.begin() && !HasRoomForListing()) return false;
    ++rest->next;
    AskFolder(piece, {listing, place, listing->FolderAt(place), {}, nullptr});
    return true;
}

void ReadAhead::AskFolder(Way::iterator before, FolderQuestion question) {
    Ask(question);
    ++listing_;
    way_.insert(before, std::move(question));
}

void ReadAhead::AskFiles(Way::iterator piece) {
    auto& rest = std::get<Rest>(*piece);
    const auto& places = rest.folder->places;
    const Listing& listing = *rest.folder->listing;
    FilesQuestion question{rest.folder, rest.next, rest.next, rest.next, {}};
    const std::size_t most = std::min(places.size(), rest.next + FilesAtOnce());
    while (question.end < most && !IsEntered(listing[places[question.end]], plan_)) ++question.end;
    rest.next = question.end;
    Ask(question);
    way_.insert(piece, std::move(question));
}

std::size_t ReadAhead::FilesAtOnce() const {
    if (for_each_file_.count() == 0) return 1;
    const auto files = static_cast<std::size_t>(TimeOfRun / for_each_file_);
    return std::clamp<std::size_t>(files, 1, LongestRun);
}

// As many questions as are answered well before the first of the answers is too old.
std::size_t ReadAhead::MostToAsk() const {
    const auto for_run = for_each_file_ * static_cast<std::int64_t>(FilesAtOnce());
    const std::size_t at_once = workers_.AtOnce();
    if (for_run.count() == 0) return MostAhead;
    const auto in_time = static_cast<std::size_t>(OldestAnswer / 2 / for_run);
    return std::clamp(at_once * in_time, at_once + 1, MostAhead);
}

// The size of a listing that hasn't arrived yet is unknown: assume that of the largest one so far.
bool ReadAhead::HasRoomForListing() const {
    return listed_bytes_ + (listing_ + 1) * largest_listing_ < MostListedBytes;
}

void ReadAhead::Ask(FolderQuestion& question) {
    question.answer = workers_.Do([folder = question.folder, plan = plan_, listed = listed_] {
        auto stops = std::make_shared<Stops>();
        try {
            stops->listing = std::make_shared<const Listing>(folder);
            for (std::size_t place = 0; place < stops->listing->Size(); ++place) {
                const ListedEntry entry = (*stops->listing)[place];
                if (IsEntered(entry, plan) || plan.opens(entry)) stops->places.push_back(place);
            }
        } catch (const std::exception& error) {
            // The walk lists this folder itself when it gets there, and meets the exception then.
            TraceException(error);
            stops->listing = nullptr;
        }
        stops->since = CoarseNow();
        ++*listed;
        return std::shared_ptr<const Stops>(std::move(stops));
    });
}

void ReadAhead::Ask(FilesQuestion& question) {
    question.first = question.next;
    question.answer = workers_.Do([stops = question.folder, first = question.next, end = question.end] {
        Counts counts;
        const auto start = std::chrono::steady_clock::now();
        const Listing& listing = *stops->listing;
        try {
            for (std::size_t stop = first; stop < end; ++stop) {
                const auto pages = PlainDisk::CountPagesOf(listing.Folder(), listing[stops->places[stop]]);
                counts.pages.push_back(pages.value_or(NoPages));
                if (stop == first) counts.since = CoarseNow();
            }
        } catch (const std::exception& error) {
            // The walk counts this file itself when it gets there, and meets the exception then.
            TraceException(error);
        }
        if (counts.pages.empty()) counts.since = CoarseNow();
        counts.for_each = (std::chrono::steady_clock::now() - start) / static_cast<int>(end - first);
        return counts;
    });
}

// After a pause of the walk, such as an open dialog, all queued answers are too old. Asks for all of them
// again at once, so that they are answered in parallel.
void ReadAhead::AskAgainWhatIsOld() {
    const auto now = CoarseNow();
    for (auto& piece : way_) {
        if (auto* files = std::get_if<FilesQuestion>(&piece)) {
            if (files->answer.IsThere() && now - files->answer.Get().since > OldestAnswer) Ask(*files);
        } else if (auto* folder = std::get_if<FolderQuestion>(&piece)) {
            if (folder->answer.IsThere() && now - folder->answer.Get()->since > OldestAnswer) Ask(*folder);
        }
    }
}

// Inserts a folder's stops into the queue, after the folder's own question.
void ReadAhead::Unfold(Way::iterator piece) {
    auto& question = std::get<FolderQuestion>(*piece);
    question.unfolded = question.answer.Get();
    const std::size_t bytes = question.unfolded->listing->Bytes();
    --listing_;
    listed_bytes_ += bytes;
    largest_listing_ = std::max(largest_listing_, bytes);
    way_.insert(std::next(piece), Rest{question.unfolded, 0});
    KeepOpen(question.folder);
}

// Undoes Unfold for the first question, which is a folder: removes its stops from the queue, and all
// questions about what is below them.
void ReadAhead::Fold() {
    const auto stops = std::exchange(std::get<FolderQuestion>(way_.front()).unfolded, nullptr);
    if (!stops) return;
    ++listing_;
    listed_bytes_ -= stops->listing->Bytes();
    const auto is_end = [&](const auto& piece) {
        const auto* rest = std::get_if<Rest>(&piece);
        return rest && rest->folder == stops;
    };
    const auto end = std::next(std::find_if(way_.begin(), way_.end(), is_end));
    for (auto piece = std::next(way_.begin()); piece != end; piece = way_.erase(piece)) Drop(*piece);
}

void ReadAhead::Drop(const Way::value_type& piece) {
    if (const auto* files = std::get_if<FilesQuestion>(&piece)) files->answer.Drop();
    const auto* folder = std::get_if<FolderQuestion>(&piece);
    if (!folder) return;
    folder->answer.Drop();
    if (folder->unfolded)
        listed_bytes_ -= folder->unfolded->listing->Bytes();
    else
        --listing_;
}

void ReadAhead::KeepOpen(const std::shared_ptr<const OpenFolder>& folder) {
    open_folders_.push_back(folder);
    if (open_folders_.size() <= MostOpenFolders) return;
    if (const auto oldest = open_folders_.front().lock()) oldest->LetGo();
    open_folders_.pop_front();
}

}  // namespace varnith
