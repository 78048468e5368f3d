#include "FailingCalls.h"

#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <cstring>

#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <netdb.h>
#include <pthread.h>
#include <spawn.h>
#include <stdio.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using varnith::test::Call;

constexpr int None = -1;

std::atomic<int> failing = None;  // the Call
std::atomic<long> calls_left = 0;
std::atomic<const char*> failed = nullptr;
int failing_error = 0;
bool failing_lasts = false;
const char* failing_function = nullptr;  // null for all of the kind
thread_local int exempt = 0;

bool Fails(Call call, const char* function) {
    if (failing.load() != static_cast<int>(call) || exempt > 0) return false;
    if (failing_function && std::strcmp(failing_function, function) != 0) return false;
    const long left = --calls_left;
    if (left > 0 || (left < 0 && !failing_lasts)) return false;
    failed = function;
    errno = failing_error;
    return true;
}

bool FailsToAllocate(std::size_t size, const char* function) {
    constexpr std::size_t Page = 4096;
    return size > Page && Fails(Call::Memory, function);
}

template <class Function>
Function* Real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

namespace varnith::test {

void BeginFault(const Fault& fault) {
    failed = nullptr;
    failing_error = fault.error;
    failing_lasts = fault.lasts;
    failing_function = fault.function;
    calls_left = fault.number;
    failing = static_cast<int>(fault.call);
}

std::string EndFault() {
    failing = None;
    const char* function = failed;
    return function ? function : "";
}

int FailureOf(Call call, const char* function) {
    return Fails(call, function) ? failing_error : 0;
}

Unfailing::Unfailing() {
    ++exempt;
}

Unfailing::~Unfailing() {
    --exempt;
}

}  // namespace varnith::test

// A function that fails in turn, else calls the one of the C library. `failure` is what it returns on
// failure.
#define FAILING(call, failure, result, name, parameters, arguments)   \
    result name parameters {                                          \
        static auto* const real = Real<result parameters>(#name);     \
        return Fails(Call::call, #name) ? (failure) : real arguments; \
    }

#define FAILING_OPEN(name, parameters, ...)                                                  \
    int name parameters {                                                                    \
        static auto* const real = Real<int parameters>(#name);                               \
        va_list more;                                                                        \
        va_start(more, flags);                                                               \
        const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0; \
        va_end(more);                                                                        \
        return Fails(Call::Open, #name) ? -1 : real(__VA_ARGS__, flags, mode);               \
    }

// Only the calls for locks fail.
#define FAILING_LOCK(name)                                                                  \
    int name(int file, int command, ...) {                                                  \
        static auto* const real = Real<int(int, int, ...)>(#name);                          \
        va_list more;                                                                       \
        va_start(more, command);                                                            \
        void* const argument = va_arg(more, void*);                                         \
        va_end(more);                                                                       \
        const bool locks = command == F_SETLK || command == F_GETLK || command == F_SETLKW; \
        return locks && Fails(Call::Lock, #name) ? -1 : real(file, command, argument);      \
    }

extern "C" {

FAILING_OPEN(open, (const char* path, int flags, ...), path)
FAILING_OPEN(open64, (const char* path, int flags, ...), path)
FAILING_OPEN(openat, (int folder, const char* path, int flags, ...), folder, path)
FAILING_OPEN(openat64, (int folder, const char* path, int flags, ...), folder, path)
FAILING_LOCK(fcntl)
FAILING_LOCK(fcntl64)

FAILING(Read, -1, ssize_t, read, (int f, void* b, size_t n), (f, b, n))
FAILING(Read, -1, ssize_t, __read_chk, (int f, void* b, size_t n, size_t r), (f, b, n, r))
FAILING(Read, -1, ssize_t, pread, (int f, void* b, size_t n, off_t o), (f, b, n, o))
FAILING(Read, -1, ssize_t, __pread_chk, (int f, void* b, size_t n, off_t o, size_t r), (f, b, n, o, r))
FAILING(Read, -1, ssize_t, pread64, (int f, void* b, size_t n, off64_t o), (f, b, n, o))
FAILING(List, -1, ssize_t, getdents64, (int f, void* b, size_t n), (f, b, n))

FAILING(Stat, -1, int, stat, (const char* p, struct stat* s), (p, s))
FAILING(Stat, -1, int, lstat, (const char* p, struct stat* s), (p, s))
FAILING(Stat, -1, int, fstat, (int f, struct stat* s), (f, s))
FAILING(Stat, -1, int, fstatat, (int d, const char* p, struct stat* s, int h), (d, p, s, h))
FAILING(Stat, -1, int, stat64, (const char* p, struct stat64* s), (p, s))
FAILING(Stat, -1, int, lstat64, (const char* p, struct stat64* s), (p, s))
FAILING(Stat, -1, int, fstat64, (int f, struct stat64* s), (f, s))
FAILING(Stat, -1, ssize_t, readlinkat, (int d, const char* p, char* b, size_t n), (d, p, b, n))
FAILING(Stat, -1, int, faccessat, (int d, const char* p, int m, int h), (d, p, m, h))
FAILING(Stat, -1, int, access, (const char* p, int m), (p, m))

FAILING(Write, -1, ssize_t, write, (int f, const void* b, size_t n), (f, b, n))
FAILING(Write, -1, ssize_t, pwrite64, (int f, const void* b, size_t n, off64_t o), (f, b, n, o))
FAILING(Truncate, -1, int, ftruncate64, (int f, off64_t n), (f, n))
FAILING(Sync, -1, int, fsync, (int f), (f))
FAILING(Sync, -1, int, fdatasync, (int f), (f))

FAILING(Rename, -1, int, renameat, (int d, const char* p, int e, const char* q), (d, p, e, q))
FAILING(Rename, -1, int, renameat2, (int d, const char* p, int e, const char* q, unsigned h), (d, p, e, q, h))
FAILING(Remove, -1, int, unlink, (const char* p), (p))
FAILING(Remove, -1, int, unlinkat, (int d, const char* p, int h), (d, p, h))
FAILING(Make, -1, int, mkdir, (const char* p, mode_t m), (p, m))
FAILING(Make, -1, int, mkdirat, (int d, const char* p, mode_t m), (d, p, m))
FAILING(Make, -1, int, symlinkat, (const char* t, int d, const char* p), (t, d, p))
FAILING(Mode, -1, int, fchmod, (int f, mode_t m), (f, m))
FAILING(Mode, -1, int, fchmodat, (int d, const char* p, mode_t m, int h), (d, p, m, h))
FAILING(Mode, -1, int, fchown, (int f, uid_t u, gid_t g), (f, u, g))

FAILING(Socket, -1, int, socket, (int d, int t, int p), (d, t, p))
FAILING(Connect, -1, int, connect, (int s, const sockaddr* a, socklen_t n), (s, a, n))
FAILING(Send, -1, ssize_t, send, (int s, const void* b, size_t n, int h), (s, b, n, h))
FAILING(Receive, -1, ssize_t, recv, (int s, void* b, size_t n, int h), (s, b, n, h))
FAILING(Receive, -1, ssize_t, __recv_chk, (int s, void* b, size_t n, size_t r, int h), (s, b, n, r, h))
FAILING(Event, -1, int, epoll_ctl, (int q, int c, int f, epoll_event* e), (q, c, f, e))
FAILING(Event, -1, int, eventfd, (unsigned n, int h), (n, h))
FAILING(LookUp, failing_error, int, getaddrinfo,
        (const char* n, const char* s, const addrinfo* w, addrinfo** f), (n, s, w, f))
FAILING(Thread, failing_error, int, pthread_create,
        (pthread_t * t, const pthread_attr_t* a, void* (*r)(void*), void* x), (t, a, r, x))
FAILING(Spawn, failing_error, int, posix_spawn,
        (pid_t * p, const char* c, const posix_spawn_file_actions_t* f, const posix_spawnattr_t* a,
         char* const v[], char* const e[]),
        (p, c, f, a, v, e))
FAILING(Pipe, -1, int, pipe2, (int e[2], int h), (e, h))
FAILING(Map, MAP_FAILED, void*, mmap, (void* a, size_t n, int p, int h, int f, off_t o), (a, n, p, h, f, o))

// The C library's own names for these three, because dlsym(3) allocates.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) {
    return FailsToAllocate(size, "malloc") ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
    return FailsToAllocate(count * size, "calloc") ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* block, std::size_t size) {
    return FailsToAllocate(size, "realloc") ? nullptr : __libc_realloc(block, size);
}
}
