#include "platform/qt/ListboxView.h"

#include <QHeaderView>
#include <QSignalBlocker>

#include "platform/qt/AccessibleListbox.h"
#include "platform/qt/Decode.h"

namespace varnith {

namespace {

constexpr qint64 NewRowsMilliseconds = 200;
constexpr int RowPadding = 6;  // above and below a row's text, in sum

}  // namespace

ListboxView::ListboxView(Listbox& list, ListboxWidget& table, FrameClock& clock)
    : ControlView(list, table, clock), list_(list), table_(table), model_(list) {
    table.setModel(&model_);
    table.on_space = [&list](int row) { list.ToggleCheck(row); };
    table.on_press = [&list](const QPoint& place) { return list.PressMouse(place.x(), place.y()); };
    table.on_open = [&list] { list.ClickTwice(); };
    QObject::connect(table.horizontalHeader(), &QHeaderView::sectionClicked, Connections(),
                     [&list](int column) { list.PressHeading(column); });
    QObject::connect(table.selectionModel(), &QItemSelectionModel::currentRowChanged, Connections(),
                     [&list](const QModelIndex& current) { list.SetListIndex(current.row()); });
    Update();
    // Not in Update: it visits every row.
    table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().height() + RowPadding);
    // Some desktops set a font of their own for headings.
    table.horizontalHeader()->setFont(table.font());
    table.SetColumnWidths(list.ColumnWidths());
}

ListboxView::~ListboxView() {
    table_.setModel(nullptr);
}

void ListboxView::Update() {
    ControlView::Update();
    FollowRows();
    FollowHighlight();
    FollowSorting();
    RepaintChangedRows();
    table_.SetEmptyText(Decoded(list_.EmptyText()));
}

// The headings.
QWidget& ListboxView::LastTabStop() const {
    return *table_.horizontalHeader();
}

void ListboxView::FollowRows() {
    if (NewRowsCanWait()) {
        Changed();
        return;
    }
    // Qt moves the current index when rows come or go. The signal is blocked, because the highlight is for
    // the list to decide.
    const QSignalBlocker by_program(table_.selectionModel());
    model_.Catch();
    since_rows_.start();
}

// Reports appended rows less often than once a frame while the table is full: they only move the scroll bar,
// but QTableView lays itself out and repaints for them. They can't wait if the highlight is among them, where
// a sort may have put it.
bool ListboxView::NewRowsCanWait() const {
    const bool full = table_.rowAt(table_.viewport()->height() - 1) >= 0;
    const bool shows_highlight = list_.ListIndex() < model_.rowCount();
    return full && shows_highlight && model_.OnlyLacksNewRows() &&
           since_rows_.elapsed() < NewRowsMilliseconds;
}

void ListboxView::FollowHighlight() {
    if (table_.currentIndex().row() == list_.ListIndex()) return;
    const QModelIndex index = model_.index(list_.ListIndex(), ListboxWidget::SearchColumn);
    if (index.isValid())
        table_.setCurrentIndex(index);
    else
        table_.selectionModel()->clear();
}

void ListboxView::FollowSorting() {
    const int column = list_.HeadingIndex();
    QHeaderView* header = table_.horizontalHeader();
    header->setSortIndicatorShown(column >= 0);
    if (column >= 0)
        header->setSortIndicator(column, list_.SortedDescending() ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void ListboxView::RepaintChangedRows() {
    const Listbox::RowRange changed = list_.TakeChangedRows();
    const int first_visible = table_.rowAt(0);                               // -1 without rows
    const int last_visible = table_.rowAt(table_.viewport()->height() - 1);  // -1 if the rows end above
    if (changed.first > changed.last || first_visible < 0) return;
    if (AccessibleListbox* accessible = AccessibleListbox::Of(table_))
        accessible->TellChanges(changed.first, changed.last);
    const bool below = last_visible >= 0 && changed.first > last_visible;
    if (!below && changed.last >= first_visible) table_.viewport()->update();
}

}  // namespace varnith
