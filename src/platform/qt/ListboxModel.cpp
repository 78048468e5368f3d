#include "platform/qt/ListboxModel.h"

#include "platform/qt/ControlViews.h"
#include "platform/qt/Decode.h"

namespace varnith {

void ListboxModel::Catch() {
    const int count = list_.ListCount();
    if (clearings_ != list_.Clearings()) {
        beginResetModel();
        clearings_ = list_.Clearings();
        rows_ = count;
        endResetModel();
    } else if (count > rows_) {
        beginInsertRows({}, rows_, count - 1);
        rows_ = count;
        endInsertRows();
    }
}

int ListboxModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_;
}

int ListboxModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : list_.ColumnCount();
}

QVariant ListboxModel::Alignment(int column) const {
    return QVariant(ToQt(list_.ColumnAlign(column)) | Qt::AlignVCenter);
}

bool ListboxModel::HasCheckBox(const QModelIndex& index) const {
    return IsThere(index) && list_.CellType(index.row(), index.column()) == Listbox::TypeCheckBox;
}

QVariant ListboxModel::data(const QModelIndex& index, int role) const {
    if (role == Qt::DisplayRole && IsThere(index)) return Decoded(list_.Cell(index.row(), index.column()));
    if (role == Qt::CheckStateRole && HasCheckBox(index))
        return list_.CellCheck(index.row(), index.column()) ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::TextAlignmentRole) return Alignment(index.column());
    return {};
}

bool ListboxModel::setData(const QModelIndex& index, const QVariant&, int role) {
    if (role != Qt::CheckStateRole || !HasCheckBox(index)) return false;
    list_.ToggleCheck(index.row());
    return true;
}

QVariant ListboxModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= list_.ColumnCount()) return {};
    if (role == Qt::DisplayRole) return Decoded(list_.Headings()[static_cast<std::size_t>(section)]);
    if (role == Qt::AccessibleTextRole) return Decoded(list_.AccessibleHeading(section));
    if (role == Qt::TextAlignmentRole) return Alignment(section);
    return {};
}

Qt::ItemFlags ListboxModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags selectable = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return HasCheckBox(index) ? selectable | Qt::ItemIsUserCheckable : selectable;
}

}  // namespace varnith
