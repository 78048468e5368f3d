#include <cassert>

#include <sys/mman.h>
#include <tiffio.h>
#include <unistd.h>

#include "platform/base/FileDescriptor.h"
#include "platform/files/TiffPages.h"

static std::optional<std::int32_t> CountByLibtiff(const varnith::FileDescriptor& file) {
    lseek(file.Descriptor(), 0, SEEK_SET);
    const int copy = dup(file.Descriptor());  // libtiff closes it
    TIFF* const tiff = TIFFFdOpen(copy, "", "rhm");
    if (!tiff) return close(copy), std::nullopt;
    const auto count = static_cast<std::int32_t>(TIFFNumberOfDirectories(tiff));
    TIFFClose(tiff);
    return count;
}

// A file has as many pages as libtiff counts, and none where libtiff finds no TIFF file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const varnith::FileDescriptor file(memfd_create("pages", MFD_CLOEXEC));
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    if (ftruncate(file.Descriptor(), 0) != 0 || pwrite(file.Descriptor(), data, size, 0) < 0) return -1;
    assert(varnith::CountPages(file) == CountByLibtiff(file));
    return 0;
}
