#pragma once

#include <QPoint>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace varnith {

// A press that asks for a context menu, as long as it is being delivered.
class ContextualPress {
  public:
    explicit ContextualPress(const QPoint& place_on_screen);
    ContextualPress(const ContextualPress&) = delete;
    ContextualPress& operator=(const ContextualPress&) = delete;
    ~ContextualPress();

    // Where the one that is being delivered was made; nothing while none is.
    static std::optional<QPoint> Place();
};

// Shows a menu of these entries, of which "-" makes a line, at the press that asks for it, or else at the
// mouse. Returns the place of the chosen entry, from 0, or nothing.
std::optional<std::size_t> ShowContextMenu(const std::vector<std::string>& entries);

}  // namespace varnith
