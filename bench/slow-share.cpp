#define FUSE_USE_VERSION 31
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include <dirent.h>
#include <fcntl.h>
#include <fuse.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

// A share far away: a mount that shows a folder for reading, and lets each call wait for a given time before
// it is answered. Calls wait side by side, a thread each, as requests to a server are under way side by side.
// Names and attributes that a listing brought are believed for a minute, as a client of a server does, so a
// file that is opened and read costs two calls: open and read.   slow-share FOLDER MILLISECONDS MOUNTPOINT
namespace {

std::string source;
timespec delay{};

std::string Behind(const char* path) {
    return source + path;
}

std::uint64_t HandleOf(void* folder) {
    return reinterpret_cast<std::uint64_t>(folder);
}

DIR* FolderOf(const fuse_file_info* info) {
    return reinterpret_cast<DIR*>(info->fh);
}

// The system rounds a sleep up by 50 microseconds where it isn't told otherwise.
void Wait() {
    thread_local const int exact = prctl(PR_SET_TIMERSLACK, 1UL);
    static_cast<void>(exact);
    nanosleep(&delay, nullptr);
}

int ErrorUnless(bool done) {
    return done ? 0 : -errno;
}

void* Begin(fuse_conn_info* connection, fuse_config* config) {
    connection->max_background = 1024;
    connection->congestion_threshold = 1024;
    // Each listing brings the attributes along.
    connection->want &= ~static_cast<unsigned>(FUSE_CAP_READDIRPLUS_AUTO);
    config->entry_timeout = config->attr_timeout = 60;
    config->nullpath_ok = 1;
    return nullptr;
}

int GetAttributes(const char* path, struct stat* status, fuse_file_info* info) {
    Wait();
    if (!path) return ErrorUnless(fstat(static_cast<int>(info->fh), status) == 0);
    return ErrorUnless(lstat(Behind(path).c_str(), status) == 0);
}

int Open(const char* path, fuse_file_info* info) {
    Wait();
    const int file = open(Behind(path).c_str(), info->flags & ~O_NOCTTY);
    info->fh = static_cast<std::uint64_t>(file);
    return ErrorUnless(file >= 0);
}

int Read(const char*, char* bytes, std::size_t size, off_t offset, fuse_file_info* info) {
    Wait();
    const ssize_t count = pread(static_cast<int>(info->fh), bytes, size, offset);
    return count < 0 ? -errno : static_cast<int>(count);
}

int Close(const char*, fuse_file_info* info) {
    return ErrorUnless(close(static_cast<int>(info->fh)) == 0);
}

int OpenFolder(const char* path, fuse_file_info* info) {
    Wait();
    DIR* folder = opendir(Behind(path).c_str());
    info->fh = HandleOf(folder);
    return ErrorUnless(folder != nullptr);
}

int List(const char*, void* buffer, fuse_fill_dir_t add, off_t offset, fuse_file_info* info,
         fuse_readdir_flags) {
    Wait();
    DIR* folder = FolderOf(info);
    if (offset != telldir(folder)) seekdir(folder, offset);
    while (const dirent* entry = readdir(folder)) {
        struct stat status {};
        fstatat(dirfd(folder), entry->d_name, &status, AT_SYMLINK_NOFOLLOW);
        if (add(buffer, entry->d_name, &status, telldir(folder), FUSE_FILL_DIR_PLUS) != 0) break;
    }
    return 0;
}

int CloseFolder(const char*, fuse_file_info* info) {
    return ErrorUnless(closedir(FolderOf(info)) == 0);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fputs("usage: slow-share FOLDER MILLISECONDS MOUNTPOINT\n", stderr);
        return 2;
    }
    source = argv[1];
    const double milliseconds = std::atof(argv[2]);
    delay.tv_nsec = static_cast<long>(milliseconds * 1e6);

    fuse_operations calls{};
    calls.init = Begin;
    calls.getattr = GetAttributes;
    calls.open = Open;
    calls.read = Read;
    calls.release = Close;
    calls.opendir = OpenFolder;
    calls.readdir = List;
    calls.releasedir = CloseFolder;
    char options[] = "ro,max_threads=256,max_idle_threads=256";
    char foreground[] = "-f", with[] = "-o";
    char* arguments[] = {argv[0], foreground, with, options, argv[3], nullptr};
    return fuse_main(5, arguments, &calls, nullptr);
}
