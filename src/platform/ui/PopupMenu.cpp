#include "platform/ui/PopupMenu.h"

#include <algorithm>

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

void PopupMenu::Pick(const std::string& entry) {
    // The widget already shows the picked entry. The view has to correct it if the pick fails.
    MarkChanged();
    const auto found = std::find(rows_.begin(), rows_.end(), entry);
    if (found == rows_.end()) return;
    list_index_ = static_cast<std::int32_t>(found - rows_.begin());
    Fire(Change);
}

}  // namespace varnith
