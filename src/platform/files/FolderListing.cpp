#include "platform/files/FolderListing.h"

#include <algorithm>
#include <sstream>
#include <unordered_set>

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

}  // namespace

std::vector<ListedEntry> ListFolder(const std::string& path) {
    std::vector<DirectoryEntry> entries = FileSystem::Current().Entries(path);
    std::sort(entries.begin(), entries.end(),
              [](const auto& a, const auto& b) { return CompareNaturally(a.name, b.name) < 0; });
    const bool lists_hidden = std::any_of(entries.begin(), entries.end(),
                                          [](const auto& entry) { return entry.name == HiddenListName; });
    const auto hidden = lists_hidden ? NamesListedAsHidden(path) : std::unordered_set<std::string>();

    std::vector<ListedEntry> listing;
    listing.reserve(entries.size());
    for (DirectoryEntry& entry : entries) {
        const bool visible = IsVisible(entry.name, hidden);
        listing.push_back({std::move(entry.name), entry.kind, visible});
    }
    return listing;
}

bool IsVisibleEntry(const std::string& folder_path, const std::string& name) {
    return IsVisible(name, NamesListedAsHidden(folder_path));
}

}  // namespace varnith
