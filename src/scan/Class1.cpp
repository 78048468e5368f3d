#include "scan/Class1.h"

#include "app/MainWindow.h"
#include "platform/base/Text.h"
#include "platform/system/SystemInformationMBS.h"
#include "scan/ResultRow.h"
#include "scan/ScanInProgress.h"

namespace varnith {

void Class1::Event_Run() {
    if (!f) return;
    const auto window = MainWindow::Instance();
    const ScanInProgress in_progress(window, PointerShape::Busy);
    window->EditField1.SetText(f->AbsolutePath());
    window->Listbox1.DeleteAllRows();
    window->loadfolder(f->ForWalk(RecursiveWalk));
    window->ReadList();
    window->savetodb();
    window->SetTitle("Varnith - " + SystemInformationMBS::OSName() + " - Finished");
    window->Refresh(true);
    window->StaticText2.SetText(Str(window->Listbox1.ListCount()) + " file(s)");
}

}  // namespace varnith
