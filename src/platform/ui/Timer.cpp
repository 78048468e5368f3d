#include "platform/ui/Timer.h"

#include "platform/base/Event.h"

namespace varnith {

void Timer::SetPeriod(std::int32_t milliseconds) {
    period_ = milliseconds;
    Restart();
}

void Timer::SetMode(ModeKind mode) {
    mode_ = mode;
    Restart();
}

void Timer::Restart() {
    running_ = nullptr;
    if (mode_ == ModeKind::Multiple) running_ = Desktop::Current().StartTimer(period_, [this] { Fire(); });
}

void Timer::Fire() {
    RunSlot(&owner_, Action);
}

}  // namespace varnith
