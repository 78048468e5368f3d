#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/base/Ref.h"
#include "platform/ui/Desktop.h"

namespace varnith {

// Calls Action repeatedly from the event loop, nested loops included. It can't fire while a handler runs;
// firings that were due in that time are merged into one after the handler.
class Timer {
  public:
    // The owner is the object that the timer is a member of. The timer keeps it alive while Action runs.
    explicit Timer(RefCounted& owner) : owner_(owner) {}
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    std::function<void()> Action;

    enum class ModeKind : std::uint8_t { Off = 0, Multiple = 2 };

    // The period in milliseconds; it is 1000 at first. A change restarts the timer.
    void SetPeriod(std::int32_t milliseconds);
    void SetMode(ModeKind mode);

  private:
    void Restart();
    void Fire();

    RefCounted& owner_;
    std::int32_t period_ = 1000;
    ModeKind mode_ = ModeKind::Off;
    std::unique_ptr<TimerView> running_;
};

}  // namespace varnith
