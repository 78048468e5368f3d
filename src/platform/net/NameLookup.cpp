#include "platform/net/NameLookup.h"

#include <array>
#include <atomic>
#include <system_error>
#include <thread>
#include <utility>

#include <errno.h>
#include <netdb.h>
#include <string.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include "platform/base/FileDescriptor.h"
#include "platform/base/Trace.h"

namespace varnith {

// Shared by the NameLookup and its worker thread, either of which may outlive the other.
struct NameLookup::Answer {
    FileDescriptor ready{eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    std::atomic<bool> done = false;
    std::vector<std::string> addresses;

    void Give(std::vector<std::string> found) {
        addresses = std::move(found);
        done = true;
        eventfd_write(ready.Descriptor(), 1);
    }
};

namespace {

std::vector<std::string> Resolve(const std::string& name, int flags) {
    addrinfo wanted{};
    wanted.ai_socktype = SOCK_STREAM;
    wanted.ai_flags = flags;
    addrinfo* first = nullptr;
    const int result = getaddrinfo(name.c_str(), nullptr, &wanted, &first);
    if (result != 0) {
        if ((flags & AI_NUMERICHOST) == 0)
            TraceFailure("look up the host", name,
                         result == EAI_SYSTEM ? strerrordesc_np(errno) : gai_strerror(result));
        return {};
    }
    const std::unique_ptr<addrinfo, void (*)(addrinfo*)> found(first, freeaddrinfo);
    std::vector<std::string> addresses;
    for (const addrinfo* one = first; one; one = one->ai_next) {
        std::array<char, NI_MAXHOST> text;
        const int told =
            getnameinfo(one->ai_addr, one->ai_addrlen, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST);
        if (told == 0)
            addresses.emplace_back(text.data());
        else
            TraceFailure("write out an address of the host", name, gai_strerror(told));
    }
    return addresses;
}

}  // namespace

NameLookup::NameLookup(const std::string& name) : answer_(std::make_shared<Answer>()) {
    if (!answer_->ready) TraceErrno("wait for the look-up of the host", name);
    if (name.empty() || name.find('\0') != name.npos) {
        TraceFailure("look up the host", name, "that is no host name");
        answer_->Give({});
        return;
    }
    auto numeric = Resolve(name, AI_NUMERICHOST);
    if (!numeric.empty()) {
        answer_->Give(std::move(numeric));
        return;
    }
    try {
        std::thread([answer = answer_, name] { answer->Give(Resolve(name, 0)); }).detach();
    } catch (const std::system_error& error) {
        TraceFailure("start a thread to look up the host", name, error.what());
        answer_->Give({});
    }
}

NameLookup::~NameLookup() = default;

int NameLookup::Descriptor() const {
    return answer_->ready.Descriptor();
}

bool NameLookup::Done() const {
    return answer_->done;
}

const std::vector<std::string>& NameLookup::Addresses() const {
    return answer_->addresses;
}

}  // namespace varnith
