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

// The window in which the user picks an export format and saves the main window's list in it. It stands
// beside the main window, which can be used meanwhile. A save closes it; nothing of it is kept.
class Exporter : public SingleWindow<Exporter> {
  public:
    Exporter();

    StaticText StaticText1;
    PopupMenu PopupMenu1;
    StaticText StaticText2;
    // The separator of "Text Document"; the other formats have their own.
    EditField EditField1;
    PushButton PushButton1;

    void Event_Open() override;
    bool Event_KeyDown(const std::string& key) override;

    // The press of "Save": asks for the file, writes it, opens its folder and closes the window. Without a
    // format, without a file, and with one that can't be made, nothing happens and the window stays.
    void PushButton1_Action();

  private:
    // The places of the formats in PopupMenu1.
    enum Format : std::int32_t { SelectType, ExcelSpreadsheet, TextDocument, TabDelimited };

    // Writes the list. False for a text file that can't be made; the spreadsheet raises NilObjectException.
    bool Write(Format format, const Ref<FolderItem>& file) const;
};

}  // namespace varnith
