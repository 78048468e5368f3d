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

// Something that bytes can be read from.
class Readable {
  public:
    virtual ~Readable() = default;
    // Removes and returns the first bytes, at most as many as given.
    virtual std::string Read(std::int32_t bytes) = 0;
};

// Something that bytes can be written to.
class Writeable {
  public:
    virtual ~Writeable() = default;
    virtual void Write(std::string_view bytes) = 0;
};

// A TCP connection. No operation blocks: the event loop and Poll look up the name, connect, send and receive.
// If a name has several addresses, they are tried in turn. When the peer has closed the connection, Error
// follows the DataAvailable of the last bytes; this side is closed by then.
class TCPSocket : public SocketCore, public Readable, public Writeable {
  public:
    TCPSocket();
    ~TCPSocket() override;

    void Connect() override;
    void Close() override;
    void Purge() override;
    bool IsConnected() const override { return state_ == State::Connected; }

    // Queues bytes. They are sent as soon as the connection is made.
    void Write(std::string_view bytes) override;

    // All received bytes that were not read yet, without reading them. The reference is valid until bytes are
    // received or read.
    const std::string& Lookahead() const { return received_; }

    // Removes and returns the first received bytes, at most as many as given; ReadAll all of them.
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
    // The remote address and port, for the trace.
    std::string Remote() const;
    void Fail(std::int32_t code);

    State state_ = State::Closed;
    std::unique_ptr<NameLookup> lookup_;
    std::vector<std::string> addresses_;  // numeric; not tried yet, the next one last
    std::string remote_address_;          // numeric; the one tried last
    FileDescriptor connection_;
    std::string to_send_;
    std::size_t sent_ = 0;  // bytes at the front of `to_send_` that were sent
    std::string received_;
};

}  // namespace varnith
