#pragma once

#include <string>

#include "platform/files/FolderItem.h"
#include "platform/ui/Listbox.h"

namespace varnith {

// Writes the ticked rows of a list to a text file, which is made anew: a line a row, the texts of columns 1
// to 4 with the separator between them. Nothing is quoted. The list is read as it stands at each row,
// whatever becomes of it meanwhile. False, with nothing done, if the file can't be made; errors in writing
// are not looked at. REQUIRES: file is not nil.
bool SaveAsText(const Listbox& list, const Ref<FolderItem>& file, const std::string& separator);

}  // namespace varnith
