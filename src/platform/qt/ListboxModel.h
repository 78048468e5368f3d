#pragma once

#include <QAbstractTableModel>

#include "platform/ui/Listbox.h"

namespace varnith {

// The model of a Listbox for QTableView. It copies no rows: it only knows how many the view has been told of,
// and reads a cell when the view draws it.
class ListboxModel : public QAbstractTableModel {
  public:
    explicit ListboxModel(Listbox& list) : list_(list) {}

    // Tells the view how the rows have changed since the last call: a reset if the list was emptied,
    // otherwise the rows that were appended.
    void Catch();

    // Whether Catch would report appended rows and no reset.
    bool OnlyLacksNewRows() const { return clearings_ == list_.Clearings() && rows_ < list_.ListCount(); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

  private:
    // The list may have been emptied since the view was told of the row.
    bool IsThere(const QModelIndex& index) const {
        return index.isValid() && index.row() < list_.ListCount();
    }
    QVariant Alignment(int column) const;
    bool HasCheckBox(const QModelIndex& index) const;

    Listbox& list_;
    int rows_ = 0;
    int clearings_ = 0;
};

}  // namespace varnith
