#pragma once

#include "platform/files/FolderItem.h"
#include "platform/ui/Listbox.h"

namespace varnith {

// What lists can do for the export as a spreadsheet.
class ExcelWritterExtension {
  public:
    // Writes all rows of a list, ticked or not, to a file that spreadsheet programs open, made anew: the
    // texts of the columns, each followed by a tab, then one empty field more, and a carriage return behind
    // each row. Nothing is quoted. The list is read as it stands at each cell, whatever becomes of it
    // meanwhile. A nil file does nothing; one that can't be made raises NilObjectException.
    static void saveAsExcelFile(const Listbox& list, const Ref<FolderItem>& file);
};

}  // namespace varnith
