#pragma once

#include "platform/ui/Desktop.h"

namespace varnith {

// The state of the keyboard at the moment of asking. While a key press is being delivered, a key that was
// down at the press counts as down still: the press may have waited for the program.
class Keyboard {
  public:
    // The key named Meta or Super.
    static bool AsyncCommandKey() { return Desktop::Current().IsCommandKeyDown(); }
    static bool AsyncControlKey() { return Desktop::Current().IsControlKeyDown(); }
};

}  // namespace varnith
