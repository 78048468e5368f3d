#pragma once

#include <string>
#include <vector>

#include "platform/files/FileSystem.h"

namespace varnith {

struct ListedEntry {
    std::string name;
    FileKind kind;  // of the entry itself: a link to a folder is a link, so no walk can go round in circles
    bool visible;
};

// A snapshot of a folder's direct entries, in natural order of their names. Invisible are, as in the
// desktops' file managers, names that begin with a dot and the names listed, one a line, in the folder's
// file ".hidden". A folder that can't be read gives an empty listing. May be called from any thread.
std::vector<ListedEntry> ListFolder(const std::string& path);

// Whether an entry of that name in that folder is visible, by the same rule.
bool IsVisibleEntry(const std::string& folder_path, const std::string& name);

}  // namespace varnith
