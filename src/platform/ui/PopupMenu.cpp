#include "platform/ui/PopupMenu.h"

namespace varnith {

void PopupMenu::AddRow(const std::string& text) {
    rows_.push_back(text);
    MarkChanged();
}

void PopupMenu::DeleteAllRows() {
    rows_.clear();
    list_index_ = -1;
    MarkChanged();
}

std::string PopupMenu::Text() const {
    return list_index_ < 0 ? std::string() : rows_[static_cast<std::size_t>(list_index_)];
}

void PopupMenu::SetListIndex(std::int32_t index) {
    Set(list_index_, IsEntry(index) ? index : -1);
}

void PopupMenu::Pick(std::int32_t index) {
    if (!IsEntry(index)) return;
    list_index_ = index;
    MarkChanged();
    Fire(Change);
}

}  // namespace varnith
