#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/files/FileSystem.h"

namespace varnith {

// A folder on the way of a walk, which opens it below the folder that holds it: so no path is resolved from
// its root again and again, however deep it is, and none is too long for the system. Threads may share one.
class OpenFolder {
  public:
    // The folder of an absolute path. Links in the path are followed.
    explicit OpenFolder(std::string path) : name_(std::move(path)) {}
    // A folder in another one. A link is none.
    OpenFolder(std::shared_ptr<const OpenFolder> above, std::string name)
        : above_(std::move(above)), name_(std::move(name)), depth_(above_->depth_ + 1) {}

    std::string Path() const;
    // The path of an entry of the folder.
    std::string PathOf(std::string_view entry) const;

    // The folder's descriptor. It is opened by the first call and kept, and opened anew after LetGo. Empty if
    // the folder can't be opened. Never null.
    std::shared_ptr<const FileDescriptor> Descriptor() const;

    // Closes the descriptor as soon as nobody uses it, so that a deep tree doesn't take all that the process
    // may have. One folder in 64, counted downwards, keeps it: the others are opened anew from the nearest.
    void LetGo() const;

  private:
    std::shared_ptr<const FileDescriptor> Held() const;
    FileDescriptor Open() const;

    const std::shared_ptr<const OpenFolder> above_;  // null for the folder of a path
    const std::string name_;                         // of that one the path
    const std::size_t depth_ = 0;
    mutable std::mutex mutex_;
    mutable std::shared_ptr<const FileDescriptor> descriptor_;
};

}  // namespace varnith
