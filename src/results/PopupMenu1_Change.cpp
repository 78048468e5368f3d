#include "app/MainWindow.h"
#include "platform/base/Text.h"
#include "platform/database/Database.h"
#include "platform/threads/Scheduler.h"

namespace varnith {

namespace {

std::string SelectOf(const std::string& type) {
    const std::string all = "select rowid,name, pagecount, filepath, filetype from preferences";
    if (SameText(type, "All")) return all;
    // As it stands and in double quotes: the entries of the popup are spellings of two words. The comparison
    // is exact, so of spellings that share an entry only the one shown is found.
    return all + " where filetype=\"" + type + "\"";
}

void AddRow(Listbox& list, const RecordSet& records) {
    list.AddRow("");
    list.SetCellType(list.LastIndex(), 0, Listbox::TypeCheckBox);
    // The row's place in the table, and not in the scan as other rows have it; no row is found by either.
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
    // The file count stays that of the scan: it tells what there is to filter.
}

}  // namespace varnith
