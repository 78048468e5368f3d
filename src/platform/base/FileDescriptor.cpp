#include "platform/base/FileDescriptor.h"

#include <utility>

#include <unistd.h>

namespace varnith {

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

FileDescriptor::~FileDescriptor() {
    if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace varnith
