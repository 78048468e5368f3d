#pragma once

#include <QLabel>
#include <functional>

namespace varnith {

// A label of plain text. One that can be clicked is a link: Tab reaches it, and Return and the space bar
// click it.
class LabelWidget : public QLabel {
  public:
    explicit LabelWidget(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

    // Makes the label a link. The function is called with the position of the click in the label. Shows the
    // hand cursor.
    void SetOnPress(std::function<void(const QPoint& place)> on_press);
    bool IsLink() const { return static_cast<bool>(on_press_); }
    // Acts as a press at this position in the label. REQUIRES: IsLink().
    void Press(const QPoint& place) { on_press_(place); }

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    std::function<void(const QPoint& place)> on_press_;
};

}  // namespace varnith
