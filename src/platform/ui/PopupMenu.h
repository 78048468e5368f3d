#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/ui/Control.h"

namespace varnith {

// A choice among entries. ListIndex is the place of the chosen one, from 0; -1 while none is chosen.
class PopupMenu : public Control {
  public:
    // The user has picked an entry. No change by the program fires it.
    std::function<void()> Change;

    void AddRow(const std::string& text);
    // Leaves no entry chosen.
    void DeleteAllRows();
    const std::vector<std::string>& Rows() const { return rows_; }

    std::int32_t ListIndex() const { return list_index_; }
    // Chooses an entry without firing Change. A place that does not exist leaves none chosen.
    void SetListIndex(std::int32_t index);

    // The chosen entry; empty while none is chosen.
    std::string Text() const;

    // The user picks an entry, by its text as it was shown: of some that read alike the first. One that has
    // gone meanwhile picks nothing.
    void Pick(const std::string& entry);

  private:
    bool IsEntry(std::int32_t index) const {
        return index >= 0 && static_cast<std::size_t>(index) < rows_.size();
    }

    std::vector<std::string> rows_;
    std::int32_t list_index_ = -1;
};

}  // namespace varnith
