#include "platform/qt/LabelWidget.h"

#include <QMouseEvent>
#include <utility>

namespace varnith {

void LabelWidget::SetOnPress(std::function<void(const QPoint& place)> on_press) {
    on_press_ = std::move(on_press);
    setCursor(Qt::PointingHandCursor);
}

void LabelWidget::mousePressEvent(QMouseEvent* event) {
    if (on_press_ && event->button() == Qt::LeftButton)
        on_press_(event->position().toPoint());
    else
        QLabel::mousePressEvent(event);
}

}  // namespace varnith
