#pragma once

#include <string>

namespace varnith {

// Moves a file, a link or a folder with all that it holds to another path, where nothing may be yet: a rename
// or, from one file system to another, a copy with the same bytes and permissions that first grows under
// another name beside the target. Nobody finds a half-made copy in its place. False if it could not be
// done; then the source is whole and the target is not there.
bool MoveItem(const std::string& from, const std::string& to);

// A new name in the same folder, hidden, for what is to take an item's place once it is whole. It says
// nothing of the item's own name, which may be as long as names can be.
std::string NameBeside(const std::string& path);

// Removes a file, a link itself, or a folder with all that it holds, as far as that can be done.
void RemoveItem(const std::string& path);

}  // namespace varnith
