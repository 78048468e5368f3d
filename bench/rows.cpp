#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sqlite3.h>

#include "app/MainWindow.h"
#include "app/Start.h"
#include "export/Exporter.h"
#include "platform/ui/Desktop.h"

// What is done to the rows of a long list after a scan, against the bare work: the same rows selected into a
// vector, ticked in a vector, and written from a vector through one buffered stream. The best of some runs,
// taken in turns; it measures and asserts nothing.  rows [ROWS [RUNS]]
namespace {

using namespace varnith;

struct BareRow {
    std::array<std::string, 5> texts;  // the row's number, then as in the list
    bool ticked = false;
};

void Fill(Listbox& list, int rows) {
    for (int row = 0; row < rows; ++row) {
        list.AddRow("");
        list.SetCellType(row, 0, Listbox::TypeCheckBox);
        list.SetCell(row, 1, "invoice " + std::to_string(row) + ".tif");
        list.SetCell(row, 2, std::to_string(row % 40));
        list.SetCell(row, 3, "/home/someone/Documents/archive/box " + std::to_string(row / 500));
        list.SetCell(row, 4, "tif");
    }
}

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

double SecondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The least time of each counts: what else the machine does only adds to it.
void Compare(const char* name, int runs, const std::function<void()>& work,
             const std::function<void()>& bare) {
    double seconds = SecondsOf(work);
    double bare_seconds = SecondsOf(bare);
    for (int run = 1; run < runs; ++run) {
        seconds = std::min(seconds, SecondsOf(work));
        bare_seconds = std::min(bare_seconds, SecondsOf(bare));
    }
    std::printf("%-20s %8.3f %8.3f %8.2f\n", name, seconds, bare_seconds, seconds / bare_seconds);
}

void Export(std::int32_t format, const char* separator) {
    Exporter& window = *Exporter::Instance();
    window.PopupMenu1.Pick(window.PopupMenu1.Rows().at(static_cast<std::size_t>(format)));
    window.EditField1.SetText(separator);
    window.PushButton1.Press();
}

class BenchDesktop : public Desktop {
  public:
    BenchDesktop(int rows, int runs) : rows_(rows), runs_(runs) {}

    std::optional<std::string> ChooseFileToWrite(const std::string&, const std::string&) override {
        return export_;
    }
    int RunEventLoop() override {
        MainWindow& window = *MainWindow::Instance();
        Fill(window.Listbox1, rows_);
        window.ReadList();
        window.savetodb();
        CompareAll(window);
        std::remove(export_.c_str());
        std::remove(database_.c_str());
        return 0;
    }

  private:
    void CompareAll(MainWindow& window) {
        std::vector<BareRow> bare;
        std::printf("%-20s %8s %8s %8s\n", "", "seconds", "bare", "ratio");
        Compare(
            "filter by \"All\"", runs_, [&] { window.PopupMenu1.Pick("All"); },
            [&] { SelectBare(database_, bare); });
        Compare(
            "invert the ticks", runs_, [&] { window.ContextualMenu1_Action("Invert Selection"); },
            [&] {
                for (BareRow& row : bare) row.ticked = !row.ticked;
            });
        window.ContextualMenu1_Action("Select All");
        Compare(
            "Excel Spreadsheet", runs_, [] { Export(1, ""); }, [&] { WriteBare(bare, export_, true); });
        Compare(
            "Text Document", runs_, [] { Export(2, "\t"); }, [&] { WriteBare(bare, export_, false); });
        Compare(
            "Tab Delimited", runs_, [] { Export(3, ""); }, [&] { WriteBare(bare, export_, false); });
    }

    const int rows_;
    const int runs_;
    const std::string export_ = GetFolderItem("export")->AbsolutePath();
    const std::string database_ = GetFolderItem("varnth")->AbsolutePath();
};

}  // namespace

int main(int argc, char** argv) {
    BenchDesktop desktop(argc > 1 ? std::atoi(argv[1]) : 1'000'000, argc > 2 ? std::atoi(argv[2]) : 5);
    const Desktop::InForce in_force(desktop);
    return _Main();
}
