#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/files/FileSystem.h"

namespace varnith {

// A folder of a walk. It is opened relative to its parent, so that the depth of a tree neither makes opening
// slower nor runs into the system's limit of a path's length. Threads may share one.
class OpenFolder {
  public:
    // The folder with that absolute path. Links in the path are followed.
    explicit OpenFolder(std::string path) : name_(std::move(path)) {}
    // The folder of that name in another. If it is a link, it can't be opened.
    OpenFolder(std::shared_ptr<const OpenFolder> above, std::string name)
        : above_(std::move(above)), name_(std::move(name)), depth_(above_->depth_ + 1) {}

    // The absolute paths of the folder and of its entry with that name.
    std::string Path() const;
    std::string PathOf(std::string_view entry) const;

    // The folder's descriptor. The first call opens it and so does the first after LetGo. Never null; empty
    // if the folder can't be opened.
    std::shared_ptr<const FileDescriptor> Descriptor() const;

    // Closes the descriptor when its last user is done, so that a deep tree doesn't exhaust the process's
    // limit of open files. Every 64th level keeps its descriptor: other levels are reopened relative to it.
    void LetGo() const;

  private:
    std::shared_ptr<const FileDescriptor> Held() const;
    FileDescriptor Open() const;

    const std::shared_ptr<const OpenFolder> above_;  // null for a folder with an absolute path
    const std::string name_;                         // the absolute path if `above_` is null
    const std::size_t depth_ = 0;
    mutable std::mutex mutex_;
    mutable std::shared_ptr<const FileDescriptor> descriptor_;
};

}  // namespace varnith
