#include "platform/files/FolderListing.h"

#include <algorithm>
#include <sstream>
#include <unordered_set>
#include <utility>

#include "platform/base/Text.h"

namespace varnith {

namespace {

constexpr auto HiddenListName = ".hidden";

std::unordered_set<std::string> NamesListedAsHidden(const std::string& folder_path) {
    std::unordered_set<std::string> names;
    std::istringstream lines(FileSystem::Current().Contents(folder_path + "/" + HiddenListName));
    for (std::string line; std::getline(lines, line);) names.insert(line);
    return names;
}

bool IsVisible(const std::string& name, const std::unordered_set<std::string>& hidden) {
    return !name.starts_with('.') && !hidden.contains(name);
}

std::vector<DirectoryEntry> InNaturalOrder(std::vector<DirectoryEntry> entries) {
    std::vector<std::pair<std::string, std::size_t>> keys;
    keys.reserve(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) keys.emplace_back(NaturalKey(entries[i].name), i);
    std::sort(keys.begin(), keys.end());
    std::vector<DirectoryEntry> ordered;
    ordered.reserve(entries.size());
    for (const auto& [key, place] : keys) ordered.push_back(std::move(entries[place]));
    return ordered;
}

}  // namespace

std::vector<ListedEntry> ListFolder(const std::string& path) {
    const std::vector<DirectoryEntry> entries = InNaturalOrder(FileSystem::Current().Entries(path));
    const bool lists_hidden = std::any_of(entries.begin(), entries.end(),
                                          [](const auto& entry) { return entry.name == HiddenListName; });
    const auto hidden = lists_hidden ? NamesListedAsHidden(path) : std::unordered_set<std::string>();

    std::vector<ListedEntry> listing;
    listing.reserve(entries.size());
    for (const DirectoryEntry& entry : entries)
        listing.push_back({entry.name, entry.kind, IsVisible(entry.name, hidden)});
    return listing;
}

bool IsVisibleEntry(const std::string& folder_path, const std::string& name) {
    return IsVisible(name, NamesListedAsHidden(folder_path));
}

}  // namespace varnith
