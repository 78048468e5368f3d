#include "platform/qt/Shield.h"

#include <QEvent>

#include "platform/ui/Application.h"

namespace varnith {

Shield::Shield(QWidget& contents)
    : QWidget(contents.parentWidget()), contents_(contents), focused_(window()->focusWidget()) {
    contents.installEventFilter(this);
    setGeometry(contents.geometry());
    show();
    raise();
    setFocus();
}

Shield::~Shield() {
    if (focused_)
        focused_->setFocus();
    else
        clearFocus();
}

// A click on a blocked window brings up the window that blocks it.
void Shield::mousePressEvent(QMouseEvent* /*event*/) {
    Application::Current().BringToFront();
}

bool Shield::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move) setGeometry(contents_.geometry());
    return false;
}

}  // namespace varnith
