#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>

#include "platform/base/FileDescriptor.h"

namespace varnith {

class SocketCore;

// Where all sockets wait for the system, so that an event loop has one thing to watch: whenever Descriptor()
// is ready for reading, it calls Serve(). That may happen while an event handler runs the loop itself.
class SocketEvents {
  public:
    // The one of the program. Each socket holds on to it, so it outlives the last of them.
    static const std::shared_ptr<SocketEvents>& Current();

    SocketEvents();
    SocketEvents(const SocketEvents&) = delete;
    SocketEvents& operator=(const SocketEvents&) = delete;

    // Ready for reading as long as a socket has something to do.
    int Descriptor() const { return queue_.Descriptor(); }

    // Has each socket that is ready do its next piece of work, without waiting: at most one event a socket.
    void Serve();

    // Has a socket served when a descriptor is ready for reading, or for writing too if asked for. Returns a
    // ticket that is never given again.
    std::uint64_t Watch(int descriptor, bool for_writing, SocketCore& socket);

    // Ends that. REQUIRES: the descriptor is still open, if the ticket is in force.
    void Forget(std::uint64_t ticket, int descriptor);

  private:
    FileDescriptor queue_;
    // By ticket: what was ready before, but has been forgotten by now, finds nobody.
    std::unordered_map<std::uint64_t, SocketCore*> watched_;
    std::uint64_t last_ticket_ = 0;
};

}  // namespace varnith
