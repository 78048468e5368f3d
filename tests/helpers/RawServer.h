#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

#include "platform/base/FileDescriptor.h"

namespace varnith::test {

// A server on loopback that does just what the test says, one connection at a time. Each wait has a limit and
// then returns as if nothing had come. A thread other than the one that made it may use it.
class RawServer {
  public:
    RawServer() {
        sockaddr_in address{AF_INET, 0, {htonl(INADDR_LOOPBACK)}, {}};
        socklen_t size = sizeof address;
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(bind(listener_.Descriptor(), generic, size), 0);
        EXPECT_EQ(listen(listener_.Descriptor(), 16), 0);
        EXPECT_EQ(getsockname(listener_.Descriptor(), generic, &size), 0);
        port_ = ntohs(address.sin_port);
    }

    std::int32_t Port() const { return port_; }
    // A URL on this server, without the scheme.
    std::string At(const std::string& path) const { return "127.0.0.1:" + std::to_string(port_) + path; }

    // Closes the current connection, accepts the next one and reads a request: its head, and its body if it
    // has a Content-length. Returns its bytes; none if no client connects.
    std::string TakeRequest() {
        std::string request;
        if (!IsReady(listener_, Limit)) return request;
        connection_ = FileDescriptor(accept4(listener_.Descriptor(), nullptr, nullptr, SOCK_CLOEXEC));
        const int on = 1;
        setsockopt(connection_.Descriptor(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        char piece[1 << 16];
        while (request.size() < LengthOf(request) && IsReady(connection_, Limit)) {
            const ssize_t count = recv(connection_.Descriptor(), piece, sizeof piece, 0);
            if (count <= 0) break;
            request.append(piece, static_cast<std::size_t>(count));
        }
        return request;
    }

    // False if the client has disconnected.
    bool Send(std::string_view bytes) {
        return send(connection_.Descriptor(), bytes.data(), bytes.size(), MSG_NOSIGNAL) == std::ssize(bytes);
    }

    // Sends a byte every 20 ms for that long. False if the client disconnects meanwhile.
    bool DripFor(std::chrono::milliseconds time) {
        const auto end = std::chrono::steady_clock::now() + time;
        while (std::chrono::steady_clock::now() < end)
            if (!Send(".") || ClientGoesWithin(20)) return false;
        return true;
    }

    // Close the connection, by FIN or by RST.
    void Close() { connection_ = {}; }
    void Reset() {
        const linger at_once{1, 0};
        setsockopt(connection_.Descriptor(), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
        Close();
    }

    // Whether the client closes the connection within that time, or within the limit.
    bool ClientGoesWithin(int milliseconds) const { return IsReady(connection_, milliseconds); }
    bool ClientHasGone() const { return ClientGoesWithin(Limit); }

    // Whether a connection waits to be accepted.
    bool HasVisitor() const { return IsReady(listener_, 0); }

    // Refuses connections from now on.
    void StopListening() { shutdown(listener_.Descriptor(), SHUT_RDWR); }

  private:
    static constexpr int Limit = 20'000;

    static bool IsReady(const FileDescriptor& handle, int milliseconds) {
        pollfd watched{handle.Descriptor(), POLLIN, 0};
        return poll(&watched, 1, milliseconds) > 0;
    }

    // The size of the complete request; more than its present size while its head is incomplete.
    static std::size_t LengthOf(const std::string& request) {
        constexpr std::string_view Field = "Content-length: ";
        const std::size_t head = request.find("\r\n\r\n");
        if (head == request.npos) return request.size() + 1;
        const std::size_t length = request.find(Field);
        return head + 4 + (length < head ? std::stoul(request.substr(length + Field.size())) : 0);
    }

    FileDescriptor listener_{socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    FileDescriptor connection_;
    std::int32_t port_ = 0;
};

}  // namespace varnith::test
