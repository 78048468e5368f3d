#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "platform/files/FileSystem.h"

namespace varnith::test {

// The real disk, on which the executable lies where the test says, and on which a call fails on demand.
class TestFileSystem : public FileSystem {
  public:
    std::string executable;
    // Asked with the path in front of each opening and each listing, by any thread: true makes it fail. What
    // it does to the disk first happens between the listing that gave the path and its use.
    std::function<bool(const std::string& path)> fails;
    // Files that are read from another place.
    std::map<std::string, std::string> elsewhere;
    // The paths opened for reading so far.
    mutable std::vector<std::string> opened;

    FileHandle OpenForReading(const std::string& path) const override {
        {
            const std::lock_guard lock(mutex_);
            opened.push_back(path);
        }
        if (fails && fails(path)) return {};
        const auto other = elsewhere.find(path);
        return FileSystem::OpenForReading(other == elsewhere.end() ? path : other->second);
    }
    std::vector<DirectoryEntry> Entries(const std::string& path) const override {
        if (fails && fails(path)) return {};
        return FileSystem::Entries(path);
    }
    std::string ExecutablePath() const override { return executable; }

  private:
    mutable std::mutex mutex_;
};

}  // namespace varnith::test
