#include "platform/qt/AccessibleListbox.h"

#include <QHeaderView>
#include <iterator>

#include "platform/qt/AccessibleCell.h"
#include "platform/qt/HeadingsWidget.h"
#include "platform/qt/ListboxWidget.h"

namespace varnith {

namespace {
// Enough for several screens of rows.
constexpr std::size_t MostParts = 4096;
}  // namespace

AccessibleListbox::AccessibleListbox(ListboxWidget& table)
    : QAccessibleWidget(&table, QAccessible::Table), table_(table) {}

AccessibleListbox::~AccessibleListbox() {
    ForgetAll();
}

AccessibleListbox* AccessibleListbox::Of(ListboxWidget& table) {
    if (!QAccessible::isActive()) return nullptr;
    return dynamic_cast<AccessibleListbox*>(QAccessible::queryAccessibleInterface(&table));
}

void AccessibleListbox::TellHighlight(int previous_row) {
    TellSelection(previous_row, QAccessible::SelectionRemove);
    TellSelection(table_.currentIndex().row(), QAccessible::SelectionAdd);
    TellFocus(table_.currentIndex().column());
}

void AccessibleListbox::TellSelection(int row, QAccessible::Event change) {
    for (int column = 0; column < columnCount(); ++column) {
        QAccessibleInterface* cell = cellAt(row, column);
        if (!cell) return;
        QAccessibleEvent event(cell, change);
        QAccessible::updateAccessibility(&event);
    }
}

void AccessibleListbox::TellFocus(int column) {
    focus_column_ = column;
    QAccessibleInterface* cell = focusChild();
    if (!cell || !table_.hasFocus()) return;
    QAccessibleEvent event(cell, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

void AccessibleListbox::TellHeading(int column) {
    if (!IsChosen(column)) return;
    QAccessibleEvent event(HeadingOf(column), QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

void AccessibleListbox::TellChanges(int first, int last) {
    const auto end = parts_.upper_bound({last, columnCount()});
    for (auto place = parts_.lower_bound({first, 0}); place != end; ++place) {
        QAccessibleInterface* cell = QAccessible::accessibleInterface(place->second);
        if (cell->state().checkable) {
            QAccessible::State changed;
            changed.checked = true;
            QAccessibleStateChangeEvent event(cell, changed);
            QAccessible::updateAccessibility(&event);
        } else {
            QAccessibleEvent event(cell, QAccessible::NameChanged);
            QAccessible::updateAccessibility(&event);
        }
    }
}

bool AccessibleListbox::IsHighlighted(int row) const {
    return row >= 0 && row == table_.currentIndex().row();
}

bool AccessibleListbox::HasFocus(int row, int column) const {
    return table_.hasFocus() && IsHighlighted(row) && column == focus_column_;
}

bool AccessibleListbox::IsChosen(int heading) const {
    return table_.Headings().Chosen() == heading;
}

void* AccessibleListbox::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::TableInterface) return static_cast<QAccessibleTableInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QString AccessibleListbox::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Description && rowCount() == 0) return table_.EmptyText();
    return QAccessibleWidget::text(kind);
}

int AccessibleListbox::rowCount() const {
    return table_.model() ? table_.model()->rowCount() : 0;
}

int AccessibleListbox::columnCount() const {
    return table_.model() ? table_.model()->columnCount() : 0;
}

int AccessibleListbox::childCount() const {
    return (rowCount() + 1) * columnCount();
}

QAccessibleInterface* AccessibleListbox::child(int index) const {
    if (index < 0 || index >= childCount()) return nullptr;
    return Part(index / columnCount() + HeadingRow, index % columnCount());
}

QAccessibleInterface* AccessibleListbox::childAt(int x, int y) const {
    const QHeaderView& header = *table_.horizontalHeader();
    const QPoint in_header = header.viewport()->mapFromGlobal(QPoint(x, y));
    if (header.viewport()->rect().contains(in_header)) return HeadingOf(header.logicalIndexAt(in_header));
    const QModelIndex index = table_.indexAt(table_.viewport()->mapFromGlobal(QPoint(x, y)));
    return cellAt(index.row(), index.column());
}

int AccessibleListbox::indexOfChild(const QAccessibleInterface* child) const {
    const auto* part = dynamic_cast<const AccessiblePart*>(child);
    return part ? (part->Row() - HeadingRow) * columnCount() + part->Column() : -1;
}

QAccessibleInterface* AccessibleListbox::focusChild() const {
    return cellAt(table_.currentIndex().row(), focus_column_);
}

QAccessibleInterface* AccessibleListbox::cellAt(int row, int column) const {
    return row > HeadingRow ? Part(row, column) : nullptr;
}

QString AccessibleListbox::columnDescription(int column) const {
    if (!table_.model()) return {};
    return table_.model()->headerData(column, Qt::Horizontal, Qt::AccessibleTextRole).toString();
}

QList<QAccessibleInterface*> AccessibleListbox::selectedCells() const {
    QList<QAccessibleInterface*> cells;
    for (const int row : selectedRows())
        for (int column = 0; column < columnCount(); ++column) cells += Part(row, column);
    return cells;
}

QList<int> AccessibleListbox::selectedRows() const {
    const int row = table_.currentIndex().row();
    return row >= 0 ? QList<int>{row} : QList<int>();
}

bool AccessibleListbox::selectRow(int row) {
    if (row < 0 || row >= rowCount()) return false;
    table_.Highlight(row);
    return true;
}

bool AccessibleListbox::unselectRow(int row) {
    if (!IsHighlighted(row)) return false;
    table_.Highlight(-1);
    return true;
}

// Rows are only appended or all removed, so nothing else moves a cell.
void AccessibleListbox::modelChange(QAccessibleTableModelChangeEvent* event) {
    if (event->modelChangeType() == QAccessibleTableModelChangeEvent::ModelReset) ForgetAll();
}

QAccessibleInterface* AccessibleListbox::Part(int row, int column) const {
    if (row < HeadingRow || row >= rowCount() || column < 0 || column >= columnCount()) return nullptr;
    if (const auto known = parts_.find({row, column}); known != parts_.end())
        return QAccessible::accessibleInterface(known->second);
    if (parts_.size() >= MostParts) ForgetFarthestFrom(row);
    QAccessibleInterface* part = nullptr;
    if (row == HeadingRow)
        part = new AccessibleHeading(*this, row, column);
    else
        part = new AccessibleCell(*this, row, column);
    parts_[{row, column}] = QAccessible::registerAccessibleInterface(part);
    return part;
}

void AccessibleListbox::ForgetFarthestFrom(int row) const {
    const auto first = parts_.lower_bound({0, 0});
    const auto last = std::prev(parts_.end());
    const auto farthest = row - first->first.first > last->first.first - row ? first : last;
    QAccessible::deleteAccessibleInterface(farthest->second);
    parts_.erase(farthest);
}

void AccessibleListbox::ForgetAll() {
    for (const auto& [place, id] : parts_) QAccessible::deleteAccessibleInterface(id);
    parts_.clear();
}

}  // namespace varnith
