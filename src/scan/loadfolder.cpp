#include "app/MainWindow.h"
#include "platform/files/FileListMBS.h"
#include "platform/threads/Scheduler.h"
#include "scan/ResultRow.h"

namespace varnith {

void MainWindow::loadfolder(const Ref<FolderItem>& folder) {
    const FileListMBS entries(folder);
    const std::int32_t last = entries.Count() - 1;
    PageCount count;
    // Row numbers restart at 1 in each folder. After a subfolder, its parent goes on from the subfolder's
    // last number.
    k = 1;
    for (std::int32_t i = 0; i <= last; ++i) {
        const Ref<FolderItem> item = entries.Item(i);
        if (entries.Directory(i) && entries.Visible(i)) {
            loadfolder(item);
        } else if (entries.Visible(i)) {
            const NameParts name(item->DisplayName());
            // Shows skipped files as well, so that a long run of them does not look like a standstill.
            SetTitle("Processing Item: " + item->Name());
            if (IsTakenRecursively(name)) {
                count.Read(item);
                AppendResultRow(Listbox1, *item, name, count, k);
                ++k;
            }
        }
        Yield();
    }
}

}  // namespace varnith
