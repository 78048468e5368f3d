#include "app/MainWindow.h"
#include "platform/base/Text.h"
#include "platform/files/FolderItem.h"
#include "platform/system/DocumentLaunch.h"
#include "platform/threads/Scheduler.h"
#include "platform/ui/Dialogs.h"

namespace varnith {

namespace {

// Ticks each row or not, as the rule says for its place. Rows that a scan adds meanwhile are set too.
template <class Rule>
void TickAll(Listbox& list, Rule&& rule) {
    for (std::int32_t row = 0; row <= list.ListCount() - 1; ++row) {
        list.SetCellCheck(row, 0, rule(row));
        Yield();
    }
}

}  // namespace

bool MainWindow::Listbox1_MouseDown(std::int32_t /*x*/, std::int32_t /*y*/) {
    if (IsContextualClick()) ContextualMenu1.Open();
    return false;
}

// Without a highlighted row, or with its folder gone, this raises an exception and so ends without a word:
// there is no file to say of that it was not found.
void MainWindow::Listbox1_DoubleClick() {
    const auto folder = GetFolderItem(Listbox1.Cell(Listbox1.ListIndex(), 3));
    const auto file = folder->Child(Listbox1.Cell(Listbox1.ListIndex(), 1));
    if (file && file->Exists())
        LaunchDocument(file, true);
    else
        MsgBox("File not found");
}

void MainWindow::ContextualMenu1_Open() {
    ContextualMenu1.AddRow("Select All");
    ContextualMenu1.AddRow("Unselect All");
    ContextualMenu1.AddSeparator();
    ContextualMenu1.AddRow("Invert Selection");
}

void MainWindow::ContextualMenu1_Action(const std::string& entry) {
    if (SameText(entry, "Select All")) TickAll(Listbox1, [](std::int32_t) { return true; });
    if (SameText(entry, "Unselect All")) TickAll(Listbox1, [](std::int32_t) { return false; });
    if (SameText(entry, "Invert Selection"))
        TickAll(Listbox1, [this](std::int32_t row) { return !Listbox1.CellCheck(row, 0); });
}

}  // namespace varnith
