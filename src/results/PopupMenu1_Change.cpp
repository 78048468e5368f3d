#include "app/MainWindow.h"
#include "platform/base/Text.h"
#include "platform/database/Database.h"
#include "platform/threads/Scheduler.h"

namespace varnith {

namespace {

std::string SelectOf(const std::string& type) {
    const std::string all = "select rowid,name, pagecount, filepath, filetype from preferences";
    if (SameText(type, "All")) return all;
    // The type needs no escaping: the popup's entries are spellings of "tif" and "tiff". SQLite takes a text
    // in double quotes as a value where no column has that name (https://sqlite.org/quirks.html, section 8).
    // The comparison is exact, so where "tif" and "TIF" share an entry, only rows with the shown spelling
    // match.
    return all + " where filetype=\"" + type + "\"";
}

void AddRow(Listbox& list, const RecordSet& records) {
    list.AddRow("");
    list.SetCellType(list.LastIndex(), 0, Listbox::TypeCheckBox);
    // Here the tag is the row's id in the table; in the rows of a scan it is the row number. Nothing reads
    // either.
    list.SetCellTag(list.LastIndex(), 0, records.IdxField(1));
    for (std::int32_t column = 1; column <= 4; ++column)
        list.SetCell(list.LastIndex(), column, records.IdxField(column + 1));
}

}  // namespace

void MainWindow::PopupMenu1_Change() {
    Database database;
    database.SetDatabaseFile(GetFolderItem("varnth"));
    if (!database.Connect()) return;
    const auto records = database.SQLSelect(SelectOf(PopupMenu1.Text()));
    if (!records || records->RecordCount() <= 0) return;
    Listbox1.DeleteAllRows();
    while (!records->Eof()) {
        AddRow(Listbox1, *records);
        records->MoveNext();
        Yield();
    }
    // The file count stays that of the scan: it says how many rows there are to filter.
}

}  // namespace varnith
