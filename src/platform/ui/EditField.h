#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/ui/Control.h"

namespace varnith {

// A text field of one line or several, without a limit to the length of its text. A field of
// several lines has a vertical scroll bar. In a read-only field the user can select and copy, but not type.
class EditField : public Control {
  public:
    // Called when the user presses a key in the field; Window::PressKey tells the form of the key. Return
    // true to skip the default handling.
    std::function<bool(const std::string& key)> KeyDown;

    // The text, in UTF-8. In a field of several lines each line break becomes a carriage return.
    void SetText(const std::string& text) { Set(text_, WithLines(text)); }
    const std::string& Text() const { return text_; }

    void SetReadOnly(bool read_only) { Set(read_only_, read_only); }
    bool ReadOnly() const { return read_only_; }

    // Must be set before the window opens.
    void SetMultiLine(bool multi_line) { multi_line_ = multi_line; }
    bool MultiLine() const { return multi_line_; }

    // Black text on white, whatever the desktop's colours. Must be set before the window opens.
    void SetBlackOnWhite(bool black_on_white) { black_on_white_ = black_on_white; }
    bool BlackOnWhite() const { return black_on_white_; }

    // The selection, in characters from 0. Its length is 0 if it is only the caret.
    void Select(std::int32_t start, std::int32_t length);
    std::int32_t SelStart() const { return sel_start_; }
    std::int32_t SelLength() const { return sel_length_; }

    // Replaces the selection by a text and puts the caret after it.
    void SetSelText(const std::string& text);

    bool PressKey(const std::string& key) override { return Fire(KeyDown, key); }

  private:
    std::string WithLines(const std::string& text) const;

    std::string text_;
    bool read_only_ = false;
    bool multi_line_ = false;
    bool black_on_white_ = false;
    std::int32_t sel_start_ = 0;
    std::int32_t sel_length_ = 0;
};

}  // namespace varnith
