#include "support/TiffFile.h"

#include <cstdint>
#include <cstring>

#include <tiffio.h>

#include "support/TemporaryFolder.h"

namespace varnith::test {

std::string TiffBytes(int pages, const std::string& mode) {
    const TemporaryFolder folder;
    const std::string path = folder.File("pages");
    TIFF* const tiff = TIFFOpen(path.c_str(), mode.c_str());
    for (int page = 0; page < pages; ++page) {
        TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 1);
        TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 1);
        TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
        TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
        std::uint8_t pixel = 0;
        TIFFWriteScanline(tiff, &pixel, 0, 0);
        TIFFWriteDirectory(tiff);
    }
    TIFFClose(tiff);
    return BytesOf(path);
}

std::string LoopingTiffBytes(int pages) {
    std::string bytes = TiffBytes(pages);
    // The places of TIFF 6.0, section 2: the link to the first directory, and behind each directory's
    // entries of 12 bytes, which it counts in front, the link to the next.
    std::size_t link = 4;
    for (std::uint32_t next = 0; std::memcpy(&next, &bytes[link], 4), next != 0;) {
        std::uint16_t entries = 0;
        std::memcpy(&entries, &bytes[next], 2);
        link = next + 2 + 12 * entries;
    }
    std::memcpy(&bytes[link], &bytes[4], 4);
    return bytes;
}

}  // namespace varnith::test
