#pragma once

#include <cstdint>

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// A TIFF file that was opened.
class TiffPictureMBS : public RefCounted {
  public:
    explicit TiffPictureMBS(std::int32_t image_count) : image_count_(image_count) {}

    // The number of images (CountPages), which may be 0.
    std::int32_t ImageCount() const { return image_count_; }

  private:
    std::int32_t image_count_;
};

// Opens a TIFF file and counts its images. The file is closed when this returns, so a deep walk keeps no
// files open. HeaderOnly has no effect, because image data is never read. Nil if the file can't be opened, is
// no regular file or has no TIFF header. REQUIRES: item is not nil (NilObjectException).
Ref<TiffPictureMBS> OpenAsTiffMBS(const Ref<FolderItem>& item, bool HeaderOnly);

}  // namespace varnith
