#pragma once

#include <QLabel>
#include <functional>

namespace varnith {

// A label of plain text that can be clicked.
class LabelWidget : public QLabel {
  public:
    explicit LabelWidget(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

    // Sets the function to call when the left mouse button is pressed on the label, with the position in the
    // label. Shows the hand cursor.
    void SetOnPress(std::function<void(const QPoint& place)> on_press);
    bool IsLink() const { return static_cast<bool>(on_press_); }
    // Acts as a press at this position in the label. REQUIRES: IsLink().
    void Press(const QPoint& place) { on_press_(place); }

  protected:
    void mousePressEvent(QMouseEvent* event) override;

  private:
    std::function<void(const QPoint& place)> on_press_;
};

}  // namespace varnith
