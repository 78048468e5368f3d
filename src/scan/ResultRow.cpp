#include "scan/ResultRow.h"

#include "platform/base/Text.h"
#include "platform/files/TiffPictureMBS.h"

namespace varnith {

const WalkPlan RecursiveWalk = {
    .opens =
        [](const ListedEntry& entry) {
            return entry.visible && entry.kind != FileKind::Directory &&
                   IsTakenRecursively(NameParts(entry.name));
        },
    .enters_folders = true,
};

const WalkPlan FlatWalk = {
    .opens = [](const ListedEntry& entry) { return IsTakenFlat(NameParts(entry.name), entry.visible); },
    .enters_folders = false,
};

NameParts::NameParts(std::string_view display_name)
    : fields(CountFields(display_name, ".")), extension(NthField(display_name, ".", fields)) {}

bool IsTakenRecursively(const NameParts& name) {
    return (name.fields > 1 && SameText(name.extension, "tif")) || SameText(name.extension, "tiff");
}

bool IsTakenFlat(const NameParts& name, bool visible) {
    return (name.fields > 1 && SameText(name.extension, "tiff") && visible) ||
           SameText(name.extension, "tif");
}

void PageCount::Read(const Ref<FolderItem>& item) {
    const Ref<TiffPictureMBS> picture = OpenAsTiffMBS(item, true);
    if (picture) count_ = picture->ImageCount();
}

std::string PageCount::Text() const {
    return count_ < 1 ? "0" : Str(count_);
}

void AppendResultRow(Listbox& list, const FolderItem& item, const NameParts& name, const PageCount& count,
                     std::int32_t row_number) {
    list.AddRow("");
    const std::int32_t row = list.LastIndex();
    list.SetCellType(row, 0, Listbox::TypeCheckBox);
    list.SetCellTag(row, 0, Str(row_number));
    list.SetCell(row, 1, item.Name());
    list.SetCell(row, 2, count.Text());
    list.SetCell(row, 3, item.Parent()->AbsolutePath());
    list.SetCell(row, 4, name.extension);
}

}  // namespace varnith
