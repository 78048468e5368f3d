#include "app/MainWindow.h"
#include "platform/base/Text.h"
#include "platform/threads/Scheduler.h"
#include "platform/ui/Dialogs.h"
#include "scan/ResultRow.h"

namespace varnith {

// A routine of its own and not the walk without its subfolders: it takes other entries, touches no title,
// and its rows stay out of the results database, which keeps those of the last recursive scan.
void MainWindow::Singlefolder() {
    const Ref<FolderItem> selected = SelectFolder();
    if (!selected) return;
    const Ref<FolderItem> folder = selected->ForWalk(FlatWalk);
    // A folder that has vanished counts as an empty one, and takes the old rows with it.
    const std::int32_t entries = folder->Count();
    Listbox1.DeleteAllRows();
    EditField1.SetText(folder->AbsolutePath());
    // An empty folder leaves the file count and the types of the scan before it.
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
