#pragma once

#include <string>

#include "platform/ui/Desktop.h"

namespace varnith {

// The desktop's clipboard, open from the making of the object until Close.
class Clipboard {
  public:
    // The text on it; empty if it holds none, or is closed.
    std::string Text() const { return open_ ? Desktop::Current().ClipboardText() : ""; }

    void Close() { open_ = false; }

  private:
    bool open_ = true;
};

}  // namespace varnith
