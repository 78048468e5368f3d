#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <sqlite3.h>

#include "bench-window.h"
#include "comparison.h"

// Measures the save at the end of a scan, compared with the same statements without the program: one prepared
// insert, in one transaction, after the delete of the existing rows.
//   save ROWS RUNS
namespace {

using namespace varnith;

using BareRow = std::array<std::string, 4>;

std::vector<BareRow> RowsOf(const Listbox& list) {
    std::vector<BareRow> rows;
    rows.reserve(static_cast<std::size_t>(list.ListCount()));
    for (std::int32_t row = 0; row < list.ListCount(); ++row)
        rows.push_back({list.Cell(row, 1), list.Cell(row, 2), list.Cell(row, 3), list.Cell(row, 4)});
    return rows;
}

void SaveBare(const std::string& path, const std::vector<BareRow>& rows) {
    sqlite3* handle = nullptr;
    sqlite3_stmt* insert = nullptr;
    sqlite3_open(path.c_str(), &handle);
    const auto run = [&](const char* statement) {
        sqlite3_exec(handle, statement, nullptr, nullptr, nullptr);
    };
    run("delete from preferences where rowid>0");
    run("begin transaction");
    sqlite3_prepare_v2(handle,
                       "insert into preferences (name, pagecount, filepath, filetype) values (?, ?, ?, ?)",
                       -1, &insert, nullptr);
    for (const BareRow& row : rows) {
        for (int i = 0; i < 4; ++i) {
            const std::string& text = row[static_cast<std::size_t>(i)];
            sqlite3_bind_text(insert, i + 1, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
        }
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    run("end transaction");
    sqlite3_close(handle);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: save ROWS RUNS\n", stderr);
        return 2;
    }
    return WithMainWindow([&](MainWindow& window) {
        Fill(window.Listbox1, std::atoi(argv[1]));
        const std::vector<BareRow> rows = RowsOf(window.Listbox1);
        window.savetodb();
        for (int run = 0; run < std::atoi(argv[2]); ++run)
            Compare(
                "save", [&] { window.savetodb(); }, [&] { SaveBare(BenchDesktop::DatabasePath(), rows); });
    });
}
