#define FUSE_USE_VERSION 31
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <fuse_lowlevel.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

// A slow share: a read-only FUSE mount of a folder that answers each call after a given delay. Any number of
// calls may be pending at the same time, like requests to a server. No thread sleeps for a call, because that
// would use more processor time than the calls themselves. Names and attributes that a listing has returned
// are cached for a minute, as the client of a file server does, so opening and reading a file costs two
// calls.
//   slow-share FOLDER MILLISECONDS MOUNTPOINT
namespace {

// Runs each function that it is given, in order, when the delay has passed since then.
class Later {
  public:
    explicit Later(double milliseconds)
        : delay_(static_cast<std::int64_t>(milliseconds * 1e6)), thread_([this] { Work(); }) {}
    ~Later() {
        Do(nullptr);
        thread_.join();
    }

    void Do(std::function<void()> answer) {
        const std::lock_guard lock(mutex_);
        waiting_.emplace_back(std::chrono::steady_clock::now() + delay_, std::move(answer));
        if (waiting_.size() == 1) changed_.notify_one();
    }

  private:
    void Work() {
        // By default the kernel delays each wake-up by up to 50 microseconds.
        prctl(PR_SET_TIMERSLACK, 1UL);
        std::unique_lock lock(mutex_);
        while (true) {
            changed_.wait(lock, [this] { return !waiting_.empty(); });
            const auto [due, answer] = std::move(waiting_.front());
            lock.unlock();
            std::this_thread::sleep_until(due);
            if (!answer) return;
            answer();
            lock.lock();
            waiting_.pop_front();
        }
    }

    const std::chrono::nanoseconds delay_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::pair<std::chrono::steady_clock::time_point, std::function<void()>>> waiting_;
    std::thread thread_;
};

std::unique_ptr<Later> later;

// The known paths; the index is the inode number that the kernel has for it. Not locked: only answers use
// them, and these run one after the other.
std::vector<std::string> paths(FUSE_ROOT_ID + 1);
std::unordered_map<std::string, fuse_ino_t> numbers;

fuse_entry_param EntryOf(const std::string& path) {
    fuse_entry_param entry{};
    entry.attr_timeout = entry.entry_timeout = 60;
    if (lstat(path.c_str(), &entry.attr) != 0) return entry;
    const auto [known, is_new] = numbers.try_emplace(path, paths.size());
    if (is_new) paths.push_back(path);
    entry.ino = entry.attr.st_ino = known->second;
    return entry;
}

struct Folder {
    std::vector<std::pair<std::string, fuse_entry_param>> entries;
};

Folder* FolderOf(const fuse_file_info* info) {
    return reinterpret_cast<Folder*>(info->fh);
}

void LookUp(fuse_req_t request, fuse_ino_t parent, const char* name) {
    later->Do([request, parent, name = std::string(name)] {
        const fuse_entry_param entry = EntryOf(paths[parent] + "/" + name);
        entry.ino ? fuse_reply_entry(request, &entry) : fuse_reply_err(request, ENOENT);
    });
}

void GetAttributes(fuse_req_t request, fuse_ino_t number, fuse_file_info*) {
    later->Do([request, number] {
        const fuse_entry_param entry = EntryOf(paths[number]);
        entry.ino ? fuse_reply_attr(request, &entry.attr, 60) : fuse_reply_err(request, ENOENT);
    });
}

void Open(fuse_req_t request, fuse_ino_t number, fuse_file_info* info) {
    later->Do([request, number, answer = *info]() mutable {
        const int file = open(paths[number].c_str(), O_RDONLY | O_CLOEXEC);
        answer.fh = static_cast<std::uint64_t>(file);
        file >= 0 ? fuse_reply_open(request, &answer) : fuse_reply_err(request, errno);
    });
}

void Read(fuse_req_t request, fuse_ino_t, std::size_t size, off_t offset, fuse_file_info* info) {
    later->Do([=, file = static_cast<int>(info->fh)] {
        std::vector<char> bytes(size);
        const ssize_t count = pread(file, bytes.data(), size, offset);
        count < 0 ? fuse_reply_err(request, errno)
                  : fuse_reply_buf(request, bytes.data(), static_cast<std::size_t>(count));
    });
}

void Close(fuse_req_t request, fuse_ino_t, fuse_file_info* info) {
    close(static_cast<int>(info->fh));
    fuse_reply_err(request, 0);
}

void OpenFolder(fuse_req_t request, fuse_ino_t number, fuse_file_info* info) {
    later->Do([request, number, answer = *info]() mutable {
        auto folder = std::make_unique<Folder>();
        const std::string path = paths[number];
        const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(path.c_str()), closedir);
        while (const dirent* entry = listing ? readdir(listing.get()) : nullptr)
            if (entry->d_name[0] != '.')
                folder->entries.emplace_back(entry->d_name, EntryOf(path + "/" + entry->d_name));
        answer.fh = reinterpret_cast<std::uint64_t>(folder.release());
        fuse_reply_open(request, &answer);
    });
}

void List(fuse_req_t request, fuse_ino_t, std::size_t size, off_t offset, fuse_file_info* info) {
    later->Do([=, folder = FolderOf(info)] {
        std::vector<char> bytes(size);
        std::size_t used = 0;
        for (auto next = static_cast<std::size_t>(offset); next < folder->entries.size(); ++next) {
            const auto& [name, entry] = folder->entries[next];
            const std::size_t length = fuse_add_direntry_plus(
                request, &bytes[used], size - used, name.c_str(), &entry, static_cast<off_t>(next + 1));
            if (length > size - used) break;
            used += length;
        }
        fuse_reply_buf(request, bytes.data(), used);
    });
}

void CloseFolder(fuse_req_t request, fuse_ino_t, fuse_file_info* info) {
    delete FolderOf(info);
    fuse_reply_err(request, 0);
}

void Begin(void*, fuse_conn_info* connection) {
    connection->max_background = 1024;
    connection->congestion_threshold = 1024;
    // Makes each listing return the attributes too.
    connection->want &= ~static_cast<unsigned>(FUSE_CAP_READDIRPLUS_AUTO);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fputs("usage: slow-share FOLDER MILLISECONDS MOUNTPOINT\n", stderr);
        return 2;
    }
    paths[FUSE_ROOT_ID] = argv[1];
    numbers[argv[1]] = FUSE_ROOT_ID;
    fuse_lowlevel_ops calls{};
    calls.init = Begin;
    calls.lookup = LookUp;
    calls.getattr = GetAttributes;
    calls.open = Open;
    calls.read = Read;
    calls.release = Close;
    calls.opendir = OpenFolder;
    calls.readdirplus = List;
    calls.releasedir = CloseFolder;
    char read_only[] = "-oro";
    char* words[] = {argv[0], read_only, nullptr};
    fuse_args arguments = FUSE_ARGS_INIT(2, words);
    fuse_session* session = fuse_session_new(&arguments, &calls, sizeof calls, nullptr);
    if (!session || fuse_session_mount(session, argv[3]) != 0) return 1;
    later = std::make_unique<Later>(std::atof(argv[2]));
    const int result = fuse_session_loop(session);
    later.reset();
    fuse_session_destroy(session);
    return result == 0 ? 0 : 1;
}
