#pragma once

#include <QAccessible>
#include <QModelIndex>

#include "platform/qt/AccessibleListbox.h"

namespace varnith {

// A part of a Listbox on the accessibility bus: a heading or a cell.
class AccessiblePart : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    AccessiblePart(const AccessibleListbox& list, int row, int column)
        : list_(list), row_(row), column_(column) {}

    int Row() const { return row_; }
    int Column() const { return column_; }

    void* interface_cast(QAccessible::InterfaceType type) override;
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return list_.window(); }
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
    QStringList keyBindingsForAction(const QString& /*action*/) const override { return {}; }

  protected:
    const AccessibleListbox& list_;
    const int row_;
    const int column_;
};

// A heading. Pressing it sorts the rows.
class AccessibleHeading : public AccessiblePart {
  public:
    using AccessiblePart::AccessiblePart;

    bool isValid() const override { return column_ < list_.columnCount(); }
    QAccessible::Role role() const override { return QAccessible::ColumnHeader; }
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& action) override;
};

// A cell. One with a check box is that check box; pressing another opens the row, as a double click does.
class AccessibleCell : public AccessiblePart, public QAccessibleTableCellInterface {
  public:
    using AccessiblePart::AccessiblePart;

    void* interface_cast(QAccessible::InterfaceType type) override;
    bool isValid() const override { return row_ < list_.rowCount() && column_ < list_.columnCount(); }
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QStringList actionNames() const override;
    void doAction(const QString& action) override;

    int rowIndex() const override { return row_; }
    int columnIndex() const override { return column_; }
    int rowExtent() const override { return 1; }
    int columnExtent() const override { return 1; }
    bool isSelected() const override { return list_.IsHighlighted(row_); }
    QList<QAccessibleInterface*> columnHeaderCells() const override { return {list_.HeadingOf(column_)}; }
    QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
    QAccessibleInterface* table() const override { return parent(); }

  private:
    QModelIndex Index() const;
    bool HasCheckBox() const;
};

}  // namespace varnith
