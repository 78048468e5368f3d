#pragma once

#include <chrono>

#include <time.h>

namespace varnith {

// The time since some fixed moment, in steps of some milliseconds, for a few nanoseconds: for what is asked
// at each pass of a loop that runs a million times.
inline std::chrono::nanoseconds CoarseNow() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

}  // namespace varnith
