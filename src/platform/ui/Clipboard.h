#pragma once

#include <string>

#include "platform/ui/Desktop.h"

namespace varnith {

// Reads the desktop's clipboard. It is open from its construction until Close.
class Clipboard {
  public:
    // The text on the clipboard in UTF-8; empty if it holds no text or is closed.
    std::string Text() const { return open_ ? Desktop::Current().ClipboardText() : ""; }

    void Close() { open_ = false; }

  private:
    bool open_ = true;
};

}  // namespace varnith
