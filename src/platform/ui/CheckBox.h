#pragma once

#include <string>
#include <utility>

#include "platform/ui/Control.h"

namespace varnith {

// A check box with a caption in UTF-8.
class CheckBox : public Control {
  public:
    void SetCaption(std::string caption) { Set(caption_, std::move(caption)); }
    const std::string& Caption() const { return caption_; }

    // Whether the box is ticked. A click of the user changes it too.
    void SetValue(bool value) { Set(value_, value); }
    bool Value() const { return value_; }

  private:
    std::string caption_;
    bool value_ = false;
};

}  // namespace varnith
