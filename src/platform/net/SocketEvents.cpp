#include "platform/net/SocketEvents.h"

#include <array>

#include <sys/epoll.h>

#include "platform/base/Trace.h"
#include "platform/net/SocketCore.h"

namespace varnith {

const std::shared_ptr<SocketEvents>& SocketEvents::Current() {
    static const auto events = std::make_shared<SocketEvents>();
    return events;
}

SocketEvents::SocketEvents() : queue_(epoll_create1(EPOLL_CLOEXEC)) {
    if (!queue_) TraceErrno("make a queue for the events of sockets", "");
}

void SocketEvents::Serve() {
    std::array<epoll_event, 16> ready;
    const int count = epoll_wait(Descriptor(), ready.data(), static_cast<int>(ready.size()), 0);
    if (count < 0) TraceErrno("wait for sockets", "");
    for (int i = 0; i < count; ++i) {
        const auto found = watched_.find(ready[static_cast<std::size_t>(i)].data.u64);
        if (found != watched_.end()) found->second->ServeNow();
    }
}

std::uint64_t SocketEvents::Watch(int descriptor, bool for_writing, SocketCore& socket) {
    epoll_event event{};
    event.events = for_writing ? EPOLLIN | EPOLLOUT : EPOLLIN;
    event.data.u64 = ++last_ticket_;
    if (epoll_ctl(Descriptor(), EPOLL_CTL_ADD, descriptor, &event) != 0) TraceErrno("watch a socket", "");
    watched_[last_ticket_] = &socket;
    return last_ticket_;
}

void SocketEvents::Forget(std::uint64_t ticket, int descriptor) {
    if (watched_.erase(ticket) > 0) epoll_ctl(Descriptor(), EPOLL_CTL_DEL, descriptor, nullptr);
}

}  // namespace varnith
