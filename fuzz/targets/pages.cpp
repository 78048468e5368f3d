#include <cassert>

#include "MemoryFile.h"
#include "helpers/CountByLibtiff.h"
#include "platform/files/TiffPages.h"

// A file has as many pages as libtiff counts, and none where libtiff finds no TIFF file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto& file = varnith::MemoryFile({reinterpret_cast<const char*>(data), size});
    assert(varnith::CountPages(file) == varnith::test::CountByLibtiff(file));
    return 0;
}
