#pragma once

#include <QImage>

#include "platform/ui/Picture.h"

namespace varnith {

// A picture drawn into an image of that size in pixels, as large as fits without distortion, in the middle.
// Where the picture is not seen the image is transparent.
QImage Rendered(const Picture& picture, const QSize& pixels);

}  // namespace varnith
