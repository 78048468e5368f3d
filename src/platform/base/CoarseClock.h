#pragma once

#include <chrono>

#include <time.h>

namespace varnith {

// A monotonic time with a resolution of a few milliseconds (clock_gettime(2), CLOCK_MONOTONIC_COARSE). It is
// cheaper than std::chrono::steady_clock because it doesn't read the hardware's counter. Meant for loops that
// ask for the time at each of a great many passes.
inline std::chrono::nanoseconds CoarseNow() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

}  // namespace varnith
