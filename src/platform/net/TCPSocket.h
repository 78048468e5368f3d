#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/FileDescriptor.h"
#include "platform/net/SocketCore.h"

namespace varnith {

class NameLookup;

// What bytes can be read from.
class Readable {
  public:
    virtual ~Readable() = default;
    virtual std::string Read(std::int32_t bytes) = 0;
};

// What bytes can be written to.
class Writeable {
  public:
    virtual ~Writeable() = default;
    virtual void Write(std::string_view bytes) = 0;
};

// A TCP connection. The look-up of the name, connecting and sending all go on beside the program. A name
// with several addresses is tried at each in turn. The peer's end of the connection comes as Error, behind
// the DataAvailable of its last bytes, and the connection is closed by then.
class TCPSocket : public SocketCore, public Readable, public Writeable {
  public:
    TCPSocket();
    ~TCPSocket() override;

    void Connect() override;
    void Close() override;
    void Purge() override;
    bool IsConnected() const override { return state_ == State::Connected; }

    // Queues bytes for sending; they go out as soon as the connection stands.
    void Write(std::string_view bytes) override;

    // All received bytes that were not read yet, left unread. Valid until something is received or read.
    const std::string& Lookahead() const { return received_; }

    // Removes and returns the first bytes received, up to that many; ReadAll those of all.
    std::string Read(std::int32_t bytes) override;
    std::string ReadAll();

  protected:
    void Serve() override;

  private:
    enum class State { Closed, Resolving, Connecting, Connected };

    void TryNextAddress();
    bool StartConnecting(const std::string& numeric_address);
    void FinishConnecting();
    bool Send();
    void Receive();
    void Fail(std::int32_t code);

    State state_ = State::Closed;
    std::unique_ptr<NameLookup> lookup_;
    std::vector<std::string> addresses_;  // those not tried yet, the next one last
    FileDescriptor connection_;
    std::string to_send_;
    std::size_t sent_ = 0;  // bytes at the front of `to_send_` that have gone out
    std::string received_;
};

}  // namespace varnith
