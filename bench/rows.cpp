#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <sqlite3.h>

#include "bench-window.h"
#include "comparison.h"
#include "export/Exporter.h"
#include "platform/base/Text.h"

// What is done to the rows of a long list after a scan, against the bare work: the same rows selected into a
// vector, ticked in a vector, written from a vector through one buffered stream, and their keys sorted.
//   rows ROWS RUNS
namespace {

using namespace varnith;

struct BareRow {
    std::array<std::string, 5> texts;  // the row's number, then as in the list
    bool ticked = false;
};

void SelectBare(const std::string& database, std::vector<BareRow>& rows) {
    sqlite3* handle = nullptr;
    sqlite3_stmt* select = nullptr;
    sqlite3_open(database.c_str(), &handle);
    const char* query = "select rowid,name, pagecount, filepath, filetype from preferences";
    sqlite3_prepare_v2(handle, query, -1, &select, nullptr);
    rows.clear();
    while (sqlite3_step(select) == SQLITE_ROW) {
        BareRow& row = rows.emplace_back();
        for (int i = 0; i < 5; ++i)
            row.texts[static_cast<std::size_t>(i)] =
                reinterpret_cast<const char*>(sqlite3_column_text(select, i));
    }
    sqlite3_finalize(select);
    sqlite3_close(handle);
}

void WriteBare(const std::vector<BareRow>& rows, const std::string& path, bool as_spreadsheet) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "wb"), std::fclose);
    const auto write = [&](const std::string& text) { std::fwrite(text.data(), 1, text.size(), file.get()); };
    for (const BareRow& row : rows) {
        if (as_spreadsheet) write("\t");
        for (std::size_t i = 1; i < row.texts.size(); ++i) {
            write(row.texts[i]);
            write(as_spreadsheet || i < 4 ? "\t" : "\n");
        }
        if (as_spreadsheet) write("\t\r");
    }
}

void Export(std::int32_t format, const char* separator) {
    Exporter& window = *Exporter::Instance();
    window.PopupMenu1.Pick(window.PopupMenu1.Rows().at(static_cast<std::size_t>(format)));
    window.EditField1.SetText(separator);
    window.PushButton1.Press();
}

void CompareExport(const std::vector<BareRow>& bare, const char* name, std::int32_t format,
                   const char* separator) {
    const std::string path = BenchDesktop::ExportPath();
    Compare(
        name, [&] { Export(format, separator); }, [&] { WriteBare(bare, path, format == 1); });
}

// The keys by which the list sorts a column, as it stands now, each with its row.
using Keys = std::vector<std::pair<std::string, std::int32_t>>;
Keys KeysOf(const Listbox& list, std::int32_t column) {
    Keys keys;
    for (std::int32_t row = 0; row < list.ListCount(); ++row) {
        std::string& key = keys.emplace_back(std::string(), row).first;
        AppendNaturalKey(key, list.Cell(row, column));
        key += list.CellCheck(row, column) ? '1' : '0';
    }
    return keys;
}

// The columns by turns, so that each is sorted rising and finds the rows in the order of another.
void CompareSorting(Listbox& list) {
    for (std::int32_t row = 0; row < list.ListCount(); row += 3) list.SetCellCheck(row, 0, true);
    for (const std::int32_t column : {4, 2, 0, 3, 1}) {
        Keys keys = KeysOf(list, column);
        Compare(
            "sort by column " + std::to_string(column), [&] { list.PressHeading(column); },
            [&] {
                std::stable_sort(keys.begin(), keys.end(),
                                 [](const auto& a, const auto& b) { return a.first < b.first; });
            });
    }
}

void CompareAll(MainWindow& window) {
    std::vector<BareRow> bare;
    Compare(
        "filter by \"All\"", [&] { window.PopupMenu1.Pick("All"); },
        [&] { SelectBare(BenchDesktop::DatabasePath(), bare); });
    Compare(
        "invert the ticks", [&] { window.ContextualMenu1_Action("Invert Selection"); },
        [&] {
            for (BareRow& row : bare) row.ticked = !row.ticked;
        });
    window.ContextualMenu1_Action("Select All");
    CompareExport(bare, "Excel Spreadsheet", 1, "");
    CompareExport(bare, "Text Document", 2, "\t");
    CompareExport(bare, "Tab Delimited", 3, "");
    CompareSorting(window.Listbox1);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: rows ROWS RUNS\n", stderr);
        return 2;
    }
    return WithMainWindow([&](MainWindow& window) {
        Fill(window.Listbox1, std::atoi(argv[1]));
        window.ReadList();
        window.savetodb();
        for (int run = 0; run < std::atoi(argv[2]); ++run) CompareAll(window);
    });
}
