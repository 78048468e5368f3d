#include "platform/qt/AccessibleCell.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QHeaderView>

#include "platform/qt/ListboxWidget.h"

namespace varnith {

namespace {
// In lower case, unlike Qt's name for it: by this one Orca knows that a cell has a check box.
constexpr QLatin1String Toggle("toggle");
}  // namespace

void* AccessiblePart::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QAccessibleInterface* AccessiblePart::parent() const {
    return QAccessible::queryAccessibleInterface(&list_.Table());
}

QString AccessibleHeading::text(QAccessible::Text kind) const {
    const QHeaderView& header = *list_.Table().horizontalHeader();
    if (kind == QAccessible::Name) return list_.columnDescription(column_);
    const bool sorted = header.isSortIndicatorShown() && header.sortIndicatorSection() == column_;
    if (kind != QAccessible::Description || !sorted) return {};
    return header.sortIndicatorOrder() == Qt::AscendingOrder ? QStringLiteral("sorted ascending")
                                                             : QStringLiteral("sorted descending");
}

QAccessible::State AccessibleHeading::state() const {
    QAccessible::State state;
    state.focusable = true;
    state.focused = list_.IsChosen(column_);
    return state;
}

QRect AccessibleHeading::rect() const {
    const QHeaderView& header = *list_.Table().horizontalHeader();
    const QPoint corner(header.sectionViewportPosition(column_), 0);
    return {header.viewport()->mapToGlobal(corner), QSize(header.sectionSize(column_), header.height())};
}

void AccessibleHeading::doAction(const QString& action) {
    if (action == pressAction()) emit list_.Table().horizontalHeader()->sectionClicked(column_);
}

QModelIndex AccessibleCell::Index() const {
    return isValid() ? list_.Table().model()->index(row_, column_) : QModelIndex();
}

bool AccessibleCell::HasCheckBox() const {
    return Index().flags().testFlag(Qt::ItemIsUserCheckable);
}

void* AccessibleCell::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::TableCellInterface) return static_cast<QAccessibleTableCellInterface*>(this);
    return AccessiblePart::interface_cast(type);
}

QAccessible::Role AccessibleCell::role() const {
    return HasCheckBox() ? QAccessible::CheckBox : QAccessible::Cell;
}

QAccessible::State AccessibleCell::state() const {
    QAccessible::State state;
    state.selectable = true;
    state.selected = isSelected();
    state.focusable = true;
    state.focused = list_.HasFocus(row_, column_);
    state.checkable = HasCheckBox();
    state.checked = Index().data(Qt::CheckStateRole).toInt() == Qt::Checked;
    state.offscreen = !list_.Table().viewport()->rect().intersects(list_.Table().visualRect(Index()));
    return state;
}

QString AccessibleCell::text(QAccessible::Text kind) const {
    if (kind != QAccessible::Name) return {};
    return HasCheckBox() ? list_.columnDescription(column_) : Index().data(Qt::DisplayRole).toString();
}

QRect AccessibleCell::rect() const {
    const QRect place = list_.Table().visualRect(Index());
    return {list_.Table().viewport()->mapToGlobal(place.topLeft()), place.size()};
}

QStringList AccessibleCell::actionNames() const {
    return {HasCheckBox() ? QString(Toggle) : pressAction(), showMenuAction(), setFocusAction()};
}

// A menu and a message box run an event loop until the user has answered. They are opened from the event
// loop, so that the client gets its answer at once.
void AccessibleCell::doAction(const QString& action) {
    ListboxWidget& table = list_.Table();
    if (!isValid()) return;
    if (action == Toggle) {
        table.model()->setData(Index(), {}, Qt::CheckStateRole);
        return;
    }
    table.Highlight(row_);
    if (action == pressAction())
        QMetaObject::invokeMethod(
            &table, [&table] { table.on_open(); }, Qt::QueuedConnection);
    else if (action == showMenuAction())
        QCoreApplication::postEvent(&table, new QContextMenuEvent(QContextMenuEvent::Keyboard, {}, {}));
    else if (action == setFocusAction())
        table.setFocus();
}

}  // namespace varnith
