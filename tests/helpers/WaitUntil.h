#pragma once

#include <chrono>
#include <functional>
#include <source_location>

#include <gtest/gtest.h>

#include "platform/ui/Desktop.h"

namespace varnith::test {

// Calls `turn` until the condition holds. Past a limit it fails the test at the caller's line; the limit is
// far above what the busiest machine needs.
inline void WaitUntil(const std::function<bool()>& condition, const std::function<void()>& turn,
                      std::source_location place = std::source_location::current()) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit) {
            ADD_FAILURE_AT(place.file_name(), static_cast<int>(place.line()))
                << "timed out waiting for the condition";
            return;
        }
        turn();
    }
}

// Handles events until the condition holds: those of sockets, of the threads' turns, and of the screen.
inline void ServeUntil(const std::function<bool()>& condition,
                       std::source_location place = std::source_location::current()) {
    WaitUntil(
        condition, [] { Desktop::Current().DoEvents(5); }, place);
}

}  // namespace varnith::test
