#include "platform/qt/ListboxWidget.h"

#include <QApplication>
#include <QClipboard>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QToolTip>
#include <algorithm>
#include <optional>
#include <utility>

#include "platform/qt/AccessibleListbox.h"
#include "platform/qt/ContextMenu.h"
#include "platform/qt/HeadingsWidget.h"
#include "platform/qt/TextColours.h"

namespace varnith {

namespace {

constexpr int LeastColumnWidth = 20;
constexpr int CellPadding = 8;  // left and right of a cell's text, in sum, as Qt's styles draw it
constexpr int TickColumn = 0;

}  // namespace

ListboxWidget::ListboxWidget(QWidget* parent) : QTableView(parent), headings_(*new HeadingsWidget(this)) {
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
    setHorizontalHeader(&headings_);
    horizontalHeader()->setMinimumSectionSize(LeastColumnWidth);
    horizontalHeader()->installEventFilter(this);
    horizontalHeader()->viewport()->installEventFilter(this);
    // Queued, because Qt tells the accessibility bus of the whole header after the event that gives it the
    // focus.
    headings_.on_choice = [this](int column) {
        if (AccessibleListbox* accessible = AccessibleListbox::Of(*this))
            QMetaObject::invokeMethod(
                this, [=] { accessible->TellHeading(column); }, Qt::QueuedConnection);
    };
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

// Keeps the width that the user gives a column. While the user drags a column's edge, only the columns to the
// right of it are resized, so that the edge stays under the mouse pointer. The columns to the left follow
// when the button is released. With keys it is the same.
void ListboxWidget::HoldWidth(int column) {
    if (resizing_columns_) return;
    std::erase(sharing_columns_, column);
    ShareRest(column);
}

bool ListboxWidget::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease || event->type() == QEvent::KeyRelease) ShareRest();
    return QTableView::eventFilter(watched, event);
}

// Distributes the free or missing width evenly among the sharing columns from first_column on.
void ListboxWidget::ShareRest(int first_column) {
    const QScopedValueRollback by_program(resizing_columns_, true);
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

void ListboxWidget::Highlight(int row) {
    setCurrentIndex(model()->index(row, SearchColumn));
}

// These two skip QTableView's: it would name cells to the accessibility bus by numbers that count the hidden
// row headers. NOLINTBEGIN(bugprone-parent-virtual-call)
void ListboxWidget::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QAbstractItemView::currentChanged(current, previous);
    if (AccessibleListbox* accessible = AccessibleListbox::Of(*this))
        accessible->TellHighlight(previous.row());
}

void ListboxWidget::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QAbstractItemView::selectionChanged(selected, deselected);
}
// NOLINTEND(bugprone-parent-virtual-call)

// When the focus comes, Qt makes the first row the current one. Here no row is highlighted until the user
// highlights one.
void ListboxWidget::focusInEvent(QFocusEvent* event) {
    const QPersistentModelIndex current = currentIndex();
    const QSignalBlocker not_by_user(selectionModel());
    QTableView::focusInEvent(event);
    if (!current.isValid()) selectionModel()->clearCurrentIndex();
    // Queued, because Qt tells the accessibility bus after this event that the table has the focus.
    if (AccessibleListbox* accessible = AccessibleListbox::Of(*this); accessible && current.isValid())
        QMetaObject::invokeMethod(
            this, [=] { accessible->TellFocus(current.column()); }, Qt::QueuedConnection);
}

void ListboxWidget::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Space && event->modifiers() == Qt::NoModifier && !IsSearching())
        ToggleByKey();
    else if ((key == Qt::Key_Return || key == Qt::Key_Enter) && !event->isAutoRepeat() &&
             currentIndex().isValid())
        on_open();
    else if (event->matches(QKeySequence::Copy))
        CopyRow();
    else
        QTableView::keyPressEvent(event);
}

// The user works on the tick then, so a screen reader says it.
void ListboxWidget::ToggleByKey() {
    on_space(currentIndex().row());
    if (AccessibleListbox* accessible = AccessibleListbox::Of(*this)) accessible->TellFocus(TickColumn);
}

// The texts as they are shown, so that a line break in a file name doesn't end the row.
void ListboxWidget::CopyRow() const {
    const QModelIndex current = currentIndex();
    if (!current.isValid()) return;
    QStringList texts;
    for (int column = SearchColumn; column < model()->columnCount(); ++column)
        texts += current.siblingAtColumn(column).data().toString();
    QGuiApplication::clipboard()->setText(texts.join(u'\t'));
}

void ListboxWidget::keyboardSearch(const QString& search) {
    const bool first_letter = !IsSearching();
    since_search_.start();
    QTableView::keyboardSearch(search);
    // While no row is highlighted, Qt searches the first column, which has no texts.
    if (currentIndex().isValid() || !first_letter) return;
    const QModelIndex first_row = model()->index(0, SearchColumn);
    const QModelIndexList found = model()->match(first_row, Qt::DisplayRole, search);
    if (!found.isEmpty()) setCurrentIndex(found.front());
}

bool ListboxWidget::IsSearching() const {
    return since_search_.isValid() && since_search_.elapsed() <= QApplication::keyboardInputInterval();
}

void ListboxWidget::mousePressEvent(QMouseEvent* event) {
    clicked_twice_ = event->type() == QEvent::MouseButtonDblClick && event->button() == Qt::LeftButton;
    // The press may open a menu. The program runs on while it is open and may close the window, which deletes
    // this widget.
    const QPointer<ListboxWidget> self(this);
    const QPoint place = event->position().toPoint();
    if (DeliverPress(place, event->button() == Qt::RightButton) || !self) return;
    QTableView::mousePressEvent(event);
    // Highlights the row, also for a press on its check box. A press below the last row removes the
    // highlight.
    setCurrentIndex(indexAt(place).siblingAtColumn(SearchColumn));
}

void ListboxWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

// QTableView toggles a check box at the release. The double click is reported after that: its message box
// would take the release, and the second of the two toggles would be lost.
void ListboxWidget::mouseReleaseEvent(QMouseEvent* event) {
    QTableView::mouseReleaseEvent(event);
    if (std::exchange(clicked_twice_, false)) on_open();
}

// The menu key counts as a press on the highlighted row. For a press of the mouse, mousePressEvent has
// already called on_press.
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

void ListboxWidget::SetEmptyText(const QString& text) {
    if (empty_text_ == text) return;
    empty_text_ = text;
    viewport()->update();
}

void ListboxWidget::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (!model() || model()->rowCount() > 0) return;
    QPainter painter(viewport());
    painter.setPen(ReadableOn(palette().color(QPalette::Base), palette().color(QPalette::PlaceholderText)));
    painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, empty_text_);
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
    // Escaped, because a file name may look like markup.
    QToolTip::showText(global_position, "<p style='white-space:pre'>" + text.toHtmlEscaped() + "</p>",
                       viewport(), cell);
    return true;
}

}  // namespace varnith
