#pragma once

#include <string>

namespace varnith {

// Moves a file, a link or a folder with everything in it. On one file system it is renamed. Across file
// systems it is copied, bytes and permissions, under a temporary name in the target's folder and renamed when
// complete, so nobody ever sees a partial copy at `to`. Paths are absolute. False on failure and if something
// exists at `to`; the source is complete then, and no copy is left at `to`.
bool MoveItem(const std::string& from, const std::string& to);

// A random hidden path in the folder of `path`, for a file that is to be renamed to `path` when it is
// complete. It doesn't contain the original name, which may already have the maximum length.
std::string NameBeside(const std::string& path);

// Removes a file, a link itself, or a folder with everything in it. What can't be removed stays.
void RemoveItem(const std::string& path);

}  // namespace varnith
