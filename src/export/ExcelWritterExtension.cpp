#include "export/ExcelWritterExtension.h"

#include "app/MainWindow.h"
#include "platform/threads/Scheduler.h"

namespace varnith {

void ExcelWritterExtension::saveAsExcelFile(const Listbox& list, const Ref<FolderItem>& file) {
    if (!file) return;
    const auto stream = file->CreateBinaryFile("excel");
    // The main window's columns and not the list's: every list is written in the form of the results.
    const std::int32_t bound = MainWindow::Instance()->Listbox1.ColumnCount();
    for (std::int32_t row = 0; row <= list.ListCount() - 1; ++row) {
        // Up to and including the bound, so each row ends in an empty field, which readers of these files
        // know.
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
