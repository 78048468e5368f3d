#include <cassert>

#include <sys/mman.h>
#include <unistd.h>

#include "helpers/CountByLibtiff.h"
#include "platform/files/TiffPages.h"

// A file has as many pages as libtiff counts, and none where libtiff finds no TIFF file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const varnith::FileDescriptor file(memfd_create("pages", MFD_CLOEXEC));
    if (ftruncate(file.Descriptor(), 0) != 0 || pwrite(file.Descriptor(), data, size, 0) < 0) return -1;
    assert(varnith::CountPages(file) == varnith::test::CountByLibtiff(file));
    return 0;
}
