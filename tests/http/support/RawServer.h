#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/files/FileSystem.h"

namespace varnith::test {

// A server on loopback that does just what the test says, one connection at a time. What it waits for has a
// limit, past which the test fails. It may be used from another thread than the one that made it.
class RawServer {
  public:
    RawServer();

    std::int32_t Port() const { return port_; }
    // An address on it, without a scheme.
    std::string At(const std::string& path) const { return "127.0.0.1:" + std::to_string(port_) + path; }

    // Takes the next connection, letting go of the one before, and reads a request: its head, and its body if
    // it has a length and the body is wanted too. Returns its bytes.
    enum class Part { Head, Whole };
    std::string TakeRequest(Part part = Part::Whole);

    // Sends bytes. False if the client has gone.
    bool Send(std::string_view bytes);

    // Whether the client closes the connection within so many milliseconds.
    bool ClientGoesWithin(int milliseconds);

    // Ends the connection, in order or by a reset.
    void Close() { connection_ = {}; }
    void Reset();

    // Waits until the client has closed the connection.
    bool ClientHasGone();

    // Whether a connection waits to be taken.
    bool HasVisitor() const;

    // Takes connections no more: they are refused.
    void StopListening();

  private:
    bool Await(int descriptor);

    FileHandle listener_;
    FileHandle connection_;
    std::int32_t port_ = 0;
};

}  // namespace varnith::test
