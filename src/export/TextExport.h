#pragma once

#include <string>

#include "platform/files/FolderItem.h"
#include "platform/ui/Listbox.h"

namespace varnith {

// Writes the ticked rows of a list to a text file. A row is a line: the texts of columns 1 to 4 with the
// separator between them, ended by a line feed. Nothing is quoted. Replaces an existing file. Threads run
// between the rows; each row has the texts of the moment when it is written. Returns false if the file can't
// be created. Errors in writing are not reported; OutputFile::Anew tells what they leave of an existing
// file. REQUIRES: file is not nil (NilObjectException).
bool SaveAsText(const Listbox& list, const Ref<FolderItem>& file, const std::string& separator);

}  // namespace varnith
