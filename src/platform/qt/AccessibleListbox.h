#pragma once

#include <QAccessibleWidget>
#include <map>
#include <utility>

namespace varnith {

class ListboxWidget;

// A Listbox on the accessibility bus: a table whose children are its headings and then its cells, row by row.
// Qt's own interface for a QTableView counts the hidden row headers as cells, can't toggle a check box, and
// keeps each cell that was ever asked for. This one makes the cells on demand and keeps a limited number.
class AccessibleListbox : public QAccessibleWidget, public QAccessibleTableInterface {
  public:
    explicit AccessibleListbox(ListboxWidget& table);
    ~AccessibleListbox() override;

    // The interface of a table; null if no screen reader or other client uses the bus.
    static AccessibleListbox* Of(ListboxWidget& table);

    // Tells the clients that another row is highlighted. previous_row is the one before, -1 if none was.
    void TellHighlight(int previous_row);
    // Tells the clients that the user works on this cell of the highlighted row.
    void TellFocus(int column);
    // Tells the clients that the user works on this heading.
    void TellHeading(int column);
    // Tells the clients that the texts and ticks of these rows have changed, `last` included.
    void TellChanges(int first, int last);

    ListboxWidget& Table() const { return table_; }
    bool IsHighlighted(int row) const;
    bool HasFocus(int row, int column) const;
    bool IsChosen(int heading) const;

    void* interface_cast(QAccessible::InterfaceType type) override;
    QString text(QAccessible::Text kind) const override;
    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* focusChild() const override;

    int rowCount() const override;
    int columnCount() const override;
    QAccessibleInterface* cellAt(int row, int column) const override;
    QAccessibleInterface* HeadingOf(int column) const { return Part(HeadingRow, column); }
    QAccessibleInterface* caption() const override { return nullptr; }
    QAccessibleInterface* summary() const override { return nullptr; }
    QString columnDescription(int column) const override;
    QString rowDescription(int /*row*/) const override { return {}; }
    // The highlighted row is the selection.
    int selectedCellCount() const override { return selectedRowCount() * columnCount(); }
    QList<QAccessibleInterface*> selectedCells() const override;
    int selectedRowCount() const override { return static_cast<int>(selectedRows().size()); }
    int selectedColumnCount() const override { return 0; }
    QList<int> selectedRows() const override;
    QList<int> selectedColumns() const override { return {}; }
    bool isRowSelected(int row) const override { return IsHighlighted(row); }
    bool isColumnSelected(int /*column*/) const override { return false; }
    bool selectRow(int row) override;
    bool selectColumn(int /*column*/) override { return false; }
    bool unselectRow(int row) override;
    bool unselectColumn(int /*column*/) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent* event) override;

  private:
    static constexpr int HeadingRow = -1;

    // A heading or a cell; null if there is none at that place.
    QAccessibleInterface* Part(int row, int column) const;
    // Makes room for a part of this row.
    void ForgetFarthestFrom(int row) const;
    void ForgetAll();
    void TellSelection(int row, QAccessible::Event change);

    // The parts that clients have asked for, by row and column. A client may still use any of them, and its
    // calls to one that is forgotten fail, so the ones kept are those around the last one asked for.
    using Parts = std::map<std::pair<int, int>, QAccessible::Id>;

    ListboxWidget& table_;
    mutable Parts parts_;
    int focus_column_ = -1;
};

}  // namespace varnith
