#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/base/Ref.h"
#include "platform/net/SocketEvents.h"

namespace varnith {

// The base of all sockets: the remote address and the events. The event loop and Poll raise the events;
// Connect, Close and writes never do. An exception that leaves an event goes to the handler of unhandled
// exceptions (platform/base/Guard.h). The last Ref to a socket may be dropped at any time, even during one of
// its events: the socket lives until that event has ended.
// REQUIRES: held by a Ref.
class SocketCore : public RefCounted {
  public:
    SocketCore();
    ~SocketCore() override;

    // Where the next Connect connects to: a host name or a numeric address, and a port from 1 to 65535.
    std::string Address;
    std::int32_t Port = 0;

    // Closes the connection, if there is one, starts a new one and returns. The event Connected or Error
    // follows.
    virtual void Connect() = 0;

    // Closes the connection or abandons the attempt at one. No event follows. Received bytes can still be
    // read.
    virtual void Close() = 0;

    // Discards the received bytes that were not read, and the bytes that were not sent.
    virtual void Purge() = 0;

    // Does this socket's next piece of work, which may raise one event. If there is none it waits for a few
    // milliseconds, so a loop that calls it doesn't use up the processor.
    void Poll();

    virtual bool IsConnected() const = 0;

    // The code of the last failure, 0 before the first.
    std::int32_t LastErrorCode() const { return last_error_code_; }

    // The codes. They differ from 0 and from the codes of derived classes.
    static constexpr std::int32_t ConnectionEnded = 102;  // by the peer, orderly or by a reset
    static constexpr std::int32_t NameNotFound = 103;
    static constexpr std::int32_t ConnectionNotMade = 104;

  protected:
    // Keeps a socket alive as long as this exists.
    class Alive {
      public:
        explicit Alive(SocketCore& socket);
        Alive(const Alive&) = delete;
        Alive& operator=(const Alive&) = delete;
        ~Alive() { --socket_.Get()->kept_alive_; }

      private:
        Ref<SocketCore> socket_;
    };

    // Whether only Alive objects hold the socket any more.
    bool IsLetGo() const { return References() == kept_alive_; }

    // The events. Error means that the connection could not be made or has ended; LastErrorCode tells which.
    virtual void Event_Connected() {}
    virtual void Event_DataAvailable() {}
    virtual void Event_SendComplete() {}
    virtual void Event_Error() {}

    // Called when the watched descriptor is ready. Raises at most one event.
    virtual void Serve() = 0;

    // Watches a descriptor instead of the one watched before, for reading, or for writing too if asked for.
    // REQUIRES: the descriptor watched before is still open.
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
