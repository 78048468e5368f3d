#include "app/MainWindow.h"
#include "platform/files/FileListMBS.h"
#include "platform/threads/Scheduler.h"
#include "scan/ResultRow.h"

namespace varnith {

void MainWindow::loadfolder(const Ref<FolderItem>& folder) {
    const FileListMBS entries(folder);
    const std::int32_t last = entries.Count() - 1;
    PageCount count;
    // Each folder numbers its rows from 1, and the folder above goes on from where the one below it ended.
    k = 1;
    for (std::int32_t i = 0; i <= last; ++i) {
        const Ref<FolderItem> item = entries.Item(i);
        if (entries.Directory(i) && entries.Visible(i)) {
            loadfolder(item);
        } else if (entries.Visible(i)) {
            const NameParts name(item->DisplayName());
            // Files that aren't taken show too: a long way through them is no standstill.
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
