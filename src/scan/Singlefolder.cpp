#include "app/MainWindow.h"
#include "platform/base/Text.h"
#include "platform/threads/Scheduler.h"
#include "platform/ui/Dialogs.h"
#include "scan/ResultRow.h"
#include "scan/ScanInProgress.h"

namespace varnith {

// This is not loadfolder without the subfolders: it takes other entries, leaves the title alone and saves
// nothing, so that the results database keeps the rows of the last recursive scan.
void MainWindow::Singlefolder() {
    const Ref<FolderItem> selected = SelectFolder();
    if (!selected) return;
    const ScanInProgress in_progress(Ref<MainWindow>(this), PointerShape::Wait);
    const Ref<FolderItem> folder = selected->ForWalk(FlatWalk);
    // A folder that has vanished since the choice counts as empty. The old rows go in either case.
    const std::int32_t entries = folder->Count();
    Listbox1.DeleteAllRows();
    EditField1.SetText(folder->AbsolutePath());
    // After an empty folder the file count and the filter's types are still those of the previous scan.
    if (entries <= 0) return;

    PageCount count;
    std::int32_t row_number = 1;
    for (std::int32_t i = 1; i <= entries; ++i) {
        const Ref<FolderItem> item = folder->Item(i);
        const NameParts name(item->DisplayName());
        if (IsTakenFlat(name, item->Visible())) {
            count.Read(item);
            AppendResultRow(Listbox1, *item, name, count, row_number);
            ++row_number;
        }
        Yield();
    }
    StaticText2.SetText(Str(Listbox1.ListCount()) + " file(s)");
    ReadList();
}

}  // namespace varnith
