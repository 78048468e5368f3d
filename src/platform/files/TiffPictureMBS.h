#pragma once

#include <cstdint>

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// A TIFF file that was opened.
class TiffPictureMBS : public RefCounted {
  public:
    explicit TiffPictureMBS(std::int32_t image_count) : image_count_(image_count) {}

    // The number of images, as CountPages has it; maybe 0.
    std::int32_t ImageCount() const { return image_count_; }

  private:
    std::int32_t image_count_;
};

// Opens a file as a TIFF and counts its images. The file is closed again when this returns, so a walk holds
// no file open however deep it goes. Only the file's structure is read, so HeaderOnly has no effect. Nil for
// what can't be opened, is no regular file or has no TIFF header. REQUIRES: item is not nil
// (NilObjectException).
Ref<TiffPictureMBS> OpenAsTiffMBS(const Ref<FolderItem>& item, bool HeaderOnly);

}  // namespace varnith
