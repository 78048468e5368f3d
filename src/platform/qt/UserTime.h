#pragma once

#include <QApplication>
#include <QObject>
#include <string>

namespace varnith {

// Knows when the user last pressed a key or a button. An application that is started for it may then come to
// the front, where desktops keep one back that comes up unasked.
class UserTime : public QObject {
  public:
    explicit UserTime(QApplication& application);

    // A name for the start of an application that the user has just asked for
    // (https://specifications.freedesktop.org/startup-notification-spec/startup-notification-latest.txt).
    std::string NewStartupId();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    quint64 milliseconds_ = 0;  // on the window system's clock
    int starts_ = 0;
};

}  // namespace varnith
