#pragma once

#include "platform/files/FolderItem.h"
#include "platform/ui/Listbox.h"

namespace varnith {

// The spreadsheet export of a list.
class ExcelWritterExtension {
  public:
    // Writes all rows of a list, ticked or not, as text that spreadsheet programs open. A row is the text of
    // each column and one empty field, each followed by a tab, and then a carriage return. Nothing is quoted.
    // Replaces an existing file. Threads run between the cells; each cell has the text of the moment when it
    // is written. Does nothing if the file is nil. Raises NilObjectException if the file can't be created.
    // Errors in writing are not reported; OutputFile::Anew tells what they leave of an existing file.
    static void saveAsExcelFile(const Listbox& list, const Ref<FolderItem>& file);
};

}  // namespace varnith
