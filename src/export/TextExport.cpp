#include "export/TextExport.h"

#include "platform/threads/Scheduler.h"

namespace varnith {

bool SaveAsText(const Listbox& list, const Ref<FolderItem>& file, const std::string& separator) {
    const auto stream = file->CreateTextFile();
    if (!stream) return false;
    for (std::int32_t row = 0; row <= list.ListCount() - 1; ++row) {
        if (list.CellCheck(row, 0))
            stream->WriteLine(list.Cell(row, 1) + separator + list.Cell(row, 2) + separator +
                              list.Cell(row, 3) + separator + list.Cell(row, 4));
        Yield();
    }
    stream->Close();
    return true;
}

}  // namespace varnith
