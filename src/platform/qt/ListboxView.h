#pragma once

#include <QElapsedTimer>
#include <QTableView>
#include <functional>
#include <vector>

#include "platform/qt/ControlViews.h"
#include "platform/qt/ListboxModel.h"
#include "platform/ui/Listbox.h"

namespace varnith {

// The table of a list: whole rows are highlighted one at a time, the arrow keys, Page Up and Down, Home and
// End move among rows, the space bar ticks, letters find a name, and so does the space bar while they are
// typed in quick succession. Tab goes on to the next control.
// Columns without a width of their own share what the others leave. A width that the user gives a column
// holds, and the column shares no more. Once no column shares, what is left over stays bare at the right and
// what doesn't fit is scrolled to: each width is the user's own then.
class ListboxWidget : public QTableView {
  public:
    explicit ListboxWidget(QWidget* parent);

    // The user has pressed the space bar on that row.
    std::function<void(int row)> on_space;
    // The user has pressed a mouse button in the list, or the key for its context menu; true to leave it at
    // that. And: the user has clicked twice, and has let go of the button.
    std::function<bool(const QPoint& place)> on_press;
    std::function<void()> on_double_click;

    // The widths by column; 0 for a column that shares the rest.
    void SetColumnWidths(const std::vector<std::int32_t>& widths);

    void keyboardSearch(const QString& search) override;

  protected:
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    bool viewportEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    // Sees what happens to the heading.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool DeliverPress(const QPoint& place, bool contextual);
    bool IsSearching() const;
    void HoldWidth(int column);
    void ShareRest(int first_column = 0);
    bool ShowTipForCutText(const QPoint& position, const QPoint& global_position);

    std::vector<int> sharing_columns_;  // rising
    bool sharing_ = false;
    bool clicked_twice_ = false;
    QElapsedTimer since_search_;
};

class ListboxView : public ControlView {
  public:
    ListboxView(Listbox& list, ListboxWidget& table, FrameClock& clock);
    ~ListboxView() override;

    void Update() override;

  private:
    bool NewRowsCanWait() const;
    void FollowRows();
    void FollowHighlight();
    void FollowSorting();
    void RepaintChangedRows();

    Listbox& list_;
    ListboxWidget& table_;
    ListboxModel model_;
    QElapsedTimer since_rows_;
};

}  // namespace varnith
