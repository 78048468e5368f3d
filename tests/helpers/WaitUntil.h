#pragma once

#include <chrono>
#include <functional>
#include <source_location>

#include <gtest/gtest.h>

#include "platform/ui/Desktop.h"

namespace varnith::test {

// Has a turn of work done until the condition holds. Fails the test at the place that waits when that takes
// too long; the limit is far from what the busiest machine needs.
inline void WaitUntil(const std::function<bool()>& condition, const std::function<void()>& turn,
                      std::source_location place = std::source_location::current()) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit) {
            ADD_FAILURE_AT(place.file_name(), static_cast<int>(place.line()))
                << "what is waited for has not come";
            return;
        }
        turn();
    }
}

// Serves the events that come in until then: those of sockets, of the threads' turns, and of the screen.
inline void ServeUntil(const std::function<bool()>& condition,
                       std::source_location place = std::source_location::current()) {
    WaitUntil(
        condition, [] { Desktop::Current().DoEvents(5); }, place);
}

}  // namespace varnith::test
