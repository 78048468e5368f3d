#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"
#include "platform/files/ReadAhead.h"
#include "platform/ui/Listbox.h"

namespace varnith {

// An entry's name taken apart, by the name that the desktop shows.
struct NameParts {
    explicit NameParts(std::string_view display_name);

    std::int32_t fields;    // the number of pieces between dots
    std::string extension;  // behind the last dot, spelled as in the name; the whole name without a dot
};

// What is taken by a recursive scan: .tif and .tiff files, and a file named just tiff.
// The two scans differ here on purpose: those who rely on either know what it takes.
bool IsTakenRecursively(const NameParts& name);

// What is taken by a flat scan: visible .tiff entries, .tif entries and one named just tif, visible or not.
// Folders are entries too, and show as rows.
bool IsTakenFlat(const NameParts& name, bool visible);

// What the walk of each scan does with the entries of a folder.
extern const WalkPlan RecursiveWalk;
extern const WalkPlan FlatWalk;

// The page count of the files of one folder, as a scan goes through them. A file that can't be opened leaves
// the count as the file before it set it: the list shows a damaged file with its neighbour's count, and with
// 0 when there was none, and has done so ever since.
class PageCount {
  public:
    // Opens a taken file and reads its count. This is the one place where a scan asks for a file.
    void Read(const Ref<FolderItem>& item);

    // The count as the row shows it.
    std::string Text() const;

  private:
    std::int32_t count_ = 0;
};

// Appends the row of a taken file. The row number goes into the tag; no row is found by it.
void AppendResultRow(Listbox& list, const FolderItem& item, const NameParts& name, const PageCount& count,
                     std::int32_t row_number);

}  // namespace varnith
