#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/base/PackedText.h"
#include "platform/base/SegmentedVector.h"
#include "platform/ui/Control.h"

namespace varnith {

// A list of rows in columns, with a heading. Rows and columns count from 0. A cell is text; one of type
// CheckBox has a tick besides.
// A text that repeats what stands in the same column of the row above is held once for both, so a folder's
// path is there once for all rows of the folder.
class Listbox : public Control {
  public:
    static constexpr std::int32_t TypeCheckBox = 2;
    static constexpr std::int32_t MaxColumns = 5;

    // The user has pressed a mouse button in the list, headings aside, or has asked for a context menu there
    // by key: x and y in pixels from the list's top left. True if the list is to make nothing of the press.
    std::function<bool(std::int32_t x, std::int32_t y)> MouseDown;
    // The user has clicked twice in quick succession, on a row or below the last one. On a check box both
    // clicks have turned the tick before.
    std::function<void()> DoubleClick;

    // Sets the columns: the headings, separated by tabs, give their number, which is MaxColumns at most.
    // The widths, in pixels, are separated by commas; the columns with an empty one share the rest.
    void SetColumns(const std::string& headings, const std::string& widths);
    std::int32_t ColumnCount() const { return static_cast<std::int32_t>(headings_.size()); }
    const std::vector<std::string>& Headings() const { return headings_; }
    // The width of each column; 0 for one that shares the rest.
    const std::vector<std::int32_t>& ColumnWidths() const { return widths_; }

    std::int32_t ListCount() const { return static_cast<std::int32_t>(rows_.Size()); }
    // Appends a row with that text in column 0.
    void AddRow(const std::string& text);
    // The place of the row added last; -1 if there is none.
    std::int32_t LastIndex() const { return ListCount() - 1; }
    void DeleteAllRows();

    // For all of these a row or column that doesn't exist raises OutOfBoundsException. Reading the text of
    // the column one past the last is no error: it gives an empty text.
    std::string Cell(std::int32_t row, std::int32_t column) const;
    void SetCell(std::int32_t row, std::int32_t column, const std::string& text);
    std::int32_t CellType(std::int32_t row, std::int32_t column) const;
    void SetCellType(std::int32_t row, std::int32_t column, std::int32_t type);
    bool CellCheck(std::int32_t row, std::int32_t column) const;
    void SetCellCheck(std::int32_t row, std::int32_t column, bool check);
    std::string CellTag(std::int32_t row, std::int32_t column) const;
    void SetCellTag(std::int32_t row, std::int32_t column, const std::string& tag);

    // The highlighted row, one at a time; -1 for none. Takes any row of the list; others highlight none.
    std::int32_t ListIndex() const { return list_index_; }
    void SetListIndex(std::int32_t row);

    // The column by which the rows are sorted, or -1. A row added or the list emptied ends that.
    std::int32_t HeadingIndex() const { return heading_index_; }
    bool SortedDescending() const { return sorted_descending_; }

    // The user presses a heading: the rows are sorted by that column in natural order, check boxes by their
    // ticks, rising, or falling if they rise already. Equal rows keep their order, and each row keeps its
    // tick, its tag and the highlight.
    void PressHeading(std::int32_t column);

    // The user's mouse, see the slots.
    bool PressMouse(std::int32_t x, std::int32_t y) { return Fire(MouseDown, x, y); }
    void ClickTwice() { Fire(DoubleClick); }

    // The user clicks a check box or presses the space bar on a row: turns the tick of the first check box
    // of that row. Without effect where there is none.
    void ToggleCheck(std::int32_t row);

    // For the view. How often the list was emptied: what a view remembers of rows is void with each.
    std::int32_t Clearings() const { return clearings_; }
    // For the view. The rows whose cells have changed since it asked last, from the first up to and including
    // the last; first > last for none. Rows added since count among them, rows that are gone may.
    struct RowRange {
        std::int32_t first = INT32_MAX;
        std::int32_t last = -1;
    };
    RowRange TakeChangedRows() { return std::exchange(changed_, {}); }

  private:
    struct Row {
        std::array<PackedText, MaxColumns> texts;
        std::array<PackedText, MaxColumns> tags;
        std::array<std::uint8_t, MaxColumns> types{};
        std::bitset<MaxColumns> checks;
    };

    const Row& At(std::int32_t row, std::int32_t column) const;
    // The row to write to; notes it as changed.
    Row& Changing(std::int32_t row, std::int32_t column);
    void MarkRowsChanged(std::int32_t first, std::int32_t last);
    // The rows' places in the order by that column.
    std::vector<std::size_t> SortedOrder(std::size_t column) const;

    std::vector<std::string> headings_;
    std::vector<std::int32_t> widths_;
    SegmentedVector<Row> rows_;
    std::int32_t list_index_ = -1;
    std::int32_t heading_index_ = -1;
    bool sorted_descending_ = false;
    std::int32_t clearings_ = 0;
    RowRange changed_;
};

}  // namespace varnith
