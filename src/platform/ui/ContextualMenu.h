#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/ui/Control.h"

namespace varnith {

// A menu that comes up where the user asks for it. It has no place in a window.
class ContextualMenu : public Control {
  public:
    // The user has chosen the entry with that text.
    std::function<void(const std::string& entry)> Action;

    void AddRow(const std::string& text) { rows_.push_back(text); }
    // Adds a line between entries.
    void AddSeparator() { rows_.emplace_back("-"); }
    const std::vector<std::string>& Rows() const { return rows_; }

    // Shows the menu at the mouse and waits for the user in an event loop of its own; a choice is delivered
    // before it returns.
    void Open();

  private:
    std::vector<std::string> rows_;
};

// Whether the press that is being delivered asks for a context menu: one of the right button, or of the key
// that stands for it.
bool IsContextualClick();

}  // namespace varnith
