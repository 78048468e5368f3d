#include "platform/qt/LabelWidget.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <utility>

namespace varnith {

void LabelWidget::SetOnPress(std::function<void(const QPoint& place)> on_press) {
    on_press_ = std::move(on_press);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
}

void LabelWidget::mousePressEvent(QMouseEvent* event) {
    if (on_press_ && event->button() == Qt::LeftButton)
        on_press_(event->position().toPoint());
    else
        QLabel::mousePressEvent(event);
}

void LabelWidget::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const bool click = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
    if (on_press_ && click && !event->isAutoRepeat())
        on_press_(rect().center());
    else
        QLabel::keyPressEvent(event);
}

}  // namespace varnith
