#include "platform/files/FolderListing.h"

#include <algorithm>
#include <sstream>
#include <unordered_set>

#include "platform/base/SortKeys.h"
#include "platform/base/Text.h"

namespace varnith {

namespace {

constexpr auto HiddenListName = ".hidden";

using Names = std::unordered_set<std::string>;

Names NamesListedAsHidden(const OpenFolder& folder) {
    Names names;
    const FileSystem& disk = FileSystem::Current();
    std::istringstream lines(disk.Contents(disk.OpenForReading(folder, HiddenListName)));
    for (std::string line; std::getline(lines, line);) names.insert(line);
    return names;
}

bool IsVisible(const std::string& name, const Names& hidden) {
    return !name.starts_with('.') && (hidden.empty() || !hidden.contains(name));
}

std::vector<std::size_t> NaturalOrder(const std::vector<DirectoryEntry>& entries) {
    SortKeys keys(entries.size());
    for (const DirectoryEntry& entry : entries) AppendNaturalKey(keys.Next(), entry.name);
    return keys.Order();
}

}  // namespace

Listing::Listing(std::shared_ptr<const OpenFolder> folder) : folder_(std::move(folder)) {
    const std::vector<DirectoryEntry> entries = FileSystem::Current().Entries(*folder_);
    const bool lists_hidden = std::any_of(entries.begin(), entries.end(),
                                          [](const auto& entry) { return entry.name == HiddenListName; });
    const Names hidden = lists_hidden ? NamesListedAsHidden(*folder_) : Names();
    marks_.reserve(entries.size());
    for (const std::size_t place : NaturalOrder(entries)) {
        const auto& [name, kind] = entries[place];
        names_ += name;
        marks_.push_back({names_.size(), kind, IsVisible(name, hidden)});
    }
}

ListedEntry Listing::operator[](std::size_t place) const {
    const Mark& mark = marks_[place];
    const std::size_t start = place == 0 ? 0 : marks_[place - 1].end;
    return {std::string_view(names_).substr(start, mark.end - start), mark.kind, mark.visible};
}

std::shared_ptr<const OpenFolder> Listing::FolderAt(std::size_t place) const {
    return std::make_shared<OpenFolder>(folder_, std::string((*this)[place].name));
}

bool IsVisibleEntry(const std::string& folder_path, const std::string& name) {
    return IsVisible(name, NamesListedAsHidden(OpenFolder(folder_path)));
}

}  // namespace varnith
