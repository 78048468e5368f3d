#include "platform/ui/Desktop.h"

#include <algorithm>
#include <utility>

#include <poll.h>

#include "platform/net/SocketEvents.h"
#include "platform/threads/Scheduler.h"

namespace varnith {

namespace {
Desktop* in_force = nullptr;
}

void Desktop::DoEvents(std::int32_t milliseconds) {
    const auto sockets = SocketEvents::Current();
    pollfd watched{sockets->Descriptor(), POLLIN, 0};
    poll(&watched, 1, std::max(milliseconds, 0));
    sockets->Serve();
    Scheduler::Current().Turn();
}

Desktop& Desktop::Current() {
    static Desktop without_display;
    return in_force ? *in_force : without_display;
}

Desktop::InForce::InForce(Desktop& desktop) : previous_(std::exchange(in_force, &desktop)) {}

Desktop::InForce::~InForce() {
    in_force = previous_;
}

}  // namespace varnith
