#include "platform/net/TCPSocket.h"

#include <algorithm>
#include <array>
#include <utility>

#include <errno.h>
#include <netdb.h>
#include <string.h>
#include <sys/socket.h>

#include "platform/base/Trace.h"
#include "platform/net/NameLookup.h"

namespace varnith {

TCPSocket::TCPSocket() = default;

TCPSocket::~TCPSocket() {
    TCPSocket::Close();
}

// Serve does the rest, so that even an early failure raises no event within this call.
void TCPSocket::Connect() {
    Close();
    lookup_ = std::make_unique<NameLookup>(Address);
    state_ = State::Resolving;
    Watch(lookup_->Descriptor(), false);
}

void TCPSocket::Close() {
    StopWatching();
    state_ = State::Closed;
    lookup_ = nullptr;
    addresses_.clear();
    connection_ = {};
}

void TCPSocket::Purge() {
    received_.clear();
    to_send_.clear();
    sent_ = 0;
}

void TCPSocket::Write(std::string_view bytes) {
    to_send_ += bytes;
    if (IsConnected()) Watch(connection_.Descriptor(), true);
}

std::string TCPSocket::Read(std::int32_t bytes) {
    const std::size_t count = std::min(static_cast<std::size_t>(std::max(bytes, 0)), received_.size());
    std::string first = received_.substr(0, count);
    received_.erase(0, count);
    return first;
}

std::string TCPSocket::ReadAll() {
    return std::exchange(received_, {});
}

void TCPSocket::Serve() {
    switch (state_) {
        case State::Closed:
            return;
        case State::Resolving:
            if (!lookup_->Done()) return;
            addresses_.assign(lookup_->Addresses().rbegin(), lookup_->Addresses().rend());
            if (addresses_.empty())
                Fail(NameNotFound);
            else
                TryNextAddress();
            return;
        case State::Connecting:
            FinishConnecting();
            return;
        case State::Connected:
            if (!Send()) Receive();
            return;
    }
}

void TCPSocket::TryNextAddress() {
    while (!addresses_.empty()) {
        remote_address_ = std::move(addresses_.back());
        addresses_.pop_back();
        if (StartConnecting(remote_address_)) return;
    }
    Fail(ConnectionNotMade);
}

bool TCPSocket::StartConnecting(const std::string& numeric_address) {
    addrinfo wanted{};
    wanted.ai_socktype = SOCK_STREAM;
    wanted.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    addrinfo* first = nullptr;
    if (Port < 1 || Port > UINT16_MAX) {
        if (IsTracing()) TraceFailure("connect to", Remote(), "there is no such port");
        return false;
    }
    const int result = getaddrinfo(numeric_address.c_str(), std::to_string(Port).c_str(), &wanted, &first);
    if (result != 0) {
        if (IsTracing()) TraceFailure("connect to", Remote(), gai_strerror(result));
        return false;
    }
    const std::unique_ptr<addrinfo, void (*)(addrinfo*)> remote(first, freeaddrinfo);
    FileDescriptor opened(socket(first->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!opened ||
        (connect(opened.Descriptor(), first->ai_addr, first->ai_addrlen) != 0 && errno != EINPROGRESS)) {
        if (IsTracing()) TraceErrno("connect to", Remote());
        return false;
    }
    StopWatching();
    lookup_ = nullptr;
    connection_ = std::move(opened);
    state_ = State::Connecting;
    Watch(connection_.Descriptor(), true);
    return true;
}

void TCPSocket::FinishConnecting() {
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(connection_.Descriptor(), SOL_SOCKET, SO_ERROR, &error, &size);
    if (error != 0) {
        if (IsTracing()) TraceFailure("connect to", Remote(), strerrordesc_np(error));
        TryNextAddress();
        return;
    }
    state_ = State::Connected;
    Watch(connection_.Descriptor(), !to_send_.empty());
    Event_Connected();
}

// Sends as much as possible without blocking. Returns true if that was the last byte, which raises
// SendComplete. A failure raises no event: the peer may have sent bytes before, and Receive finds the end of
// the connection after them.
bool TCPSocket::Send() {
    if (to_send_.empty()) return false;
    const ssize_t count =
        send(connection_.Descriptor(), to_send_.data() + sent_, to_send_.size() - sent_, MSG_NOSIGNAL);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return false;
    if (count < 0 && IsTracing()) TraceErrno("send to", Remote());
    sent_ += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    if (count >= 0 && sent_ < to_send_.size()) return false;
    to_send_.clear();
    sent_ = 0;
    Watch(connection_.Descriptor(), false);
    if (count < 0) return false;
    Event_SendComplete();
    return true;
}

void TCPSocket::Receive() {
    std::array<char, 64 << 10> piece;
    const ssize_t count = recv(connection_.Descriptor(), piece.data(), piece.size(), 0);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (count < 0 && IsTracing()) TraceErrno("receive from", Remote());
    if (count <= 0) {
        Fail(ConnectionEnded);
        return;
    }
    received_.append(piece.data(), static_cast<std::size_t>(count));
    Event_DataAvailable();
}

std::string TCPSocket::Remote() const {
    const bool has_colons = remote_address_.find(':') != remote_address_.npos;
    return (has_colons ? "[" + remote_address_ + "]" : remote_address_) + ":" + std::to_string(Port);
}

void TCPSocket::Fail(std::int32_t code) {
    Close();
    SetLastErrorCode(code);
    Event_Error();
}

}  // namespace varnith
