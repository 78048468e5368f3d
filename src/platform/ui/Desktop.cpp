#include "platform/ui/Desktop.h"

#include <algorithm>

#include <poll.h>

#include "platform/base/InForce.h"
#include "platform/net/SocketEvents.h"
#include "platform/threads/Scheduler.h"

namespace varnith {

void Desktop::DoEvents(std::int32_t milliseconds) {
    const auto sockets = SocketEvents::Current();
    pollfd watched{sockets->Descriptor(), POLLIN, 0};
    poll(&watched, 1, std::max(milliseconds, 0));
    sockets->Serve();
    Scheduler::Current().Turn();
}

Desktop& Desktop::Current() {
    static Desktop without_display;
    return InForce<Desktop>::Or(without_display);
}

}  // namespace varnith
