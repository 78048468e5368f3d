#pragma once

#include <QAbstractTableModel>

#include "platform/ui/Listbox.h"

namespace varnith {

// The rows of a Listbox as Qt's views ask for them. It holds none: it knows how many rows the view has been
// told of, and fetches what a visible cell shows when it is drawn.
class ListboxModel : public QAbstractTableModel {
  public:
    explicit ListboxModel(Listbox& list) : list_(list) {}

    // Tells the view what has become of the rows since the last call: all of them gone, or more below.
    void Catch();

    // Whether Catch would tell the view of new rows and of nothing else.
    bool OnlyLacksNewRows() const { return clearings_ == list_.Clearings() && rows_ < list_.ListCount(); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

  private:
    // The list may have been emptied since the view was told of its rows.
    bool IsThere(const QModelIndex& index) const {
        return index.isValid() && index.row() < list_.ListCount();
    }
    bool HasCheckBox(const QModelIndex& index) const;

    Listbox& list_;
    int rows_ = 0;
    int clearings_ = 0;
};

}  // namespace varnith
