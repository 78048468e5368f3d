#pragma once

#include <QComboBox>
#include <QWheelEvent>
#include <string>
#include <vector>

#include "platform/qt/ControlViews.h"
#include "platform/ui/PopupMenu.h"

namespace varnith {

// A QComboBox whose list has the colours of its window, and which ignores the mouse wheel while the list is
// closed. A change of the filter costs the user all ticks, and the wheel is easily turned by accident. Keys
// change the choice, whether the list is open or closed.
class PopupMenuWidget : public QComboBox {
  public:
    using QComboBox::QComboBox;

    void showPopup() override;

  protected:
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

// The view of a PopupMenu. While the list of entries is open, it keeps those that it was opened with.
class PopupMenuView : public ControlView {
  public:
    PopupMenuView(PopupMenu& menu, PopupMenuWidget& box, FrameClock& clock);

    void Update() override;
    void SetLabel(QLabel& label) override;

  private:
    void Pick(int index);

    PopupMenu& menu_;
    PopupMenuWidget& box_;
    std::vector<std::string> shown_;  // the entries that the box has
};

}  // namespace varnith
