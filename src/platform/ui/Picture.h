#pragma once

#include <string>
#include <utility>

#include "platform/base/Ref.h"

namespace varnith {

// A drawing that is sharp at any size: an SVG document, within SVG Tiny 1.2
// (https://www.w3.org/TR/SVGTiny12/).
class Picture : public RefCounted {
  public:
    explicit Picture(std::string source) : source_(std::move(source)) {}

    const std::string& Source() const { return source_; }

    // What is seen of the picture: as much of each place as the mask covers there, in whatever colour.
    // Without a mask it is what the picture itself covers.
    void SetMask(const Ref<Picture>& mask) { mask_ = mask; }
    const Ref<Picture>& Mask() const { return mask_; }

  private:
    std::string source_;
    Ref<Picture> mask_;
};

}  // namespace varnith
