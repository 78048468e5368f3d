#pragma once

#include <QComboBox>
#include <QWheelEvent>
#include <string>
#include <vector>

#include "platform/qt/ControlViews.h"
#include "platform/ui/PopupMenu.h"

namespace varnith {

// While its list is closed the mouse wheel picks nothing: a pick in the filter costs the user all ticks, and
// a wheel is turned by chance. Keys pick, open or closed.
class PopupMenuWidget : public QComboBox {
  public:
    using QComboBox::QComboBox;

  protected:
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

class PopupMenuView : public ControlView {
  public:
    PopupMenuView(PopupMenu& menu, PopupMenuWidget& box, FrameClock& clock);

    void Update() override;

  private:
    void Pick(int index);

    PopupMenu& menu_;
    PopupMenuWidget& box_;
    std::vector<std::string> shown_;
};

}  // namespace varnith
