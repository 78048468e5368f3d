#include "platform/files/ReadAhead.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/files/TiffPictureMBS.h"

namespace varnith {

namespace {

// With files in the memory two workers keep the walk busy, and more only take the processors from each other.
// On a share, where each question waits for a round trip, 64 pay.
constexpr std::size_t LeastAtOnce = 2;
constexpr std::size_t MostAtOnce = 64;

// As many again wait to be taken, so that workers and walk don't wait for each other by turns.
constexpr std::size_t MostAhead = 2 * MostAtOnce;

// To count a small file that is in the memory takes less time than handing the question over does. So the
// files of a large folder are handed over in runs.
constexpr std::size_t LongestRun = 64;

bool IsEntered(const ListedEntry& entry, const WalkPlan& plan) {
    return plan.enters_folders && entry.visible && entry.kind == FileKind::Directory;
}

std::string PathOf(const std::string& folder_path, const ListedEntry& entry) {
    return (folder_path == "/" ? "" : folder_path) + "/" + entry.name;
}

template <class Answer>
bool IsThere(const std::future<Answer>& answer) {
    return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

}  // namespace

ReadAhead::ReadAhead(const std::string& folder_path, const WalkPlan& plan)
    : plan_(plan), workers_(LeastAtOnce, MostAtOnce) {
    AskListing(way_.end(), folder_path);
}

std::vector<ListedEntry> ReadAhead::List(const std::string& path) {
    AskOn();
    auto* listed = Front<Listed>();
    if (!listed || listed->path != path) return ListFolder(path);
    if (!listed->unfolded) Unfold(way_.begin());
    std::vector<ListedEntry> entries = std::move(listed->entries);
    Take();
    return entries;
}

std::optional<std::int32_t> ReadAhead::Count(const std::string& path, bool is_regular) {
    AskOn();
    if (auto* run = Front<Run>(); run && counted_.empty()) {
        Run answer = std::move(*run);
        Take();
        counted_ = Awaited(answer);
    }
    if (counted_.empty() || counted_.front().path != path) return CountImages(path, is_regular);
    const auto count = counted_.front().count;
    counted_.pop_front();
    return count;
}

void ReadAhead::Take() {
    way_.pop_front();
    --asked_;
}

// Asks in the order of the way until enough is asked, and goes into the folders whose listings have come.
void ReadAhead::AskOn() {
    // Going along the way has its price, so it is gone along for many questions together.
    if (folded_ == 0 && asked_ > MostAhead / 2) return;
    for (auto piece = way_.begin(); piece != way_.end() && asked_ < MostAhead;) {
        const auto* listed = std::get_if<Listed>(&*piece);
        if (listed && !listed->unfolded && IsThere(listed->answer)) Unfold(piece);
        const auto* rest = std::get_if<Rest>(&*piece);
        while (rest && !rest->stops.empty() && asked_ < MostAhead) AskNext(piece);
        piece = rest && rest->stops.empty() ? way_.erase(piece) : std::next(piece);
    }
}

// Asks for the next of what a folder has in store.
void ReadAhead::AskNext(Way::iterator piece) {
    auto& rest = std::get<Rest>(*piece);
    if (!IsEntered(rest.stops.front(), plan_)) return AskRun(piece);
    AskListing(piece, PathOf(rest.path, rest.stops.front()));
    rest.stops.pop_front();
}

void ReadAhead::AskListing(Way::iterator in_front_of, std::string path) {
    auto answer = workers_.Do([path, plan = plan_] {
        Listing listing{ListFolder(path), {}};
        for (const ListedEntry& entry : listing.entries)
            if (IsEntered(entry, plan) || plan.opens(entry)) listing.stops.push_back(entry);
        return listing;
    });
    way_.insert(in_front_of, Listed{std::move(path), std::move(answer), {}});
    ++asked_;
    ++folded_;
}

void ReadAhead::AskRun(Way::iterator piece) {
    auto& [path, stops] = std::get<Rest>(*piece);
    const std::size_t length = std::clamp<std::size_t>(stops.size() / MostAtOnce, 1, LongestRun);
    std::vector<ListedEntry> files;
    while (files.size() < length && !stops.empty() && !IsEntered(stops.front(), plan_)) {
        files.push_back(std::move(stops.front()));
        stops.pop_front();
    }
    way_.insert(piece,
                workers_.Do([folder = path, files = std::move(files)] { return CountAll(folder, files); }));
    ++asked_;
}

// A worker's part of a run.
std::deque<ReadAhead::Counted> ReadAhead::CountAll(const std::string& folder_path,
                                                   const std::vector<ListedEntry>& files) {
    std::deque<Counted> counts;
    for (const ListedEntry& file : files) {
        std::string path = PathOf(folder_path, file);
        try {
            const auto count = CountImages(path, file.kind == FileKind::Regular);
            counts.push_back({std::move(path), count});
        } catch (...) {
            // The walk comes upon it where it stands, when it asks for that file.
            break;
        }
    }
    return counts;
}

// Puts the stops of a listing on the way behind it.
void ReadAhead::Unfold(Way::iterator piece) {
    auto& listed = std::get<Listed>(*piece);
    Listing listing = Awaited(listed.answer);
    listed.entries = std::move(listing.entries);
    listed.unfolded = true;
    --folded_;
    way_.insert(std::next(piece), Rest{listed.path, std::move(listing.stops)});
}

}  // namespace varnith
