#pragma once

#include <cstdint>

#include "platform/ui/Desktop.h"

namespace varnith {

// A screen of the desktop. Screens are numbered from 0, the main one. The size, in pixels, is the one at
// construction.
class Screen {
  public:
    explicit Screen(int number) : size_(Desktop::Current().ScreenSize(number)) {}

    std::int32_t Width() const { return size_.Width; }
    std::int32_t Height() const { return size_.Height; }

  private:
    Desktop::Size size_;
};

}  // namespace varnith
