#include "platform/ui/Listbox.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "platform/base/Exceptions.h"
#include "platform/base/SortKeys.h"
#include "platform/base/Text.h"

namespace varnith {

namespace {

std::int32_t ToWidth(const std::string& text) {
    std::int32_t width = 0;
    std::from_chars(text.data(), text.data() + text.size(), width);
    return width;
}

}  // namespace

void Listbox::SetColumns(const std::string& headings, const std::string& widths) {
    headings_.clear();
    widths_.clear();
    const std::int32_t count = std::min(CountFields(headings, "\t"), MaxColumns);
    for (std::int32_t column = 1; column <= count; ++column) {
        headings_.push_back(NthField(headings, "\t", column));
        widths_.push_back(ToWidth(NthField(widths, ",", column)));
    }
    accessible_headings_ = headings_;
    MarkChanged();
}

void Listbox::AddRow(const std::string& text) {
    rows_.Append();
    SetCell(LastIndex(), 0, text);
    heading_index_ = -1;
}

void Listbox::DeleteAllRows() {
    rows_.Clear();
    list_index_ = -1;
    heading_index_ = -1;
    ++clearings_;
    MarkChanged();
}

const Listbox::Row& Listbox::At(std::int32_t row, std::int32_t column) const {
    if (row < 0 || row >= ListCount() || column < 0 || column >= ColumnCount()) throw OutOfBoundsException();
    return rows_[static_cast<std::size_t>(row)];
}

Listbox::Row& Listbox::Changing(std::int32_t row, std::int32_t column) {
    auto& found = const_cast<Row&>(At(row, column));
    MarkRowsChanged(row, row);
    return found;
}

void Listbox::MarkRowsChanged(std::int32_t first, std::int32_t last) {
    changed_.first = std::min(changed_.first, first);
    changed_.last = std::max(changed_.last, last);
    MarkChanged();
}

std::string Listbox::Cell(std::int32_t row, std::int32_t column) const {
    if (column == ColumnCount() && row >= 0 && row < ListCount()) return {};
    return At(row, column).texts[static_cast<std::size_t>(column)].Text();
}

void Listbox::SetCell(std::int32_t row, std::int32_t column, const std::string& text) {
    const auto place = static_cast<std::size_t>(column);
    PackedText& cell = Changing(row, column).texts[place];
    PackedText::Buffer buffer;
    const PackedText* above = row > 0 ? &At(row - 1, column).texts[place] : nullptr;
    cell = above && above->View(buffer) == text ? *above : PackedText(text);
}

std::int32_t Listbox::CellType(std::int32_t row, std::int32_t column) const {
    return At(row, column).types[static_cast<std::size_t>(column)];
}

void Listbox::SetCellType(std::int32_t row, std::int32_t column, std::int32_t type) {
    Changing(row, column).types[static_cast<std::size_t>(column)] = static_cast<std::uint8_t>(type);
}

bool Listbox::CellCheck(std::int32_t row, std::int32_t column) const {
    return At(row, column).checks[static_cast<std::size_t>(column)];
}

void Listbox::SetCellCheck(std::int32_t row, std::int32_t column, bool check) {
    Changing(row, column).checks[static_cast<std::size_t>(column)] = check;
}

std::string Listbox::CellTag(std::int32_t row, std::int32_t column) const {
    return At(row, column).tags[static_cast<std::size_t>(column)].Text();
}

void Listbox::SetCellTag(std::int32_t row, std::int32_t column, const std::string& tag) {
    Changing(row, column).tags[static_cast<std::size_t>(column)] = PackedText(tag);
}

void Listbox::SetListIndex(std::int32_t row) {
    Set(list_index_, row >= 0 && row < ListCount() ? row : -1);
}

void Listbox::PressHeading(std::int32_t column) {
    if (column < 0 || column >= ColumnCount()) return;
    sorted_descending_ = heading_index_ == column && !sorted_descending_;
    heading_index_ = column;

    SegmentedVector<Row> sorted;
    std::int32_t highlighted = -1;
    for (const std::size_t from : SortedOrder(static_cast<std::size_t>(column))) {
        if (static_cast<std::int32_t>(from) == list_index_)
            highlighted = static_cast<std::int32_t>(sorted.Size());
        sorted.Append() = std::move(rows_[from]);
    }
    rows_ = std::move(sorted);
    list_index_ = highlighted;
    MarkRowsChanged(0, LastIndex());
}

std::vector<std::size_t> Listbox::SortedOrder(std::size_t column) const {
    SortKeys keys(rows_.Size());
    for (std::size_t row = 0; row < rows_.Size(); ++row) {
        std::string& key = keys.Next();
        PackedText::Buffer buffer;
        AppendNaturalKey(key, rows_[row].texts[column].View(buffer));
        key += rows_[row].checks[column] ? '1' : '0';
    }
    return keys.Order(sorted_descending_);
}

void Listbox::ToggleCheck(std::int32_t row) {
    if (row < 0 || row >= ListCount()) return;
    const auto& types = At(row, 0).types;
    const auto box = std::find(types.begin(), types.end(), TypeCheckBox);
    if (box == types.end()) return;
    const auto column = static_cast<std::int32_t>(box - types.begin());
    SetCellCheck(row, column, !CellCheck(row, column));
}

}  // namespace varnith
