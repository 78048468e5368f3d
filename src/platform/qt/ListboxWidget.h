#pragma once

#include <QElapsedTimer>
#include <QTableView>
#include <functional>
#include <vector>

namespace varnith {

class HeadingsWidget;

// The widget of a Listbox. One whole row is highlighted at a time. The arrow keys, Page Up, Page Down, Home
// and End move the highlight between rows. The space bar toggles the tick. Return opens the row. Ctrl+C
// copies the row's texts, separated by tabs. Typed letters search for a file name, and while they are typed
// in quick succession a space is a part of the name. Tab moves on to the headings. The columns without a
// fixed width share the space that the others leave. When the user resizes a column, it keeps that width and
// shares no longer. Once no column shares, free space stays empty at the right, and columns that don't fit
// are reached by scrolling.
class ListboxWidget : public QTableView {
  public:
    // Typed letters are searched in this column, the first after the check boxes. QTableView searches the
    // column of the current index, so the current index is always in this column.
    static constexpr int SearchColumn = 1;

    explicit ListboxWidget(QWidget* parent);

    // Called when the user presses the space bar on this row; -1 if no row is highlighted. The three
    // functions must be set before the widget is shown.
    std::function<void(int row)> on_space;
    // Called when the user presses a mouse button in the list or the menu key, with the position in pixels
    // from the top left corner. True skips the default handling.
    std::function<bool(const QPoint& place)> on_press;
    // Called when the user releases the button after a double click, or presses Return on a highlighted row.
    std::function<void()> on_open;

    // The width of each column in pixels; 0 for one that shares the remaining space.
    void SetColumnWidths(const std::vector<std::int32_t>& widths);

    // Highlights a row; none if it doesn't exist.
    void Highlight(int row);
    // The text that stands in the list while it has no rows.
    void SetEmptyText(const QString& text);
    const QString& EmptyText() const { return empty_text_; }

    const HeadingsWidget& Headings() const { return headings_; }

    void keyboardSearch(const QString& search) override;

  protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    bool viewportEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    // Watches the headings for the release of the mouse button and of keys.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool DeliverPress(const QPoint& place, bool contextual);
    void ToggleByKey();
    void CopyRow() const;
    bool IsSearching() const;
    void HoldWidth(int column);
    void ShareRest(int first_column = 0);
    bool ShowTipForCutText(const QPoint& position, const QPoint& global_position);

    QString empty_text_;
    HeadingsWidget& headings_;
    std::vector<int> sharing_columns_;  // in ascending order
    bool resizing_columns_ = false;     // by ShareRest, not by the user
    bool clicked_twice_ = false;        // until the button is released
    QElapsedTimer since_search_;        // since the last typed letter; invalid after a move
};

}  // namespace varnith
