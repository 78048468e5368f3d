#include "platform/qt/PictureRendering.h"

#include <QPainter>
#include <QSvgRenderer>

#include "platform/base/Trace.h"

namespace varnith {

QImage Rendered(const Picture& picture, const QSize& pixels) {
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer drawing(QByteArray::fromStdString(picture.Source()));
    if (!drawing.isValid()) TraceFailure("render a picture", "", "its SVG document is not valid");
    drawing.setAspectRatioMode(Qt::KeepAspectRatio);
    QPainter painter(&image);
    drawing.render(&painter, QRectF(QPointF(), pixels));
    painter.end();
    if (!picture.Mask()) return image;
    // The mask's opacity replaces the picture's. The picture's own is dropped first, because setAlphaChannel
    // would multiply the two.
    image.convertTo(QImage::Format_ARGB32);
    image.reinterpretAsFormat(QImage::Format_RGB32);
    image.setAlphaChannel(Rendered(*picture.Mask(), pixels).convertToFormat(QImage::Format_Alpha8));
    return image;
}

}  // namespace varnith
