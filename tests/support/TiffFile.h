#pragma once

#include <string>

namespace varnith::test {

// The bytes of a TIFF file with that many pages of one pixel, as libtiff writes it: "wl" little-endian, "wb"
// big-endian, with an "8" behind it BigTIFF.
std::string TiffBytes(int pages, const std::string& mode = "wl");

// A little-endian TIFF file of that many pages whose last directory leads on to the first one.
std::string LoopingTiffBytes(int pages);

}  // namespace varnith::test
