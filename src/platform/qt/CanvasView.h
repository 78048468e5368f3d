#pragma once

#include <QWidget>

#include "platform/qt/ControlViews.h"
#include "platform/ui/Canvas.h"

namespace varnith {

// The widget of a Canvas. It renders the picture at the screen's resolution, whatever the desktop's scale
// factor.
class CanvasWidget : public QWidget {
  public:
    using QWidget::QWidget;

    // Nil shows nothing.
    void Show(const Ref<Picture>& picture);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Ref<Picture> picture_;
    QImage drawn_;
};

// The view of a Canvas.
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
