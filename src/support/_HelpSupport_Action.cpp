#include "app/MainWindow.h"
#include "support/SupportWindow.h"

namespace varnith {

bool MainWindow::_HelpSupport_Action() {
    SupportWindow::Instance()->Show();
    return true;
}

}  // namespace varnith
