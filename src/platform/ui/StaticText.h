#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "platform/ui/Control.h"

namespace varnith {

// A label. Its text is shown as it stands, on one line, or wrapped to several.
class StaticText : public Control {
  public:
    // The user has pressed the mouse button on the label: x and y in pixels from its top left. True if the
    // label is to hear of the rest of the click.
    std::function<bool(std::int32_t x, std::int32_t y)> MouseDown;

    void SetText(std::string text) { Set(text_, std::move(text)); }
    const std::string& Text() const { return text_; }

    void SetTextAlign(varnith::TextAlign align) { Set(align_, align); }
    varnith::TextAlign TextAlign() const { return align_; }

    void SetMultiLine(bool multi_line) { Set(multi_line_, multi_line); }
    bool MultiLine() const { return multi_line_; }

    // The colour as 0xRRGGBB. Black is the desktop's own colour of texts.
    void SetTextColor(std::uint32_t colour) { Set(text_color_, colour); }
    std::uint32_t TextColor() const { return text_color_; }

    // The user presses the mouse button.
    bool PressMouse(std::int32_t x, std::int32_t y) { return Fire(MouseDown, x, y); }

  private:
    std::string text_;
    varnith::TextAlign align_ = varnith::TextAlign::Left;
    bool multi_line_ = false;
    std::uint32_t text_color_ = 0;
};

}  // namespace varnith
