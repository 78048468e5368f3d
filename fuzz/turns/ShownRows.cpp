#include "ShownRows.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace varnith::test {

bool ShownRows::Scan::Gives(const Row& row) {
    if (!has_begun || has_ended) return false;
    const auto first = rows.begin() + static_cast<std::ptrdiff_t>(std::min(next, rows.size()));
    const auto last = rows.begin() + static_cast<std::ptrdiff_t>(std::min(next + lost + 1, rows.size()));
    const auto found = std::find(first, last, row);
    if (found == last) return false;
    next = static_cast<std::size_t>(found - rows.begin()) + 1;
    lost = 0;
    return true;
}

bool ShownRows::Filter::Gives(const Row& row) {
    std::erase_if(possible, [&](const Rows& rows) { return next >= rows.size() || rows[next] != row; });
    ++next;
    return !possible.empty();
}

void ShownRows::End(const std::string& folder) {
    Look();
    EXPECT_TRUE(scans_[folder].IsWhole()) << folder;
    scans_[folder].has_ended = true;
}

void ShownRows::Kill() {
    for (auto& [folder, scan] : scans_) scan.has_ended = true;
    table_.Kill();
}

void ShownRows::BeginFilter(const std::string& type) {
    Look();
    filter_ = Filter{type, {SavedOf(type)}};
}

void ShownRows::EndFilter(bool at_once) {
    Look();
    const auto is_given = [&](const Rows& rows) { return rows.size() == filter_->next; };
    const auto& possible = filter_->possible;
    if (filter_->has_cleared) {
        EXPECT_TRUE(std::any_of(possible.begin(), possible.end(), is_given)) << "the filter broke off";
        ++filtered;
    } else if (at_once) {
        EXPECT_TRUE(possible[0].empty() || SavedOf(filter_->type).empty()) << "the filter did nothing";
    }
    filter_.reset();
}

void ShownRows::Sort(std::int32_t column) {
    Look();
    const auto rows_with_ticks = [&] {
        std::vector<std::string> rows;
        for (std::size_t i = 0; i < Count(); ++i) {
            const Row row = RowAt(i);
            const bool tick = window->Listbox1.CellCheck(static_cast<std::int32_t>(i), 0);
            rows.push_back(row.text + "|" + row.tag + (tick ? "*" : ""));
        }
        std::sort(rows.begin(), rows.end());
        return rows;
    };
    const auto before = rows_with_ticks();
    window->Listbox1.PressHeading(column);
    EXPECT_EQ(before, rows_with_ticks());
    ++sorts_;
    for (std::size_t i = 0; i < Count(); ++i) shown_[i] = RowAt(i);
}

void ShownRows::Look() {
    if (!window) return;
    Listbox& list = window->Listbox1;
    const Listbox::RowRange changed = list.TakeChangedRows();
    if (list.Clearings() != clearings_) SeeCleared();
    ASSERT_LE(shown_.size(), Count());
    if (changed.first <= changed.last) {
        for (std::size_t i = 0; i < shown_.size(); ++i) EXPECT_EQ(RowAt(i).text, shown_[i].text);
        for (std::size_t i = shown_.size(); i < Count(); ++i) {
            const Row row = RowAt(i);
            const bool is_scanned =
                std::any_of(scans_.begin(), scans_.end(), [&](auto& scan) { return scan.second.Gives(row); });
            EXPECT_TRUE(is_scanned || (filter_ && filter_->Gives(row))) << row.text << " " << row.tag;
            shown_.push_back(row);
        }
    }
    if (window->Refreshes() != refreshes_) SeeFinished();
}

bool ShownRows::IsRunningScan(const std::pair<const std::string, Scan>& scan) {
    return scan.second.on_thread && scan.second.has_begun && !scan.second.has_ended;
}

bool ShownRows::IsRunning() const {
    return std::any_of(scans_.begin(), scans_.end(), IsRunningScan);
}

// The address tells whether it was a scan that has emptied the list. The filter may have done so after it
// since the last look. A scan that goes on may have added a row between the look and the emptying.
void ShownRows::SeeCleared() {
    auto clearings = static_cast<std::size_t>(window->Listbox1.Clearings() - clearings_);
    clearings_ = window->Listbox1.Clearings();
    shown_.clear();
    for (auto& [folder, scan] : scans_) scan.lost += clearings;
    const std::string address = window->EditField1.Text();
    if (address != address_) {
        address_ = address;
        --clearings;
        scans_[address].has_begun = true;
        scans_[address].lost = clearings;
    }
    if (clearings == 0) return;
    ASSERT_EQ(clearings, 1u);
    if (!filter_) return SeeOvertaken();
    filter_->has_cleared = true;
    filter_->possible.push_back(SavedOf(filter_->type));
}

// The scan thread began after the last look, and then the handler of another scan emptied the list and set
// the address. That takes a "Locate" within the dialog of another one.
void ShownRows::SeeOvertaken() {
    const auto waiting = std::find_if(scans_.begin(), scans_.end(), [](const auto& scan) {
        return scan.second.on_thread && !scan.second.has_begun && !scan.second.has_ended;
    });
    ASSERT_NE(waiting, scans_.end()) << "nothing but a scan and the filter empties the list";
    waiting->second.has_begun = true;
    waiting->second.lost = 1;
}

void ShownRows::SeeFinished() {
    refreshes_ = window->Refreshes();
    ++finished;
    const auto scan = std::find_if(scans_.begin(), scans_.end(), IsRunningScan);
    ASSERT_NE(scan, scans_.end()) << "a scan has finished that was killed";
    EXPECT_TRUE(scan->second.IsWhole()) << scan->first;
    scan->second.has_ended = true;
    Save& save = table_.Last();
    EXPECT_EQ(save.commits, save.rows.empty() ? 1 : 2) << scan->first << " has finished and is not saved";
    save.finished = true;
    // The handler of the filter or of another scan may have changed the list since.
    const bool is_alone = std::none_of(scans_.begin(), scans_.end(), [](const auto& other) {
        return other.second.has_begun && !other.second.has_ended;
    });
    if (save.order != Order() || filter_ || !is_alone) return;
    std::vector<std::string> texts;
    for (const Row& row : shown_) texts.push_back(row.text);
    EXPECT_EQ(save.rows, texts);
}

Rows ShownRows::SavedOf(const std::string& type) const {
    Rows rows = table_.Read();
    std::erase_if(rows, [&](const Row& row) { return !type.empty() && !row.text.ends_with("|" + type); });
    return rows;
}

std::size_t ShownRows::Count() const {
    return window ? static_cast<std::size_t>(window->Listbox1.ListCount()) : 0;
}

Row ShownRows::RowAt(std::size_t row) const {
    const Listbox& list = window->Listbox1;
    const auto at = static_cast<std::int32_t>(row);
    return {list.Cell(at, 1) + "|" + list.Cell(at, 2) + "|" + list.Cell(at, 3) + "|" + list.Cell(at, 4),
            list.CellTag(at, 0)};
}

int ShownRows::Order() const {
    return window ? window->Listbox1.Clearings() + sorts_ : 0;
}

}  // namespace varnith::test
