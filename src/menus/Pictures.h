#pragma once

#include "platform/base/Ref.h"
#include "platform/ui/Picture.h"

namespace varnith {

// The program's pictures, compiled in, each with its mask. What they tell in a row: files lead to numbers.
class Pictures {
  public:
    // A stack of pages and how many they are, which is also the application's icon.
    static Ref<Picture> file128();
    // An arrow from the one to the other.
    static Ref<Picture> tooo();
    // A list of files with the number of pages of each.
    static Ref<Picture> numbers();

    static Ref<Picture> file128_Mask();
    static Ref<Picture> tooo_Mask();
    static Ref<Picture> numbers_Mask();
};

}  // namespace varnith
