#pragma once

#include <string>
#include <utility>

#include "platform/base/Ref.h"

namespace varnith {

// A vector drawing: an SVG document within SVG Tiny 1.2 (https://www.w3.org/TR/SVGTiny12/).
class Picture : public RefCounted {
  public:
    explicit Picture(std::string source) : source_(std::move(source)) {}

    const std::string& Source() const { return source_; }

    // The mask's opacity replaces the picture's: the picture is as opaque at each point as the mask is there.
    // The mask's colours don't matter. Nil leaves the picture its own opacity.
    void SetMask(const Ref<Picture>& mask) { mask_ = mask; }
    const Ref<Picture>& Mask() const { return mask_; }

  private:
    std::string source_;
    Ref<Picture> mask_;
};

}  // namespace varnith
