#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "platform/ui/Control.h"

namespace varnith {

// A label. Its text, in UTF-8, is shown as plain text, on one line or wrapped to several.
class StaticText : public Control {
  public:
    // Called when the user presses the mouse button on the label. x and y are in pixels from its top left
    // corner. The result goes to the caller of PressMouse; the view ignores it.
    std::function<bool(std::int32_t x, std::int32_t y)> MouseDown;

    void SetText(std::string text) { Set(text_, std::move(text)); }
    const std::string& Text() const { return text_; }

    void SetTextAlign(varnith::TextAlign align) { Set(align_, align); }
    varnith::TextAlign TextAlign() const { return align_; }

    void SetMultiLine(bool multi_line) { Set(multi_line_, multi_line); }
    bool MultiLine() const { return multi_line_; }

    // 0xRRGGBB. Black (0) stands for the desktop's own text colour.
    void SetTextColor(std::uint32_t colour) { Set(text_color_, colour); }
    std::uint32_t TextColor() const { return text_color_; }

    // The control beside the label, which a screen reader calls by the label's text; null for none. Must be
    // set before the window opens.
    void SetLabelled(const Control& control) { labelled_ = &control; }
    const Control* Labelled() const { return labelled_; }

    bool PressMouse(std::int32_t x, std::int32_t y) { return Fire(MouseDown, x, y); }

  private:
    std::string text_;
    const Control* labelled_ = nullptr;
    varnith::TextAlign align_ = varnith::TextAlign::Left;
    bool multi_line_ = false;
    std::uint32_t text_color_ = 0;
};

}  // namespace varnith
