#pragma once

#include <string>

#include "platform/base/Text.h"
#include "platform/ui/Desktop.h"

namespace varnith {

// The state of the keyboard at the moment of asking. While a key press is being delivered, a key that was
// down at the press counts as down still: the press may have waited for the program.
class Keyboard {
  public:
    // The key named Meta or Super.
    static bool AsyncCommandKey() { return Desktop::Current().IsCommandKeyDown(); }
    static bool AsyncControlKey() { return Desktop::Current().IsControlKeyDown(); }

    // Whether a key, given as its text, asks the window that it is pressed in to close: "w", in either case,
    // with the command or the control key down.
    static bool IsCloseShortcut(const std::string& key) {
        return SameText(key, "w") && (AsyncCommandKey() || AsyncControlKey());
    }
};

}  // namespace varnith
