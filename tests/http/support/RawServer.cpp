#include "http/support/RawServer.h"

#include <array>
#include <cstdlib>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

namespace varnith::test {

namespace {

// How many bytes a request has when it is complete; more than there are while its head is not.
std::size_t LengthOf(const std::string& request, RawServer::Part part) {
    const std::size_t head = request.find("\r\n\r\n");
    if (head == request.npos) return request.size() + 1;
    const std::size_t length = request.find("Content-length: ");
    const bool has_body = part == RawServer::Part::Whole && length < head;
    return head + 4 + (has_body ? std::strtoul(request.c_str() + length + 16, nullptr, 10) : 0);
}

}  // namespace

RawServer::RawServer() : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(bind(listener_.Descriptor(), generic, size), 0);
    EXPECT_EQ(listen(listener_.Descriptor(), 16), 0);
    EXPECT_EQ(getsockname(listener_.Descriptor(), generic, &size), 0);
    port_ = ntohs(address.sin_port);
}

bool RawServer::Await(int descriptor) {
    pollfd watched{descriptor, POLLIN, 0};
    const bool ready = poll(&watched, 1, 20'000) > 0;
    EXPECT_TRUE(ready) << "the client does not come";
    return ready;
}

std::string RawServer::TakeRequest(Part part) {
    std::string request;
    if (!Await(listener_.Descriptor())) return request;
    connection_ = FileHandle(accept4(listener_.Descriptor(), nullptr, nullptr, SOCK_CLOEXEC));
    const int on = 1;
    setsockopt(connection_.Descriptor(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    std::array<char, 4096> piece;
    while (request.size() < LengthOf(request, part) && Await(connection_.Descriptor())) {
        const ssize_t count = recv(connection_.Descriptor(), piece.data(), piece.size(), 0);
        if (count <= 0) break;
        request.append(piece.data(), static_cast<std::size_t>(count));
    }
    return request;
}

bool RawServer::Send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = send(connection_.Descriptor(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool RawServer::ClientGoesWithin(int milliseconds) {
    pollfd watched{connection_.Descriptor(), POLLIN, 0};
    return poll(&watched, 1, milliseconds) > 0;
}

void RawServer::Reset() {
    const linger at_once{1, 0};
    setsockopt(connection_.Descriptor(), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
    Close();
}

bool RawServer::ClientHasGone() {
    char byte;
    return Await(connection_.Descriptor()) && recv(connection_.Descriptor(), &byte, 1, 0) <= 0;
}

bool RawServer::HasVisitor() const {
    pollfd watched{listener_.Descriptor(), POLLIN, 0};
    return poll(&watched, 1, 0) > 0;
}

void RawServer::StopListening() {
    shutdown(listener_.Descriptor(), SHUT_RDWR);
}

}  // namespace varnith::test
