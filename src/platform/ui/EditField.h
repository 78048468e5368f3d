#pragma once

#include <string>
#include <utility>

#include "platform/ui/Control.h"

namespace varnith {

// A field of one line, black on white. In a read-only one the user selects and copies, but types nothing.
class EditField : public Control {
  public:
    void SetText(std::string text) { Set(text_, std::move(text)); }
    const std::string& Text() const { return text_; }

    void SetReadOnly(bool read_only) { Set(read_only_, read_only); }
    bool ReadOnly() const { return read_only_; }

  private:
    std::string text_;
    bool read_only_ = false;
};

}  // namespace varnith
