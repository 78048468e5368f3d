#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/ui/Control.h"

namespace varnith {

// A context menu. Unlike other controls it has no place in a window.
class ContextualMenu : public Control {
  public:
    // Called with the text of the entry that the user has chosen.
    std::function<void(const std::string& entry)> Action;

    void AddRow(const std::string& text) { rows_.push_back(text); }
    // Adds a separator.
    void AddSeparator() { rows_.emplace_back("-"); }
    const std::vector<std::string>& Rows() const { return rows_; }

    // Shows the menu where the user asked for it and runs a nested event loop until the menu closes. A choice
    // of the user calls Action before Open returns.
    void Open();

  private:
    std::vector<std::string> rows_;
};

// Whether a press that asks for a context menu is being delivered: of the right mouse button or of the menu
// key.
bool IsContextualClick();

}  // namespace varnith
