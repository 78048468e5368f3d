#include "platform/threads/Waiting.h"

#include <algorithm>
#include <chrono>

#include <poll.h>

#include "platform/threads/Scheduler.h"

namespace varnith {

bool WaitBriefly(int descriptor, bool for_writing) {
    constexpr std::chrono::milliseconds Briefly{5};
    Scheduler& scheduler = Scheduler::Current();
    const auto wait = std::min(scheduler.UntilNextTurn().value_or(Briefly), Briefly);
    pollfd watched{descriptor, static_cast<short>(for_writing ? POLLIN | POLLOUT : POLLIN), 0};
    const bool ready = poll(&watched, 1, static_cast<int>(wait.count())) > 0;
    scheduler.GiveUpSlice();
    return ready;
}

}  // namespace varnith
