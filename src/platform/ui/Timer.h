#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/base/Ref.h"
#include "platform/ui/Desktop.h"

namespace varnith {

// A clock of the event loop, that of a dialog too. While a handler keeps the loop waiting it doesn't fire;
// firings that fell due meanwhile come as one behind it.
class Timer {
  public:
    // The owner is what the timer is a part of, and is kept alive while the slot runs.
    explicit Timer(RefCounted& owner) : owner_(owner) {}
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    std::function<void()> Action;

    enum class ModeKind : std::uint8_t { Off = 0, Multiple = 2 };

    // How often it fires while the mode is Multiple, in milliseconds. A change starts the period anew.
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
