#pragma once

#include <string>
#include <utility>

#include "platform/ui/Control.h"

namespace varnith {

// A label. Its text is shown as it stands, on one line, or wrapped to several.
class StaticText : public Control {
  public:
    void SetText(std::string text) { Set(text_, std::move(text)); }
    const std::string& Text() const { return text_; }

    void SetTextAlign(varnith::TextAlign align) { Set(align_, align); }
    varnith::TextAlign TextAlign() const { return align_; }

    void SetMultiLine(bool multi_line) { Set(multi_line_, multi_line); }
    bool MultiLine() const { return multi_line_; }

  private:
    std::string text_;
    varnith::TextAlign align_ = varnith::TextAlign::Left;
    bool multi_line_ = false;
};

}  // namespace varnith
