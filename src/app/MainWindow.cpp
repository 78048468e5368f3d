#include "app/MainWindow.h"

#include "menus/MenuBar1.h"
#include "platform/system/SystemInformationMBS.h"
#include "platform/ui/Application.h"
#include "platform/ui/Keyboard.h"

namespace varnith {

MainWindow::MainWindow() {
    Layout();
    CreateControls();
    AddMenuHandlers();
}

void MainWindow::Layout() {
    SetTitle(" ");
    SetDesignSize(774, 670);
    SetStyle({.MinWidth = 774, .MinHeight = 670});
    SetMenuBar(MenuBar1::Instance());
}

void MainWindow::CreateControls() {
    _CreateControls0();
}

void MainWindow::_CreateControls0() {
    const Locks top_left{.Left = true, .Top = true};
    const Locks top_right{.Top = true, .Right = true};
    const Locks bottom_left{.Left = true, .Bottom = true};
    const Locks bottom_right{.Right = true, .Bottom = true};

    AddControl(Listbox1, {7, 38, 754, 601}, {.Left = true, .Top = true, .Right = true, .Bottom = true}, 0);
    Listbox1.SetColumns(" \tName\tCount\tPath\tType", "30,,65,,55");
    Listbox1.SetAccessibleName("Files");
    Listbox1.SetAccessibleHeading(0, "Ticked");
    Listbox1.SetColumnAlign(2, TextAlign::Right);
    Listbox1.SetEmptyText(EmptyListText);
    Listbox1.MouseDown = [this](std::int32_t x, std::int32_t y) { return Listbox1_MouseDown(x, y); };
    Listbox1.DoubleClick = [this] { Listbox1_DoubleClick(); };

    AddControl(StaticText1, {9, 8, 56, 20}, top_left, 2);
    StaticText1.SetText("Address:");
    StaticText1.SetLabelled(EditField1);

    AddControl(EditField1, {72, 7, 438, 22}, {.Left = true, .Top = true, .Right = true}, 3);
    EditField1.SetReadOnly(true);
    EditField1.SetBlackOnWhite(true);

    AddControl(PushButton2, {686, 6, 80, 20}, top_right, 4);
    PushButton2.SetCaption("Locate");
    PushButton2.Action = [this] { PushButton2_Action(); };

    AddControl(StaticText2, {624, 643, 132, 20}, bottom_right, 5);
    StaticText2.SetTextAlign(TextAlign::Right);

    AddControl(CheckBox4, {10, 645, 147, 20}, bottom_left, 8);
    CheckBox4.SetCaption("Include Subfolders");

    CreateScanThread();

    ContextualMenu1.Place(*this, {}, {}, 0);
    ContextualMenu1.Action = [this](const std::string& entry) { ContextualMenu1_Action(entry); };
    ContextualMenu1_Open();

    AddControl(PopupMenu1, {560, 7, 114, 20}, top_right, 12);
    PopupMenu1.Change = [this] { PopupMenu1_Change(); };

    AddControl(StaticText16, {515, 7, 40, 20}, top_right, 13);
    StaticText16.SetText("Filter:");
    StaticText16.SetLabelled(PopupMenu1);
    StaticText16.SetTextAlign(TextAlign::Right);

    for (Control* control : Controls()) control->SetTextSize(SystemTextSize);
    StaticText2.SetTextSize(0);
}

void MainWindow::Event_Open() {
    CentreOnScreen();
    SetTitle("Varnith - " + SystemInformationMBS::OSName());
}

void MainWindow::Event_Close() {
    Quit(0);
}

bool MainWindow::Event_KeyDown(const std::string& key) {
    if (Keyboard::IsCloseShortcut(key)) {
        Close();
        // Event_Close has already quit the program. A second Quit has no effect.
        Quit(0);
    }
    return false;
}

}  // namespace varnith
