#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"
#include "platform/files/ReadAhead.h"
#include "platform/ui/Listbox.h"

namespace varnith {

// The display name of a folder's entry, split at its dots.
struct NameParts {
    explicit NameParts(std::string_view display_name);

    std::int32_t fields;    // the number of pieces
    std::string extension;  // the last piece, in the name's own spelling; the whole name if it has no dot
};

// Whether the recursive scan takes a file of that name: one that ends in .tif or .tiff, or is named just
// "tiff". Case does not matter. This differs from IsTakenFlat on purpose: users rely on what each scan takes.
bool IsTakenRecursively(const NameParts& name);

// Whether the flat scan takes an entry of that name: a visible one that ends in .tiff, or any one that ends
// in .tif or is named just "tif", even if it is hidden. Folders are entries, too: one with such a name gets a
// row.
bool IsTakenFlat(const NameParts& name, bool visible);

// What each scan does with the entries of a folder. FolderItem::ForWalk takes it to read ahead.
extern const WalkPlan RecursiveWalk;
extern const WalkPlan FlatWalk;

// The page count of the current file, as a scan goes through one folder. A file that can't be opened keeps
// the count of the file before it, or 0 if it is the first. This looks like a slip, but users rely on it: the
// list has always shown unreadable files so.
class PageCount {
  public:
    // Opens a file and reads its page count. A scan opens files nowhere else. REQUIRES: item is not nil
    // (NilObjectException).
    void Read(const Ref<FolderItem>& item);

    // The page count as the row shows it; "0" before the first file.
    std::string Text() const;

  private:
    std::int32_t count_ = 0;
};

// Appends a row: a check box, then the item's name, page count, folder and extension. The row number goes
// into the tag of column 0, where nothing reads it. REQUIRES: item is not the root folder
// (NilObjectException).
void AppendResultRow(Listbox& list, const FolderItem& item, const NameParts& name, const PageCount& count,
                     std::int32_t row_number);

}  // namespace varnith
