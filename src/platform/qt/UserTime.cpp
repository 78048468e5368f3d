#include "platform/qt/UserTime.h"

#include <QInputEvent>

namespace varnith {

UserTime::UserTime(QApplication& application) {
    application.installEventFilter(this);
}

std::string UserTime::NewStartupId() {
    return "varnith-" + std::to_string(QApplication::applicationPid()) + "-" + std::to_string(++starts_) +
           "_TIME" + std::to_string(milliseconds_);
}

bool UserTime::eventFilter(QObject* /*watched*/, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::KeyPress || type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick)
        milliseconds_ = static_cast<QInputEvent*>(event)->timestamp();
    return false;
}

}  // namespace varnith
