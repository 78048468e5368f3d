#include "platform/files/OpenFolder.h"

#include <vector>

namespace varnith {

namespace {

// The maximum number of path components that reopening a folder has to resolve.
constexpr std::size_t LevelsBetweenKept = 64;

}  // namespace

std::string OpenFolder::Path() const {
    std::vector<const OpenFolder*> below;
    const OpenFolder* folder = this;
    for (; folder->above_; folder = folder->above_.get()) below.push_back(folder);
    std::string path = folder->name_;
    for (; !below.empty(); below.pop_back()) {
        if (path != "/") path += '/';
        path += below.back()->name_;
    }
    return path;
}

std::string OpenFolder::PathOf(std::string_view entry) const {
    std::string path = Path();
    if (path != "/") path += '/';
    return path.append(entry);
}

std::shared_ptr<const FileDescriptor> OpenFolder::Held() const {
    const std::lock_guard lock(mutex_);
    return descriptor_;
}

std::shared_ptr<const FileDescriptor> OpenFolder::Descriptor() const {
    if (auto held = Held()) return held;
    auto opened = std::make_shared<const FileDescriptor>(Open());
    const std::lock_guard lock(mutex_);
    if (!descriptor_ && *opened) descriptor_ = opened;
    return opened;
}

// Opens it relative to the nearest folder above that has a descriptor.
FileDescriptor OpenFolder::Open() const {
    const FileSystem& disk = FileSystem::Current();
    std::string path = name_;
    for (const OpenFolder* above = above_.get(); above; above = above->above_.get()) {
        if (const auto held = above->Held()) return disk.OpenFolderBelow(*held, path);
        path = above->name_ + (above->name_ == "/" ? "" : "/") + path;
    }
    return disk.OpenFolderAt(path);
}

void OpenFolder::LetGo() const {
    if (depth_ % LevelsBetweenKept == LevelsBetweenKept - 1) return;
    const std::lock_guard lock(mutex_);
    descriptor_ = nullptr;
}

}  // namespace varnith
