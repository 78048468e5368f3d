#include "platform/qt/ListboxView.h"

#include <QApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QToolTip>
#include <algorithm>
#include <optional>
#include <utility>

#include "platform/qt/ContextMenu.h"

namespace varnith {

namespace {

constexpr int LeastColumnWidth = 20;
constexpr qint64 NewRowsMilliseconds = 200;
constexpr int RowPadding = 6;   // above and below a row's text together
constexpr int CellPadding = 8;  // left and right of a cell's text together, as the styles draw it
// Letters that the user types are searched in this column, the first behind the check boxes.
constexpr int SearchColumn = 1;

}  // namespace

ListboxWidget::ListboxWidget(QWidget* parent) : QTableView(parent) {
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setShowGrid(false);
    setWordWrap(false);
    setTextElideMode(Qt::ElideMiddle);
    setTabKeyNavigation(false);
    setCornerButtonEnabled(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setMinimumSectionSize(LeastColumnWidth);
    horizontalHeader()->viewport()->installEventFilter(this);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, &ListboxWidget::HoldWidth);
}

void ListboxWidget::SetColumnWidths(const std::vector<std::int32_t>& widths) {
    sharing_columns_.clear();
    for (int column = 0; column < static_cast<int>(widths.size()); ++column) {
        const std::int32_t width = widths[static_cast<std::size_t>(column)];
        if (width > 0)
            setColumnWidth(column, width);
        else
            sharing_columns_.push_back(column);
    }
    ShareRest();
}

// While the user drags a column's edge, only what lies to the right of it gives way: the edge stays under the
// mouse. The columns to the left take their share when the user lets go.
void ListboxWidget::HoldWidth(int column) {
    if (sharing_) return;
    std::erase(sharing_columns_, column);
    ShareRest(column);
}

bool ListboxWidget::eventFilter(QObject* watched, QEvent* event) {
    if (watched == horizontalHeader()->viewport() && event->type() == QEvent::MouseButtonRelease) ShareRest();
    return QTableView::eventFilter(watched, event);
}

// The sharing columns from that one on take up what is left over or give what is missing, alike.
void ListboxWidget::ShareRest(int first_column) {
    const QScopedValueRollback by_program(sharing_, true);
    const auto first = std::ranges::lower_bound(sharing_columns_, first_column);
    int rest = viewport()->width() - horizontalHeader()->length();
    for (auto sharer = first; sharer != sharing_columns_.end(); ++sharer) {
        const int share = rest / static_cast<int>(sharing_columns_.end() - sharer);
        setColumnWidth(*sharer, std::max(LeastColumnWidth, columnWidth(*sharer) + share));
        rest -= share;
    }
}

void ListboxWidget::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    if (event->size().width() != event->oldSize().width()) ShareRest();
}

// Qt makes the first row the current one when the focus comes; here no row is highlighted until the user
// highlights one.
void ListboxWidget::focusInEvent(QFocusEvent* event) {
    const QPersistentModelIndex current = currentIndex();
    const QSignalBlocker not_by_user(selectionModel());
    QTableView::focusInEvent(event);
    if (!current.isValid()) selectionModel()->clearCurrentIndex();
}

void ListboxWidget::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier && !IsSearching())
        on_space(currentIndex().row());
    else
        QTableView::keyPressEvent(event);
}

void ListboxWidget::keyboardSearch(const QString& search) {
    since_search_.start();
    QTableView::keyboardSearch(search);
}

bool ListboxWidget::IsSearching() const {
    return since_search_.isValid() && since_search_.elapsed() <= QApplication::keyboardInputInterval();
}

void ListboxWidget::mousePressEvent(QMouseEvent* event) {
    clicked_twice_ = event->type() == QEvent::MouseButtonDblClick && event->button() == Qt::LeftButton;
    // A menu lets the program run, which may close the window.
    const QPointer<ListboxWidget> self(this);
    const QPoint place = event->position().toPoint();
    if (DeliverPress(place, event->button() == Qt::RightButton) || !self) return;
    QTableView::mousePressEvent(event);
    // A press on a check box highlights its row as one beside it does, a press below the rows none.
    setCurrentIndex(indexAt(place).siblingAtColumn(SearchColumn));
}

void ListboxWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

// A tick turns when the button is let go. Opening comes after that, or a message box would take the event and
// leave the second of two ticks out.
void ListboxWidget::mouseReleaseEvent(QMouseEvent* event) {
    QTableView::mouseReleaseEvent(event);
    if (std::exchange(clicked_twice_, false)) on_double_click();
}

// The key for the context menu is a press on the highlighted row. That of the mouse has been delivered before
// this event comes.
void ListboxWidget::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() != QContextMenuEvent::Keyboard) return;
    const QRect row = visualRect(currentIndex()) & viewport()->rect();
    DeliverPress(row.center(), true);
}

bool ListboxWidget::DeliverPress(const QPoint& place, bool contextual) {
    std::optional<ContextualPress> press;
    if (contextual) press.emplace(viewport()->mapToGlobal(place));
    return on_press(viewport()->mapToParent(place));
}

QModelIndex ListboxWidget::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    since_search_.invalidate();
    if (action == MoveHome) return model()->index(0, SearchColumn);
    if (action == MoveEnd) return model()->index(model()->rowCount() - 1, SearchColumn);
    if (action == MoveLeft || action == MoveRight) {
        QScrollBar* bar = horizontalScrollBar();
        bar->triggerAction(action == MoveLeft ? QScrollBar::SliderSingleStepSub
                                              : QScrollBar::SliderSingleStepAdd);
        return currentIndex();
    }
    const QModelIndex moved = QTableView::moveCursor(action, modifiers);
    return moved.siblingAtColumn(SearchColumn);
}

bool ListboxWidget::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        if (ShowTipForCutText(help->pos(), help->globalPos())) return true;
    }
    return QTableView::viewportEvent(event);
}

bool ListboxWidget::ShowTipForCutText(const QPoint& position, const QPoint& global_position) {
    const QModelIndex index = indexAt(position);
    const QString text = index.data(Qt::DisplayRole).toString();
    const QRect cell = visualRect(index);
    if (text.isEmpty() || fontMetrics().horizontalAdvance(text) + CellPadding <= cell.width()) return false;
    // As plain text: a name may look like markup.
    QToolTip::showText(global_position, "<p style='white-space:pre'>" + text.toHtmlEscaped() + "</p>",
                       viewport(), cell);
    return true;
}

ListboxView::ListboxView(Listbox& list, ListboxWidget& table, FrameClock& clock)
    : ControlView(list, table, clock), list_(list), table_(table), model_(list) {
    table.setModel(&model_);
    table.on_space = [&list](int row) { list.ToggleCheck(row); };
    table.on_press = [&list](const QPoint& place) { return list.PressMouse(place.x(), place.y()); };
    table.on_double_click = [&list] { list.ClickTwice(); };
    QObject::connect(table.horizontalHeader(), &QHeaderView::sectionClicked, Connections(),
                     [&list](int column) { list.PressHeading(column); });
    QObject::connect(table.selectionModel(), &QItemSelectionModel::currentRowChanged, Connections(),
                     [&list](const QModelIndex& current) { list.SetListIndex(current.row()); });
    Update();
    // Once, and not at each update: it costs as much as there are rows.
    table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().height() + RowPadding);
    // A desktop may have a font of its own for headings.
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
}

void ListboxView::FollowRows() {
    if (NewRowsCanWait()) {
        Changed();
        return;
    }
    // The rows go and come by the program here, so the highlight is the list's to say.
    const QSignalBlocker by_program(table_.selectionModel());
    model_.Catch();
    since_rows_.start();
}

// Rows that come in below a table that is full move its scroll bar and nothing else, but the table lays
// itself out and draws itself anew for them: at each frame that takes a sixth of a scan's time. A highlight
// among them can't wait: a sort may have put it there.
bool ListboxView::NewRowsCanWait() const {
    const bool full = table_.rowAt(table_.viewport()->height() - 1) >= 0;
    const bool shows_highlight = list_.ListIndex() < model_.rowCount();
    return full && shows_highlight && model_.OnlyLacksNewRows() &&
           since_rows_.elapsed() < NewRowsMilliseconds;
}

void ListboxView::FollowHighlight() {
    if (table_.currentIndex().row() == list_.ListIndex()) return;
    const QModelIndex index = model_.index(list_.ListIndex(), SearchColumn);
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
    const int first = table_.rowAt(0);
    const int last = table_.rowAt(table_.viewport()->height() - 1);
    const bool below = first < 0 || (last >= 0 && changed.first > last);
    if (changed.first <= changed.last && !below && changed.last >= first) table_.viewport()->update();
}

}  // namespace varnith
