#include "platform/base/Trace.h"

#include <cstdlib>
#include <memory>
#include <typeinfo>

#include <cxxabi.h>
#include <errno.h>
#include <string.h>
#include <unistd.h>

namespace varnith {

bool IsTracing() {
    static const bool tracing = [] {
        const char* value = std::getenv("VARNITH_TRACE");
        return value && std::string_view(value) == "1";
    }();
    return tracing;
}

void TellFailure(std::string_view tried, std::string_view on, std::string_view why) {
    const int error = errno;
    std::string line = "Varnith: can't " + std::string(tried);
    if (!on.empty()) line.append(" ").append(on);
    line.append(": ").append(why);
    for (char& c : line)
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = '?';
    line += '\n';
    // In one piece, so that lines of several threads don't mix. Where it can't be written there is nobody to tell.
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
    errno = error;
}

void TraceFailure(std::string_view tried, std::string_view on, std::string_view why) {
    if (IsTracing()) TellFailure(tried, on, why);
}

void TraceErrno(std::string_view tried, std::string_view on) {
    if (IsTracing()) TellFailure(tried, on, strerrordesc_np(errno));
}

void TraceException(const std::exception& error) {
    if (!IsTracing()) return;
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(typeid(error).name(), nullptr, nullptr, &status), std::free);
    TellFailure("go on with an event or a thread", "", name ? name.get() : typeid(error).name());
}

}  // namespace varnith
