#pragma once

#include <cstdint>
#include <string>

#include "platform/files/FolderItem.h"
#include "platform/ui/EditField.h"
#include "platform/ui/PopupMenu.h"
#include "platform/ui/PushButton.h"
#include "platform/ui/StaticText.h"
#include "platform/ui/Window.h"

namespace varnith {

// The window in which the user chooses an export format and saves the main window's list. The main window can
// be used while it is open. A save closes it, and its settings are not kept.
class Exporter : public SingleWindow<Exporter> {
  public:
    Exporter();

    StaticText StaticText1;
    PopupMenu PopupMenu1;
    StaticText StaticText2;
    // The separator for "Text Document". The other formats ignore it.
    EditField EditField1;
    PushButton PushButton1;

    void Event_Open() override;
    bool Event_KeyDown(const std::string& key) override;

    // Handles a press of "Save": asks for the file, writes it, opens its folder and closes the window. The
    // window stays open if no format is chosen, if the user cancels, and if the file can't be created; a
    // spreadsheet that can't be created also raises NilObjectException.
    void PushButton1_Action();

  private:
    // The formats, by their index in PopupMenu1.
    enum Format : std::int32_t { SelectType, ExcelSpreadsheet, TextDocument, TabDelimited };

    // Writes the list to the file. If the file can't be created it returns false for a text, and raises
    // NilObjectException for a spreadsheet.
    bool Write(Format format, const Ref<FolderItem>& file) const;
};

}  // namespace varnith
