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

// The main window. app/ implements its layout, keys and menus. The methods of a subsystem are implemented in
// that subsystem's folder, as noted below. Listbox1 is the only store of the results: there is no separate
// model.
class MainWindow : public SingleWindow<MainWindow> {
  public:
    MainWindow();

    // What the empty list says while no scan runs.
    static constexpr const char* EmptyListText = "Press \"Locate\" and choose a folder.";

    // Nothing in the program uses previewon, word and folderdrill. They are part of the window's interface.
    bool previewon = false;
    std::vector<Ref<Item>> word;

    // The type index: each file type in the list, with the rows that have it. Nil until the first scan has
    // ended.
    Ref<Dictionary<Ref<Item>>> words;
    bool folderdrill = false;
    // The number that the recursive scan writes into the tag of the next row. Each folder sets it to 1.
    std::int32_t k = 0;

    Listbox Listbox1;
    StaticText StaticText1;
    EditField EditField1;
    PushButton PushButton2;
    StaticText StaticText2;
    CheckBox CheckBox4;
    // The scan thread.
    Ref<Class1> Class11;
    // The list's context menu, which ticks and unticks all rows.
    ContextualMenu ContextualMenu1;
    PopupMenu PopupMenu1;
    StaticText StaticText16;

    // The entries of the menu bar. Nil for one that the bar does not have.
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

    // Implemented in scan/.

    // Handles a press of "Locate": ends a running scan, asks for a folder and scans it. With "Include
    // Subfolders" ticked the scan runs on the scan thread, otherwise in this handler.
    void PushButton2_Action();
    // The recursive scan: appends a row for each file that it takes in the folder and below it.
    // REQUIRES: folder is not nil (NilObjectException).
    void loadfolder(const Ref<FolderItem>& folder);
    // The flat scan: asks for a folder and replaces the list by a row for each entry that it takes.
    void Singlefolder();

    // Implemented in results/.

    // Rebuilds the type index from the rows and fills the filter popup with its types.
    void ReadList();
    // Adds the type of one row to the type index. line_number is the row's number, from 1.
    void AddLine(const std::string& line, std::int32_t line_number);
    // Adds one occurrence of a type to the type index. Does nothing for a type of fewer than two characters.
    // REQUIRES: `words` is not nil (NilObjectException).
    void AddWord(const std::string& type, std::int32_t line_number);
    // Replaces the rows of the results database by those of the list. Failures are silent.
    void savetodb();
    // Handles a press in the list, with x and y in pixels from its top left. Opens the context menu if the
    // press asks for it. Always returns false, so that the list handles the press as well.
    bool Listbox1_MouseDown(std::int32_t x, std::int32_t y);
    // Opens the file of the highlighted row in the desktop's application for it, or shows "File not found".
    // Raises OutOfBoundsException if no row is highlighted, and NilObjectException if the file's folder is
    // gone.
    void Listbox1_DoubleClick();
    // Fills the context menu.
    void ContextualMenu1_Open();
    // Ticks, unticks or inverts all rows. `entry` is the text of the chosen menu entry.
    void ContextualMenu1_Action(const std::string& entry);
    // Handles a pick in the filter: replaces the list by the saved rows of the picked type. The list stays as
    // it is if there are none or the database can't be read.
    void PopupMenu1_Change();

  private:
    void Layout();
    void CreateControls();
    void _CreateControls0();
    // Implemented in scan/, so that app/ does not depend on scan/.
    void CreateScanThread();
    void AddMenuHandlers();
    // The handlers of the menu entries. Each returns true: the command is handled.
    bool _HelpAbout_Action();
    // Implemented in support/.
    bool _HelpSupport_Action();
    bool _HelpVisitWebsite_Action();
    // Implemented in export/.
    bool _FileExport_Action();

    template <class T>
    Ref<T> MenuEntry(const std::string& name) const;
};

}  // namespace varnith
