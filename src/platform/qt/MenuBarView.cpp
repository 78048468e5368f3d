#include "platform/qt/MenuBarView.h"

#include <QMenu>
#include <string_view>

#include "platform/ui/Application.h"

namespace varnith {

namespace {

// "Cmd+" in a shortcut means the Control key here.
QKeySequence ToKeySequence(const std::string& shortcut) {
    constexpr std::string_view Command = "Cmd+";
    if (!shortcut.starts_with(Command)) return {};
    return QKeySequence(QString::fromStdString("Ctrl+" + shortcut.substr(Command.size())));
}

void AddShortcutsOf(const MenuItem& menus, QWidget& window) {
    for (const Ref<MenuItem>& item : menus.Items()) {
        AddShortcutsOf(*item, window);
        if (item->KeyboardShortcut.empty()) continue;
        auto* action = new QAction(&window);
        action->setShortcut(ToKeySequence(item->KeyboardShortcut));
        QObject::connect(action, &QAction::triggered, &window,
                         [item] { Application::Current().Choose(item); });
        window.addAction(action);
    }
}

}  // namespace

MenuBarView::MenuBarView(const Ref<MenuBar>& menus, QMenuBar& bar) {
    for (const Ref<MenuItem>& menu : menus->Items()) {
        QMenu* shown = bar.addMenu(QString::fromStdString(menu->Text));
        QObject::connect(shown, &QMenu::aboutToShow, &connections_, [this] { UpdateEnabled(); });
        Fill(menu, *shown);
    }
    UpdateEnabled();
}

void MenuBarView::Fill(const Ref<MenuItem>& items, QMenu& menu) {
    for (const Ref<MenuItem>& item : items->Items()) {
        if (item->IsSeparator()) {
            menu.addSeparator();
            continue;
        }
        QAction* action = menu.addAction(QString::fromStdString(item->Text));
        action->setShortcut(ToKeySequence(item->KeyboardShortcut));
        // Keeps Qt from moving entries such as Quit to an application menu, if the desktop has one.
        action->setMenuRole(QAction::NoRole);
        QObject::connect(action, &QAction::triggered, &connections_,
                         [item] { Application::Current().Choose(item); });
        entries_.emplace_back(item, action);
    }
}

void MenuBarView::AddShortcuts(QWidget& window) {
    if (const Ref<MenuBar> bar = Application::Current().MenuBar()) AddShortcutsOf(*bar, window);
}

void MenuBarView::UpdateEnabled() {
    for (const auto& [item, action] : entries_) action->setEnabled(Application::Current().IsEnabled(*item));
}

}  // namespace varnith
