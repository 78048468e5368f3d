#include "platform/qt/PopupMenuView.h"

#include <QAbstractItemView>
#include <QSignalBlocker>

#include "platform/qt/Decode.h"

namespace varnith {

void PopupMenuWidget::showPopup() {
    // By default the list is drawn in the application's colours for menus. With all roles marked as set, the
    // style takes none of them from there.
    QPalette colours = palette();
    colours.setResolveMask(~QPalette::ResolveMask{0});
    view()->setPalette(colours);
    QComboBox::showPopup();
}

PopupMenuView::PopupMenuView(PopupMenu& menu, PopupMenuWidget& box, FrameClock& clock)
    : ControlView(menu, box, clock), menu_(menu), box_(box) {
    QObject::connect(&box, &QComboBox::activated, Connections(), [this](int index) { Pick(index); });
    Update();
}

// While the list of entries is open, the update is put off to a later frame: otherwise the entry under the
// mouse pointer could change.
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

// Qt takes the chosen entry for the name, and some screen readers say a buddy instead of the name. So the
// label is the description, and the name while no entry is chosen.
void PopupMenuView::SetLabel(QLabel& label) {
    box_.setAccessibleName(label.text());
    box_.setAccessibleDescription(label.text());
}

// Picks by text, because the program may have replaced the entries since they were shown. The text is copied,
// because Pick may run the program and Update, which replaces shown_.
void PopupMenuView::Pick(int index) {
    const std::string picked = shown_.at(static_cast<std::size_t>(index));
    menu_.Pick(picked);
}

}  // namespace varnith
