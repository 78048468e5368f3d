#include "platform/net/SocketCore.h"

#include "platform/base/Guard.h"
#include "platform/threads/Waiting.h"

namespace varnith {

SocketCore::Alive::Alive(SocketCore& socket) : socket_(&socket) {
    ++socket.kept_alive_;
}

SocketCore::SocketCore() : events_(SocketEvents::Current()) {}

SocketCore::~SocketCore() {
    StopWatching();
}

void SocketCore::Poll() {
    const Alive alive(*this);
    if (WaitBriefly(descriptor_, for_writing_)) ServeNow();
}

void SocketCore::ServeNow() {
    const Alive alive(*this);
    Guarded([this] { Serve(); });
}

void SocketCore::Watch(int descriptor, bool for_writing) {
    StopWatching();
    descriptor_ = descriptor;
    for_writing_ = for_writing;
    ticket_ = events_->Watch(descriptor, for_writing, *this);
}

void SocketCore::StopWatching() {
    events_->Forget(ticket_, descriptor_);
    descriptor_ = -1;
}

}  // namespace varnith
