#pragma once

#include <cstdint>
#include <optional>

#include <tiffio.h>
#include <unistd.h>

#include "platform/base/FileDescriptor.h"

namespace varnith::test {

// The number of pages that libtiff counts in an open file; nullopt where it finds no TIFF file. It judges the
// program's own count.
inline std::optional<std::int32_t> CountByLibtiff(const FileDescriptor& file) {
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    lseek(file.Descriptor(), 0, SEEK_SET);
    const int copy = dup(file.Descriptor());  // libtiff closes it
    TIFF* const tiff = TIFFFdOpen(copy, "", "rhm");
    if (!tiff) return close(copy), std::nullopt;
    const auto count = static_cast<std::int32_t>(TIFFNumberOfDirectories(tiff));
    TIFFClose(tiff);
    return count;
}

}  // namespace varnith::test
