#include "platform/qt/ContextMenu.h"

#include <QCursor>
#include <QMenu>

#include "platform/qt/Decode.h"

namespace varnith {

namespace {
std::optional<QPoint> current_place;
}

ContextualPress::ContextualPress(const QPoint& place_on_screen) {
    current_place = place_on_screen;
}

ContextualPress::~ContextualPress() {
    current_place.reset();
}

std::optional<QPoint> ContextualPress::Place() {
    return current_place;
}

std::optional<std::size_t> ShowContextMenu(const std::vector<std::string>& entries) {
    QMenu menu;
    for (const std::string& entry : entries) {
        if (entry == "-")
            menu.addSeparator();
        else
            menu.addAction(DecodedCaption(entry));
    }
    QAction* chosen = menu.exec(current_place ? *current_place : QCursor::pos());
    const auto place = menu.actions().indexOf(chosen);
    if (place < 0) return std::nullopt;
    return static_cast<std::size_t>(place);
}

}  // namespace varnith
