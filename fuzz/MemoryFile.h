#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

#include "platform/base/FileDescriptor.h"

namespace varnith {

// An open file in memory with those bytes. It is the same one each time, since making one costs more than
// counting its pages. Without room for it the process ends.
inline const FileDescriptor& MemoryFile(std::string_view bytes) {
    static const FileDescriptor file(memfd_create("file", MFD_CLOEXEC));
    const int descriptor = file.Descriptor();
    if (ftruncate(descriptor, 0) != 0 ||
        pwrite(descriptor, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        std::perror("a file in memory");
        std::exit(1);
    }
    return file;
}

}  // namespace varnith
