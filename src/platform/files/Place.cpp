#include "platform/files/Place.h"

#include <array>
#include <string_view>

#include <errno.h>
#include <limits.h>
#include <unistd.h>

namespace varnith {

Place::Place(const std::string& whole, int base) : base_(base), path_(whole.c_str()), length_(whole.size()) {
    while (length_ >= PATH_MAX && StepDown()) continue;
}

bool Place::StepDown() {
    const std::size_t cut = std::string_view(path_, length_).rfind('/', PATH_MAX - 2);
    if (cut == std::string_view::npos || cut == 0) return false;
    const std::string piece(path_, cut);
    folder_ = FileDescriptor(openat(Base(), piece.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    stepped_ = true;
    path_ += cut + 1;
    length_ -= cut + 1;
    return static_cast<bool>(folder_);
}

FileDescriptor Place::Open(int flags, mode_t mode) const {
    return FileDescriptor(openat(Base(), path_, flags | O_CLOEXEC, mode));
}

std::string PathOf(const FileDescriptor& file) {
    const int error = errno;
    const std::string link = "/proc/self/fd/" + std::to_string(file.Descriptor());
    std::array<char, PATH_MAX> path;
    const ssize_t length = readlink(link.c_str(), path.data(), path.size());
    errno = error;
    return length < 0 ? link : std::string(path.data(), static_cast<std::size_t>(length));
}

}  // namespace varnith
