#include "export/ExcelWritterExtension.h"

#include "app/MainWindow.h"
#include "platform/threads/Scheduler.h"

namespace varnith {

void ExcelWritterExtension::saveAsExcelFile(const Listbox& list, const Ref<FolderItem>& file) {
    if (!file) return;
    const auto stream = file->CreateBinaryFile("excel");
    // The main window's number of columns, not that of `list`: every list is written in the form of the
    // results.
    const std::int32_t bound = MainWindow::Instance()->Listbox1.ColumnCount();
    for (std::int32_t row = 0; row <= list.ListCount() - 1; ++row) {
        // One column more than the list has: each row ends in an empty field, as readers of these files
        // expect.
        for (std::int32_t column = 0; column <= bound; ++column) {
            stream->Write(list.Cell(row, column) + "\t");
            Yield();
        }
        stream->Write("\r");
        Yield();
    }
    stream->Close();
}

}  // namespace varnith
