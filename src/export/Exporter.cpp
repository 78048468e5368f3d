#include "export/Exporter.h"

#include "app/MainWindow.h"
#include "export/ExcelWritterExtension.h"
#include "export/TextExport.h"
#include "platform/files/FileType.h"
#include "platform/system/DocumentLaunch.h"
#include "platform/ui/Dialogs.h"
#include "platform/ui/Keyboard.h"

namespace varnith {

Exporter::Exporter() {
    SetTitle("Export");
    SetDesignSize(253, 179);
    SetStyle({.Resizeable = false,
              .MaximizeButton = false,
              .MinimizeButton = false,
              .EscapeCloses = true,
              .WhiteBackground = true});

    AddControl(StaticText1, {21, 14, 72, 20}, {}, 1);
    StaticText1.SetText("Type:");
    StaticText1.SetLabelled(PopupMenu1);

    AddControl(PopupMenu1, {22, 40, 211, 20}, {}, 4);
    for (const char* entry : {"Select Type", "Excel Spreadsheet", "Text Document", "Tab Delimited"})
        PopupMenu1.AddRow(entry);
    PopupMenu1.SetListIndex(SelectType);

    AddControl(StaticText2, {22, 72, 75, 20}, {}, 3);
    StaticText2.SetText("Separator:");
    StaticText2.SetLabelled(EditField1);

    AddControl(EditField1, {22, 97, 127, 22}, {}, 2);

    // Has the popup's tab index and was added after it, so Tab goes from the popup to this button.
    AddControl(PushButton1, {88, 131, 80, 20}, {}, 4);
    PushButton1.SetCaption("Save");
    PushButton1.SetDefault(true);
    PushButton1.Action = [this] { PushButton1_Action(); };
}

void Exporter::Event_Open() {
    CentreOnScreen();
}

bool Exporter::Event_KeyDown(const std::string& key) {
    if (Keyboard::IsCloseShortcut(key)) Close();
    return false;
}

void Exporter::PushButton1_Action() {
    const auto format = static_cast<Format>(PopupMenu1.ListIndex());
    if (format < ExcelSpreadsheet || format > TabDelimited) return;
    const FileType type =
        format == ExcelSpreadsheet ? FileType{".xls", "Excel Spreadsheet"} : FileType{".txt", "Text Export"};
    const auto file = GetSaveFolderItem(type.Text(), "Varnith" + type.Extensions);
    if (!file || !Write(format, file)) return;
    LaunchDocument(file->Parent(), true);
    Close();
}

bool Exporter::Write(Format format, const Ref<FolderItem>& file) const {
    const Listbox& list = MainWindow::Instance()->Listbox1;
    if (format != ExcelSpreadsheet)
        return SaveAsText(list, file, format == TabDelimited ? "\t" : EditField1.Text());
    ExcelWritterExtension::saveAsExcelFile(list, file);
    return true;
}

}  // namespace varnith
