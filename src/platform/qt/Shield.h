#pragma once

#include <QPointer>
#include <QWidget>

namespace varnith {

// An invisible widget over a window's contents. It takes the mouse and the keyboard focus from them while a
// modal window blocks the window. If a mouse button was down before, the pressed widget still gets its
// release. The destructor restores the focus.
class Shield : public QWidget {
  public:
    // REQUIRES: the contents outlive it and have a parent, which becomes the parent of the shield.
    explicit Shield(QWidget& contents);
    ~Shield() override;

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    // Keeps the shield as large as the contents.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWidget& contents_;
    QPointer<QWidget> focused_;  // had the focus before
};

}  // namespace varnith
