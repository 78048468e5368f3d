#include "app/MainWindow.h"
#include "export/Exporter.h"

namespace varnith {

bool MainWindow::_FileExport_Action() {
    Exporter::Instance()->Show();
    return true;
}

}  // namespace varnith
