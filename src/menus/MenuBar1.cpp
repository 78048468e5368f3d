#include "menus/MenuBar1.h"

namespace varnith {

namespace {

template <class T>
Ref<T> NewEntry(const char* name, const char* text, const char* shortcut) {
    const auto entry = MakeRef<T>();
    entry->Name = name;
    entry->AutoEnable = true;
    entry->Text = text;
    entry->KeyboardShortcut = shortcut;
    return entry;
}

}  // namespace

MenuBar1::MenuBar1() {
    MenuBar1::Untitled0();
    MenuBar1::Untitled1();
}

Ref<MenuBar1> MenuBar1::Instance() {
    static const auto instance = MakeRef<MenuBar1>();
    return instance;
}

void MenuBar1::Untitled0() {
    AppendMenu("FileMenu", "&File");
    AppendEntry<MenuItem>("FileMenu", "FileExport", "Export");
    AppendEntry<QuitMenuItem>("FileMenu", "FileQuit", "&Quit", "Cmd+Q");
}

void MenuBar1::Untitled1() {
    AppendMenu("HelpMenu", "Help");
    AppendEntry<MenuItem>("HelpMenu", "HelpSupport", "Support");
    AppendEntry<MenuItem>("HelpMenu", "HelpVisitWebsite", "Visit Website");
    AppendEntry<MenuItem>("HelpMenu", "UntitledSeparator", "-");
    AppendEntry<AppleMenuItem>("HelpMenu", "HelpAbout", "About");
}

void MenuBar1::AppendMenu(const char* name, const char* text) {
    Append(NewEntry<MenuItem>(name, text, ""));
}

template <class T>
void MenuBar1::AppendEntry(const char* menu, const char* name, const char* text, const char* shortcut) {
    Child(menu)->Append(NewEntry<T>(name, text, shortcut));
}

}  // namespace varnith
