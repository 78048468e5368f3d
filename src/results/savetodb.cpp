#include "app/MainWindow.h"
#include "platform/database/Database.h"
#include "platform/threads/Scheduler.h"

namespace varnith {

void MainWindow::savetodb() {
    Database database;
    database.SetDatabaseFile(GetFolderItem("varnth"));
    if (!database.Connect()) return;
    // Before the transaction, not inside it: a save that is cut short leaves an empty table, not the rows of
    // an earlier scan.
    database.SQLExecute("delete from preferences where rowid>0");
    database.SQLExecute("begin transaction");
    for (std::int32_t row = 0; row <= Listbox1.ListCount() - 1; ++row) {
        DatabaseRecord record;
        record.SetColumn("name", Listbox1.Cell(row, 1));
        record.SetColumn("pagecount", Listbox1.Cell(row, 2));
        record.SetColumn("filepath", Listbox1.Cell(row, 3));
        record.SetColumn("filetype", Listbox1.Cell(row, 4));
        database.InsertRecord("preferences", record);
        Yield();
    }
    database.SQLExecute("end transaction");
    // Ends the transaction if the statement above has failed. Otherwise none is open and this does nothing.
    database.Commit();
}

}  // namespace varnith
