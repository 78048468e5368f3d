#pragma once

#include <cstdint>
#include <optional>

namespace varnith {

class FileDescriptor;

// Counts the pages of an open file: the directories of its main chain, as far as the chain can be followed
// (TIFF 6.0, section 2; BigTIFF too; both byte orders). Sub-directories are no pages. A chain that leads back
// to one of its directories ends before it, one that is cut off has the directories before the cut, and no
// chain has more than 1,048,576. Nothing for a file without a TIFF header.
// Reads the header and the chain and nothing else, in pieces of 1 KiB, in constant memory. May be called from
// any thread.
std::optional<std::int32_t> CountPages(const FileDescriptor& file);

}  // namespace varnith
