#pragma once

#include <QApplication>
#include <QObject>
#include <string>

namespace varnith {

// Records when the user last pressed a key or a mouse button. A desktop keeps a newly started application in
// the background unless its startup id shows that the user has just asked for it.
class UserTime : public QObject {
  public:
    explicit UserTime(QApplication& application);

    // A new startup id with the time of the last press
    // (https://specifications.freedesktop.org/startup-notification-spec/startup-notification-latest.txt).
    std::string NewStartupId();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    quint64 milliseconds_ = 0;  // on the window system's clock, 0 before the first press
    int starts_ = 0;
};

}  // namespace varnith
