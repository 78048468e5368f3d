#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// A TIFF file that was opened (TIFF 6.0, section 2; BigTIFF too, both byte orders).
class TiffPictureMBS : public RefCounted {
  public:
    explicit TiffPictureMBS(std::int32_t image_count) : image_count_(image_count) {}

    // The number of images: the directories of the main chain, as far as it can be followed. Sub-directories
    // are no images of their own. A file whose chain is cut off has those in front of the cut, maybe 0.
    std::int32_t ImageCount() const { return image_count_; }

  private:
    std::int32_t image_count_;
};

// Counts the images of a TIFF file, opening and closing it. Nothing but the header and the chain of
// directories is read, in pieces of 1 KiB. Nothing for what is not a regular file with a TIFF header, and for
// what can't be opened. is_regular tells that a listing had it as a regular file. May be called from any
// thread.
std::optional<std::int32_t> CountImages(const std::string& path, bool is_regular);

// Opens a file as a TIFF and counts its images; the file is closed again when this returns, so a walk holds
// no file open however deep it goes. With HeaderOnly true that is CountImages, whose answer may have been
// got ahead; false lets the library read the first directory's tags too. Nil where CountImages has nothing.
Ref<TiffPictureMBS> OpenAsTiffMBS(const Ref<FolderItem>& item, bool HeaderOnly);

}  // namespace varnith
