#pragma once

#include <string>

#include "platform/base/Text.h"
#include "platform/ui/Desktop.h"

namespace varnith {

// The keyboard's state now. While a key press is being delivered, the modifiers that were down at the press
// count as down too: the press may have waited in the queue while the program was busy.
class Keyboard {
  public:
    // The Meta key, also called Super.
    static bool AsyncCommandKey() { return Desktop::Current().IsCommandKeyDown(); }
    static bool AsyncControlKey() { return Desktop::Current().IsControlKeyDown(); }

    // Whether a key, given as its text, is the shortcut that closes a window: "w" or "W" with Meta or Control
    // down.
    static bool IsCloseShortcut(const std::string& key) {
        return SameText(key, "w") && (AsyncCommandKey() || AsyncControlKey());
    }
};

}  // namespace varnith
