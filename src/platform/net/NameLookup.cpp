#include "platform/net/NameLookup.h"

#include <array>
#include <atomic>
#include <system_error>
#include <thread>
#include <utility>

#include <netdb.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include "platform/base/FileDescriptor.h"

namespace varnith {

// Shared by who asked and the worker, whichever of them lives longer.
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
    if (name.empty() || name.find('\0') != name.npos) return {};
    addrinfo wanted{};
    wanted.ai_socktype = SOCK_STREAM;
    wanted.ai_flags = flags;
    addrinfo* first = nullptr;
    if (getaddrinfo(name.c_str(), nullptr, &wanted, &first) != 0) return {};
    const std::unique_ptr<addrinfo, void (*)(addrinfo*)> found(first, freeaddrinfo);
    std::vector<std::string> addresses;
    for (const addrinfo* one = first; one; one = one->ai_next) {
        std::array<char, NI_MAXHOST> text;
        if (getnameinfo(one->ai_addr, one->ai_addrlen, text.data(), text.size(), nullptr, 0,
                        NI_NUMERICHOST) == 0)
            addresses.emplace_back(text.data());
    }
    return addresses;
}

}  // namespace

NameLookup::NameLookup(const std::string& name) : answer_(std::make_shared<Answer>()) {
    auto numeric = Resolve(name, AI_NUMERICHOST);
    if (!numeric.empty() || name.empty()) {
        answer_->Give(std::move(numeric));
        return;
    }
    try {
        std::thread([answer = answer_, name] { answer->Give(Resolve(name, 0)); }).detach();
    } catch (const std::system_error&) {
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
