#pragma once

#include "platform/base/Ref.h"
#include "platform/ui/Picture.h"

namespace varnith {

// The program's pictures, each with its mask. They are compiled in. Side by side they say: files lead to
// numbers.
class Pictures {
  public:
    // A stack of pages with their number. It is also the application's icon.
    static Ref<Picture> file128();
    // An arrow.
    static Ref<Picture> tooo();
    // A list of files, each with its page count.
    static Ref<Picture> numbers();

    // The masks: the same drawings in black.
    static Ref<Picture> file128_Mask();
    static Ref<Picture> tooo_Mask();
    static Ref<Picture> numbers_Mask();
};

}  // namespace varnith
