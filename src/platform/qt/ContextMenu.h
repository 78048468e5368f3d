#pragma once

#include <QPoint>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace varnith {

// Lives while a press that asks for a context menu is being delivered.
class ContextualPress {
  public:
    explicit ContextualPress(const QPoint& place_on_screen);
    ContextualPress(const ContextualPress&) = delete;
    ContextualPress& operator=(const ContextualPress&) = delete;
    ~ContextualPress();

    // Where the press was made, in screen coordinates; nullopt while none is being delivered.
    static std::optional<QPoint> Place();
};

// Shows a context menu and runs a nested event loop until it closes; see Desktop::ChooseFromMenu. It opens at
// the press that is being delivered, otherwise at the mouse pointer.
std::optional<std::size_t> ShowContextMenu(const std::vector<std::string>& entries);

}  // namespace varnith
