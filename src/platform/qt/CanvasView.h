#pragma once

#include <QWidget>

#include "platform/qt/ControlViews.h"
#include "platform/ui/Canvas.h"

namespace varnith {

// The area of a canvas. The picture is drawn in the pixels of the screen, whatever the desktop's scale.
class CanvasWidget : public QWidget {
  public:
    using QWidget::QWidget;

    void Show(const Ref<Picture>& picture);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Ref<Picture> picture_;
    QImage drawn_;
};

class CanvasView : public ControlView {
  public:
    CanvasView(Canvas& canvas, CanvasWidget& widget, FrameClock& clock)
        : ControlView(canvas, widget, clock), canvas_(canvas), widget_(widget) {
        Update();
    }

    void Update() override {
        ControlView::Update();
        widget_.Show(canvas_.Backdrop());
    }

  private:
    Canvas& canvas_;
    CanvasWidget& widget_;
};

}  // namespace varnith
