#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>

#include "platform/base/FileDescriptor.h"

namespace varnith {

class SocketCore;

// Watches the descriptors of all sockets (epoll(7)), so that an event loop has a single one to watch:
// whenever Descriptor() is ready for reading, the loop calls Serve(). It may do so while a socket's event
// handler runs the loop.
class SocketEvents {
  public:
    // The program's only one. Each socket shares the ownership, so it outlives the last socket.
    static const std::shared_ptr<SocketEvents>& Current();

    SocketEvents();
    SocketEvents(const SocketEvents&) = delete;
    SocketEvents& operator=(const SocketEvents&) = delete;

    // Ready for reading as long as a watched descriptor is ready. This object owns it.
    int Descriptor() const { return queue_.Descriptor(); }

    // Lets each socket that is ready do its next piece of work, which raises at most one event. Doesn't wait.
    void Serve();

    // Serves a socket whenever a descriptor is ready for reading, or for writing too if asked for, until
    // Forget. Owns neither. Returns a ticket for Forget; no two are the same.
    std::uint64_t Watch(int descriptor, bool for_writing, SocketCore& socket);

    // Stops watching. Nothing happens for a ticket that was forgotten before.
    // REQUIRES: if the ticket is still watched, the descriptor is open.
    void Forget(std::uint64_t ticket, int descriptor);

  private:
    FileDescriptor queue_;
    // By ticket and not by descriptor: a socket that Serve runs may make it forget another one that
    // epoll_wait has just reported.
    std::unordered_map<std::uint64_t, SocketCore*> watched_;
    std::uint64_t last_ticket_ = 0;
};

}  // namespace varnith
