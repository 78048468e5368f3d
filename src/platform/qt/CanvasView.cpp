#include "platform/qt/CanvasView.h"

#include <QPainter>

#include "platform/qt/PictureRendering.h"

namespace varnith {

void CanvasWidget::Show(const Ref<Picture>& picture) {
    if (picture_ == picture) return;
    picture_ = picture;
    drawn_ = {};
    update();
}

void CanvasWidget::paintEvent(QPaintEvent*) {
    if (!picture_) return;
    const QSize pixels = size() * devicePixelRatioF();
    if (drawn_.size() != pixels) drawn_ = Rendered(*picture_, pixels);
    QPainter(this).drawImage(rect(), drawn_);
}

}  // namespace varnith
