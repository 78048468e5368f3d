#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/base/Dictionary.h"
#include "platform/files/FolderItem.h"
#include "platform/ui/CheckBox.h"
#include "platform/ui/ContextualMenu.h"
#include "platform/ui/EditField.h"
#include "platform/ui/Listbox.h"
#include "platform/ui/Menu.h"
#include "platform/ui/PopupMenu.h"
#include "platform/ui/PushButton.h"
#include "platform/ui/StaticText.h"
#include "platform/ui/Window.h"

namespace varnith {

class Class1;
class Item;

// The window in which all the work is done. Its frame is here; the methods that belong to a subsystem live
// in that subsystem's folder, as noted. Listbox1 is the program's one store of results: no model stands
// behind it.
class MainWindow : public SingleWindow<MainWindow> {
  public:
    MainWindow();

    // previewon, word and folderdrill are part of the window's interface, and used by nothing in here.
    bool previewon = false;
    std::vector<Ref<Item>> word;
    // The types that occur in the list, each with the rows that have it; nil until the first scan has ended.
    Ref<Dictionary<Ref<Item>>> words;
    bool folderdrill = false;
    // The running row number of the recursive scan, written to the rows' tags. It starts anew in each folder.
    std::int32_t k = 0;

    Listbox Listbox1;
    StaticText StaticText1;
    EditField EditField1;
    PushButton PushButton2;
    StaticText StaticText2;
    CheckBox CheckBox4;
    // The scan thread.
    Ref<Class1> Class11;
    // The list's menu, which ticks.
    ContextualMenu ContextualMenu1;
    PopupMenu PopupMenu1;
    StaticText StaticText16;

    // The entries of the window's menu bar, by name.
    Ref<MenuItem> HelpMenu() const;
    Ref<AppleMenuItem> HelpAbout() const;
    Ref<MenuItem> UntitledSeparator() const;
    Ref<MenuItem> HelpVisitWebsite() const;
    Ref<MenuItem> HelpSupport() const;
    Ref<MenuItem> FileMenu() const;
    Ref<QuitMenuItem> FileQuit() const;
    Ref<MenuItem> FileExport() const;

    void Event_Open() override;
    void Event_Close() override;
    bool Event_KeyDown(const std::string& key) override;

    // In scan/. The press of "Locate": ends a running scan, asks for a folder and scans it, on the thread
    // with "Include Subfolders" ticked, otherwise in this handler.
    void PushButton2_Action();
    // Walks a folder and all below it and appends a row for each file taken. REQUIRES: folder is not nil.
    void loadfolder(const Ref<FolderItem>& folder);
    // Asks for a folder and appends a row for each entry of its own that is taken.
    void Singlefolder();

    // In results/. Rebuilds the type index from the rows and refills the popup with it.
    void ReadList();
    // Hands the type of one row to the index; line_number counts from 1.
    void AddLine(const std::string& line, std::int32_t line_number);
    // Records one occurrence in the index. A word of one character is not recorded.
    void AddWord(const std::string& type, std::int32_t line_number);
    // Replaces what the results database holds by the rows of the list. Failure is silent.
    void savetodb();
    // A press in the list; always false, so the list goes on with it. The contextual one opens the menu
    // first.
    bool Listbox1_MouseDown(std::int32_t x, std::int32_t y);
    // Opens the file of the highlighted row in the desktop's application for it, or says that it isn't there.
    void Listbox1_DoubleClick();
    void ContextualMenu1_Open();
    // Sets the ticks of all rows as the entry of that text says.
    void ContextualMenu1_Action(const std::string& entry);
    // The pick of a type: the list is made anew of the saved rows of that type. Without any it stays.
    void PopupMenu1_Change();

  private:
    void Layout();
    void CreateControls();
    void _CreateControls0();
    // In scan/, so that the window needs nothing of it.
    void CreateScanThread();
    void AddMenuHandlers();
    bool _HelpAbout_Action();
    // In support/.
    bool _HelpSupport_Action();
    bool _HelpVisitWebsite_Action();
    // In export/. Shows the export window.
    bool _FileExport_Action();

    template <class T>
    Ref<T> MenuEntry(const std::string& name) const;
};

}  // namespace varnith
