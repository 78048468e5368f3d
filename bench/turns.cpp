#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

// Loaded with LD_PRELOAD, records how long each turn of the event loop takes: from the return of one wait to
// the start of the next. During a turn the program handles no key or click and draws nothing. Each turn
// becomes a line in the file BENCH_TURNS: the time of its end in seconds since 1970, and its duration in
// milliseconds.
namespace {

timespec woken{};  // zero before the first turn

double MillisecondsSince(const timespec& earlier, const timespec& now) {
    return 1e3 * static_cast<double>(now.tv_sec - earlier.tv_sec) +
           1e-6 * static_cast<double>(now.tv_nsec - earlier.tv_nsec);
}

// Other code waits on the main thread too, such as a query to the X server.
bool IsLoop(const void* caller) {
    static const void* last_loop = nullptr;
    if (gettid() != getpid()) return false;
    if (caller == last_loop) return true;
    Dl_info info;
    if (dladdr(caller, &info) == 0) return false;
    if (!std::strstr(info.dli_fname, "libglib-") && !std::strstr(info.dli_fname, "libQt6Core")) return false;
    last_loop = caller;
    return true;
}

void NoteTurn() {
    static const char* const path = std::getenv("BENCH_TURNS");
    static const int log = path ? open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666) : -1;
    timespec now{}, date{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    clock_gettime(CLOCK_REALTIME, &date);
    if (log < 0 || woken.tv_sec == 0) return;
    char line[64];
    const int length =
        std::snprintf(line, sizeof line, "%jd.%06ld %.3f\n", static_cast<std::intmax_t>(date.tv_sec),
                      date.tv_nsec / 1000, MillisecondsSince(woken, now));
    [[maybe_unused]] const ssize_t written = write(log, line, static_cast<std::size_t>(length));
}

template <class Wait>
int WaitAsLoop(const void* caller, Wait&& wait) {
    const bool is_loop = IsLoop(caller);
    if (is_loop) NoteTurn();
    const int result = wait();
    if (is_loop) clock_gettime(CLOCK_MONOTONIC, &woken);
    return result;
}

}  // namespace

extern "C" int poll(pollfd* descriptors, nfds_t count, int timeout) {
    static const auto real = reinterpret_cast<decltype(&poll)>(dlsym(RTLD_NEXT, "poll"));
    return WaitAsLoop(__builtin_return_address(0), [&] { return real(descriptors, count, timeout); });
}

extern "C" int ppoll(pollfd* descriptors, nfds_t count, const timespec* timeout, const sigset_t* mask) {
    static const auto real = reinterpret_cast<decltype(&ppoll)>(dlsym(RTLD_NEXT, "ppoll"));
    return WaitAsLoop(__builtin_return_address(0), [&] { return real(descriptors, count, timeout, mask); });
}
