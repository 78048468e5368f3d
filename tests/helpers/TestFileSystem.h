#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "helpers/WaitUntil.h"
#include "platform/base/InForce.h"
#include "platform/files/OpenFolder.h"
#include "platform/threads/Workers.h"

namespace varnith::test {

// Waits until no worker uses the disk any more.
inline void WaitForWorkers() {
    WaitUntil([] { return !Workers::AnyAtWork(); }, std::this_thread::yield);
}

// Puts a disk in force for a scope, and at its end waits until no worker uses the disk.
class DiskInForce {
  public:
    explicit DiskInForce(const FileSystem& disk) : in_force_(disk) {}
    ~DiskInForce() { WaitForWorkers(); }

  private:
    InForce<const FileSystem> in_force_;
};

// The real disk, except that the test chooses the executable's path and can make calls fail.
class TestFileSystem : public FileSystem {
  public:
    std::string executable;
    // Called before each opening and each listing, by any thread, with the path: true makes it fail. Changes
    // that it makes to the disk happen between the listing that gave the path and the path's use.
    std::function<bool(const std::string& path)> fails;
    // Files to read from another path.
    std::map<std::string, std::string> elsewhere;
    // The paths opened for reading so far.
    mutable std::vector<std::string> opened;

    FileDescriptor OpenForReading(const std::string& path) const override {
        return Opened(path, [&](const std::string& place) { return FileSystem::OpenForReading(place); });
    }
    FileDescriptor OpenForReading(const OpenFolder& folder, const std::string& name) const override {
        return Opened(folder.PathOf(name),
                      [&](const std::string&) { return FileSystem::OpenForReading(folder, name); });
    }
    bool List(const OpenFolder& folder, std::vector<DirectoryEntry>& entries) const override {
        return !(fails && fails(folder.Path())) && FileSystem::List(folder, entries);
    }
    std::string ExecutablePath() const override { return executable; }

  private:
    template <class Open>
    FileDescriptor Opened(const std::string& path, const Open& open) const {
        {
            const std::lock_guard lock(mutex_);
            opened.push_back(path);
        }
        if (fails && fails(path)) return {};
        const auto other = elsewhere.find(path);
        return open(other == elsewhere.end() ? path : other->second);
    }

    mutable std::mutex mutex_;
};

}  // namespace varnith::test
