#pragma once

#include <QLabel>
#include <functional>

namespace varnith {

// A label that tells of a press of the mouse button on it.
class LabelWidget : public QLabel {
  public:
    explicit LabelWidget(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

    // Sets what hears of a press, with its place in the label. The pointer says that there is something to
    // press.
    void SetOnPress(std::function<void(const QPoint& place)> on_press);

  protected:
    void mousePressEvent(QMouseEvent* event) override;

  private:
    std::function<void(const QPoint& place)> on_press_;
};

}  // namespace varnith
