#include "platform/qt/PictureRendering.h"

#include <QPainter>
#include <QSvgRenderer>

namespace varnith {

QImage Rendered(const Picture& picture, const QSize& pixels) {
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer drawing(QByteArray::fromStdString(picture.Source()));
    drawing.setAspectRatioMode(Qt::KeepAspectRatio);
    QPainter painter(&image);
    drawing.render(&painter, QRectF(QPointF(), pixels));
    painter.end();
    if (!picture.Mask()) return image;
    // The mask takes the place of what the picture covers, and isn't taken of that once more.
    image.convertTo(QImage::Format_ARGB32);
    image.reinterpretAsFormat(QImage::Format_RGB32);
    image.setAlphaChannel(Rendered(*picture.Mask(), pixels).convertToFormat(QImage::Format_Alpha8));
    return image;
}

}  // namespace varnith
