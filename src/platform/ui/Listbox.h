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

// A table with column headings. Rows and columns count from 0. A cell has a text, and one of type
// TypeCheckBox also has a check box.
// A text that equals the one above it in its column shares its memory: the files of a folder hold the path of
// the folder once.
class Listbox : public Control {
  public:
    static constexpr std::int32_t TypeCheckBox = 2;
    static constexpr std::int32_t MaxColumns = 5;

    // Called when the user presses a mouse button in the list, but not on a heading, or presses the menu key.
    // x and y are in pixels from the list's top left corner. Return true to skip the default handling.
    std::function<bool(std::int32_t x, std::int32_t y)> MouseDown;
    // Called after a double click on a row or below the last row, and when Return is pressed on the
    // highlighted row. On a check box each of the two clicks has toggled the tick before.
    std::function<void()> DoubleClick;

    // Sets the columns. `headings` are separated by tabs and give the number of columns, at most MaxColumns.
    // `widths` are in pixels, separated by commas; the columns with an empty width share the remaining space.
    void SetColumns(const std::string& headings, const std::string& widths);
    std::int32_t ColumnCount() const { return static_cast<std::int32_t>(headings_.size()); }
    const std::vector<std::string>& Headings() const { return headings_; }
    // What a screen reader calls a column: its heading, unless another text is set after SetColumns.
    void SetAccessibleHeading(std::int32_t column, const std::string& text) {
        accessible_headings_.at(static_cast<std::size_t>(column)) = text;
    }
    const std::string& AccessibleHeading(std::int32_t column) const {
        return accessible_headings_.at(static_cast<std::size_t>(column));
    }
    // The width of each column in pixels; 0 for one that shares the remaining space.
    const std::vector<std::int32_t>& ColumnWidths() const { return widths_; }

    // How the texts of a column and its heading are aligned; by default to the left. REQUIRES: the column is
    // below MaxColumns. Must be set before the window opens.
    void SetColumnAlign(std::int32_t column, TextAlign align) {
        aligns_.at(static_cast<std::size_t>(column)) = align;
    }
    TextAlign ColumnAlign(std::int32_t column) const { return aligns_.at(static_cast<std::size_t>(column)); }

    // The text that stands in the list while it has no rows, for example how to fill it.
    void SetEmptyText(std::string text) { Set(empty_text_, std::move(text)); }
    const std::string& EmptyText() const { return empty_text_; }

    std::int32_t ListCount() const { return static_cast<std::int32_t>(rows_.Size()); }
    // Appends a row with this text in column 0.
    void AddRow(const std::string& text);
    // The index of the last row; -1 if there is none.
    std::int32_t LastIndex() const { return ListCount() - 1; }
    void DeleteAllRows();

    // These throw OutOfBoundsException for a row or column that doesn't exist. The one exception: Cell
    // returns an empty text for the column just after the last. A type is TypeCheckBox or 0. A tag is a text
    // that isn't shown.
    std::string Cell(std::int32_t row, std::int32_t column) const;
    void SetCell(std::int32_t row, std::int32_t column, const std::string& text);
    std::int32_t CellType(std::int32_t row, std::int32_t column) const;
    void SetCellType(std::int32_t row, std::int32_t column, std::int32_t type);
    bool CellCheck(std::int32_t row, std::int32_t column) const;
    void SetCellCheck(std::int32_t row, std::int32_t column, bool check);
    std::string CellTag(std::int32_t row, std::int32_t column) const;
    void SetCellTag(std::int32_t row, std::int32_t column, const std::string& tag);

    // The highlighted row; -1 if none is. Setting a row that doesn't exist highlights none.
    std::int32_t ListIndex() const { return list_index_; }
    void SetListIndex(std::int32_t row);

    // The column by which the rows are sorted; -1 if they are not, as after AddRow or DeleteAllRows.
    std::int32_t HeadingIndex() const { return heading_index_; }
    bool SortedDescending() const { return sorted_descending_; }

    // The user clicks a heading: sorts the rows by that column in natural order, and by the tick where the
    // texts are equal. Sorts in ascending order, or in descending order if the column already is in ascending
    // order. The sort is stable. Ticks, tags and the highlight move with their rows.
    void PressHeading(std::int32_t column);

    // The user presses a mouse button, or double-clicks: runs the slots above. Return counts as a double
    // click.
    bool PressMouse(std::int32_t x, std::int32_t y) { return Fire(MouseDown, x, y); }
    void ClickTwice() { Fire(DoubleClick); }

    // The user clicks a check box or presses the space bar on a row: toggles the row's first check box. No
    // effect if the row doesn't exist or has none.
    void ToggleCheck(std::int32_t row);

    // For the view: the number of calls of DeleteAllRows. A change means that nothing the view knows about
    // rows is still true.
    std::int32_t Clearings() const { return clearings_; }
    // For the view: the range of rows whose cells have changed since the last call, `last` included. Added
    // rows are in it. It may reach past the end of the list. It is empty if first > last.
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
    // The row, for writing. Marks it as changed.
    Row& Changing(std::int32_t row, std::int32_t column);
    void MarkRowsChanged(std::int32_t first, std::int32_t last);
    // The rows' indices, in the order by that column.
    std::vector<std::size_t> SortedOrder(std::size_t column) const;

    std::vector<std::string> headings_;
    std::vector<std::string> accessible_headings_;
    std::vector<std::int32_t> widths_;
    std::array<TextAlign, MaxColumns> aligns_{};
    std::string empty_text_;
    SegmentedVector<Row> rows_;
    std::int32_t list_index_ = -1;
    std::int32_t heading_index_ = -1;
    bool sorted_descending_ = false;
    std::int32_t clearings_ = 0;
    RowRange changed_;
};

}  // namespace varnith
