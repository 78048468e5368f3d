#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/ui/Control.h"

namespace varnith {

// A control that offers one choice of several entries (a combo box without a text field). ListIndex is the
// index of the chosen entry; -1 if none is chosen.
class PopupMenu : public Control {
  public:
    // Called when the user picks an entry, but not when the program changes the choice.
    std::function<void()> Change;

    void AddRow(const std::string& text);
    // Also sets ListIndex to -1.
    void DeleteAllRows();
    const std::vector<std::string>& Rows() const { return rows_; }

    std::int32_t ListIndex() const { return list_index_; }
    // Chooses an entry without calling Change. An index that doesn't exist sets -1.
    void SetListIndex(std::int32_t index);

    // The text of the chosen entry; empty if none is chosen.
    std::string Text() const;

    // The user picks an entry, given by the text that was shown. If several entries have that text, it picks
    // the first. Does nothing if the entry has been removed since it was shown.
    void Pick(const std::string& entry);

  private:
    bool IsEntry(std::int32_t index) const {
        return index >= 0 && static_cast<std::size_t>(index) < rows_.size();
    }

    std::vector<std::string> rows_;
    std::int32_t list_index_ = -1;
};

}  // namespace varnith
