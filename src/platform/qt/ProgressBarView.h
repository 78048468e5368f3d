#pragma once

#include <QProgressBar>

#include "platform/qt/ControlViews.h"
#include "platform/ui/ProgressBar.h"

namespace varnith {

// The view of a ProgressBar, without the percentage that Qt writes on the bar.
class ProgressBarView : public ControlView {
  public:
    ProgressBarView(ProgressBar& bar, QProgressBar& widget, FrameClock& clock)
        : ControlView(bar, widget, clock), bar_(bar), widget_(widget) {
        widget.setTextVisible(false);
        Update();
    }

    void Update() override {
        ControlView::Update();
        widget_.setMaximum(bar_.Maximum());
        widget_.setValue(bar_.Value());
    }

  private:
    ProgressBar& bar_;
    QProgressBar& widget_;
};

}  // namespace varnith
