#pragma once

#include <QPointer>
#include <QWidget>

namespace varnith {

// Lies over a window's contents, unseen, while a modal window keeps them from answering, and takes the mouse
// and the focus in their place. A button that was held down when it came still gets its release. When it
// goes, the focus is back where it was.
class Shield : public QWidget {
  public:
    // REQUIRES: the contents outlive it, and have a parent.
    explicit Shield(QWidget& contents);
    ~Shield() override;

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    // Sees that the contents have got another size.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWidget& contents_;
    QPointer<QWidget> focused_;
};

}  // namespace varnith
