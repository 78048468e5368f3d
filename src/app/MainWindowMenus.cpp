#include "BuildSettings.h"
#include "app/MainWindow.h"
#include "menus/About.h"
#include "platform/ui/Dialogs.h"

namespace varnith {

template <class T>
Ref<T> MainWindow::MenuEntry(const std::string& name) const {
    return Ref<T>::As(MenuBar()->Child(name));
}

Ref<MenuItem> MainWindow::HelpMenu() const {
    return MenuEntry<MenuItem>("HelpMenu");
}

Ref<AppleMenuItem> MainWindow::HelpAbout() const {
    return MenuEntry<AppleMenuItem>("HelpAbout");
}

Ref<MenuItem> MainWindow::UntitledSeparator() const {
    return MenuEntry<MenuItem>("UntitledSeparator");
}

Ref<MenuItem> MainWindow::HelpVisitWebsite() const {
    return MenuEntry<MenuItem>("HelpVisitWebsite");
}

Ref<MenuItem> MainWindow::HelpSupport() const {
    return MenuEntry<MenuItem>("HelpSupport");
}

Ref<MenuItem> MainWindow::FileMenu() const {
    return MenuEntry<MenuItem>("FileMenu");
}

Ref<QuitMenuItem> MainWindow::FileQuit() const {
    return MenuEntry<QuitMenuItem>("FileQuit");
}

Ref<MenuItem> MainWindow::FileExport() const {
    return MenuEntry<MenuItem>("FileExport");
}

void MainWindow::AddMenuHandlers() {
    AddMenuHandler("HelpAbout", [this] { return _HelpAbout_Action(); });
    AddMenuHandler("HelpSupport", [this] { return _HelpSupport_Action(); });
    AddMenuHandler("FileExport", [this] { return _FileExport_Action(); });
    AddMenuHandler("HelpVisitWebsite", [this] { return _HelpVisitWebsite_Action(); });
}

bool MainWindow::_HelpAbout_Action() {
    About::Instance()->Show();
    return true;
}

bool MainWindow::_HelpVisitWebsite_Action() {
    ShowURL("http://" + BuildSettings::WebServer);
    return true;
}

}  // namespace varnith
