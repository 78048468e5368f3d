#include "platform/qt/PopupMenuView.h"

#include <QAbstractItemView>
#include <QSignalBlocker>

#include "platform/qt/Decode.h"

namespace varnith {

PopupMenuView::PopupMenuView(PopupMenu& menu, PopupMenuWidget& box, FrameClock& clock)
    : ControlView(menu, box, clock), menu_(menu), box_(box) {
    QObject::connect(&box, &QComboBox::activated, Connections(), [this](int index) { Pick(index); });
    Update();
}

// An open list stays as the user sees it until it closes, or the entry under the mouse would change.
void PopupMenuView::Update() {
    ControlView::Update();
    if (box_.view()->isVisible()) {
        Changed();
        return;
    }
    const QSignalBlocker by_program(box_);
    if (shown_ != menu_.Rows()) {
        shown_ = menu_.Rows();
        box_.clear();
        for (const std::string& row : shown_) box_.addItem(Decoded(row));
    }
    box_.setCurrentIndex(menu_.ListIndex());
}

// By its text: the entries may have been filled anew since they were shown. A copy, because a pick may run
// the program, which may show others.
void PopupMenuView::Pick(int index) {
    const std::string picked = shown_.at(static_cast<std::size_t>(index));
    menu_.Pick(picked);
}

}  // namespace varnith
