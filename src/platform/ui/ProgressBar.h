#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/ui/Control.h"

namespace varnith {

// A bar that fills from 0 to its maximum.
class ProgressBar : public Control {
  public:
    void SetMaximum(std::int32_t maximum) { Set(maximum_, maximum); }
    std::int32_t Maximum() const { return maximum_; }

    // A value below 0 or above the maximum is clamped.
    void SetValue(std::int32_t value) { Set(value_, std::clamp(value, 0, maximum_)); }
    std::int32_t Value() const { return value_; }

  private:
    std::int32_t maximum_ = 100;
    std::int32_t value_ = 0;
};

}  // namespace varnith
