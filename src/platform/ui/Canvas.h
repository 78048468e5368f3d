#pragma once

#include "platform/ui/Control.h"
#include "platform/ui/Picture.h"

namespace varnith {

// An area that shows a picture, centred and as large as fits without distortion.
class Canvas : public Control {
  public:
    // Nil shows nothing.
    void SetBackdrop(const Ref<Picture>& picture) { Set(backdrop_, picture); }
    const Ref<Picture>& Backdrop() const { return backdrop_; }

  private:
    Ref<Picture> backdrop_;
};

}  // namespace varnith
