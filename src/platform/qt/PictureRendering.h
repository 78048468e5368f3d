#pragma once

#include <QImage>

#include "platform/ui/Picture.h"

namespace varnith {

// A picture rendered into an image of this size in pixels, centred and as large as fits without distortion.
// The rest of the image is transparent, and all of it if the picture isn't valid SVG.
QImage Rendered(const Picture& picture, const QSize& pixels);

}  // namespace varnith
