#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/base/Ref.h"
#include "platform/net/SocketEvents.h"

namespace varnith {

// What every socket has: the remote end that it connects to, and events. Events come from the event loop or
// from within Poll, never from within Connect, Close or a write. An exception that leaves one goes to the
// handler of unhandled exceptions. A socket may be let go of at any time, also by one of its own events:
// it lives until that event has ended.
// REQUIRES: held by a Ref.
class SocketCore : public RefCounted {
  public:
    SocketCore();
    ~SocketCore() override;

    // The remote end of the next Connect: a host name or a numeric address, and a port.
    std::string Address;
    std::int32_t Port = 0;

    // Starts connecting, with any connection dropped before, and returns. Ends in an event: Connected or
    // Error.
    virtual void Connect() = 0;

    // Drops the connection, or the attempt at one, at once. No event follows. What was received stays.
    virtual void Close() = 0;

    // Discards what was received and not yet read, and what is still to be sent.
    virtual void Purge() = 0;

    // Does what this socket has to do and raises its events, at most one. If there is nothing it waits a few
    // milliseconds for it, so a loop around it doesn't burn the processor.
    void Poll();

    virtual bool IsConnected() const = 0;

    // The code of the last failure, 0 before the first.
    std::int32_t LastErrorCode() const { return last_error_code_; }

    // The codes. They stand apart from 0 and from those that a class above this one has for itself.
    static constexpr std::int32_t ConnectionEnded = 102;  // by the peer, in order or not
    static constexpr std::int32_t NameNotFound = 103;
    static constexpr std::int32_t ConnectionNotMade = 104;

  protected:
    // Keeps the socket alive for as long as this lives.
    class Alive {
      public:
        explicit Alive(SocketCore& socket);
        Alive(const Alive&) = delete;
        Alive& operator=(const Alive&) = delete;
        ~Alive() { --socket_.Get()->kept_alive_; }

      private:
        Ref<SocketCore> socket_;
    };

    // Whether nobody holds the socket any more: it is only kept alive until its event has ended.
    bool IsLetGo() const { return References() == kept_alive_; }

    // The connection stands; bytes have arrived; all that was written has been sent; a connection could not
    // be made or has ended.
    virtual void Event_Connected() {}
    virtual void Event_DataAvailable() {}
    virtual void Event_SendComplete() {}
    virtual void Event_Error() {}

    // The descriptor that the socket waits for has become ready. Raises at most one event.
    virtual void Serve() = 0;

    // Sets what the socket waits for, instead of what it waited for before. REQUIRES: that is still open.
    void Watch(int descriptor, bool for_writing);
    void StopWatching();

    void SetLastErrorCode(std::int32_t code) { last_error_code_ = code; }

  private:
    friend class SocketEvents;
    void ServeNow();

    const std::shared_ptr<SocketEvents> events_;
    std::uint64_t ticket_ = 0;
    int descriptor_ = -1;
    bool for_writing_ = false;
    std::size_t kept_alive_ = 0;
    std::int32_t last_error_code_ = 0;
};

}  // namespace varnith
