#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/ui/Control.h"

namespace varnith {

// A field of one line or, if it is made so, of several lines with a vertical scroll bar; black on white, with
// no limit to its length. In a read-only one the user selects and copies, but types nothing.
class EditField : public Control {
  public:
    // The user has pressed a key in the field; the key is given as for Window::PressKey. True if the field is
    // to make nothing of it.
    std::function<bool(const std::string& key)> KeyDown;

    // The text. A line in it ends in a carriage return, however the text that is set has it.
    void SetText(const std::string& text) { Set(text_, WithLines(text)); }
    const std::string& Text() const { return text_; }

    void SetReadOnly(bool read_only) { Set(read_only_, read_only); }
    bool ReadOnly() const { return read_only_; }

    // Fixed before the window opens.
    void SetMultiLine(bool multi_line) { multi_line_ = multi_line; }
    bool MultiLine() const { return multi_line_; }

    // The selection, in characters from 0; with no length it is the place where the user types.
    void Select(std::int32_t start, std::int32_t length);
    std::int32_t SelStart() const { return sel_start_; }
    std::int32_t SelLength() const { return sel_length_; }

    // Replaces the selection by a text; what is typed next comes behind that.
    void SetSelText(const std::string& text);

    // The user presses a key. True if the field is to make nothing of it.
    bool PressKey(const std::string& key) override { return Fire(KeyDown, key); }

  private:
    std::string WithLines(const std::string& text) const;

    std::string text_;
    bool read_only_ = false;
    bool multi_line_ = false;
    std::int32_t sel_start_ = 0;
    std::int32_t sel_length_ = 0;
};

}  // namespace varnith
