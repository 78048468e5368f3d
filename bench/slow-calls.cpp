#include <atomic>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

// A substitute for a slow mounted share, for machines where none can be mounted. Loaded with LD_PRELOAD, it
// delays each call below the folder BENCH_SHARE by BENCH_WAIT milliseconds. Names and attributes that a
// listing has returned count as cached, so a file costs its open and its reads, and a folder its open and its
// listing.
namespace {

std::atomic<bool> on_share[65536];  // index: file descriptor

bool IsOnShare(int descriptor) {
    return descriptor >= 0 && descriptor < 65536 && on_share[descriptor];
}

bool LeadsToShare(int folder, const char* path) {
    static const char* const share = std::getenv("BENCH_SHARE");
    static const std::size_t length = share ? std::strlen(share) : 0;
    if (*path != '/' && folder != AT_FDCWD) return IsOnShare(folder);
    return share && std::strncmp(path, share, length) == 0 && (path[length] == '/' || path[length] == '\0');
}

void Wait() {
    static const char* const wait = std::getenv("BENCH_WAIT");
    static const timespec delay{0, static_cast<long>((wait ? std::atof(wait) : 0) * 1e6)};
    thread_local const int exact = prctl(PR_SET_TIMERSLACK, 1UL);
    static_cast<void>(exact);
    nanosleep(&delay, nullptr);
}

template <class Function>
Function* Real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int OpenWaiting(int folder, const char* path, int flags, va_list more) {
    static auto* const real = Real<int(int, const char*, int, ...)>("openat");
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0;
    const bool slow = LeadsToShare(folder, path);
    if (slow) Wait();
    const int descriptor = real(folder, path, flags, mode);
    if (descriptor >= 0 && descriptor < 65536) on_share[descriptor] = slow;
    return descriptor;
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const int descriptor = OpenWaiting(AT_FDCWD, path, flags, more);
    va_end(more);
    return descriptor;
}

int openat(int folder, const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const int descriptor = OpenWaiting(folder, path, flags, more);
    va_end(more);
    return descriptor;
}

ssize_t pread(int file, void* bytes, std::size_t size, off_t offset) {
    static auto* const real = Real<ssize_t(int, void*, std::size_t, off_t)>("pread");
    if (IsOnShare(file)) Wait();
    return real(file, bytes, size, offset);
}

// A listing waits once, at its start, however many calls it takes.
ssize_t getdents64(int folder, void* entries, std::size_t size) noexcept {
    static auto* const real = Real<ssize_t(int, void*, std::size_t)>("getdents64");
    if (IsOnShare(folder) && lseek(folder, 0, SEEK_CUR) == 0) Wait();
    return real(folder, entries, size);
}

// For the open and for the listing, which readdir(3) gets within the C library.
DIR* opendir(const char* path) {
    static auto* const real = Real<DIR*(const char*)>("opendir");
    if (LeadsToShare(AT_FDCWD, path))
        for (int call = 0; call < 2; ++call) Wait();
    return real(path);
}
}
