#include "app/MainWindow.h"
#include "platform/ui/Dialogs.h"
#include "scan/Class1.h"

namespace varnith {

void MainWindow::CreateScanThread() {
    Class11 = MakeRef<Class1>();
    Class11->Priority = 5;
    Class11->StackSize = 0;
}

void MainWindow::PushButton2_Action() {
    // This is also the user's only way to stop a scan. It stays stopped even if the user cancels the dialog.
    Class11->Kill();
    if (!CheckBox4.Value()) {
        Singlefolder();
        return;
    }
    const Ref<FolderItem> folder = SelectFolder();
    if (!folder || !folder->Exists()) return;
    Class11->f = folder;
    Class11->Run();
}

}  // namespace varnith
