#pragma once

#include <cstdint>
#include <optional>

namespace varnith {

class FileDescriptor;

// Counts the pages of an open file: the image file directories of its main chain (TIFF 6.0, section 2;
// BigTIFF, https://www.awaresystems.be/imaging/tiff/bigtiff.html; both byte orders). Sub-directories
// don't count. In a chain with a cycle, each directory counts once. A chain with a directory that can't be
// read ends before it. The result is at most 1,048,576; it is nothing for a file without a TIFF header. Reads
// only the header and the chain, 1 KiB at a time, in constant memory. May be called from any thread.
std::optional<std::int32_t> CountPages(const FileDescriptor& file);

}  // namespace varnith
