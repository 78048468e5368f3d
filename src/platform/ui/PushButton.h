#pragma once

#include <functional>
#include <string>
#include <utility>

#include "platform/ui/Control.h"

namespace varnith {

class PushButton : public Control {
  public:
    std::function<void()> Action;

    void SetCaption(std::string caption) { Set(caption_, std::move(caption)); }
    const std::string& Caption() const { return caption_; }

    // The default button is pressed by the Return key too, from anywhere in its window.
    void SetDefault(bool is_default) { Set(default_, is_default); }
    bool Default() const { return default_; }

    // The user presses the button; a disabled one does nothing.
    void Press() {
        if (Enabled()) Fire(Action);
    }

  private:
    std::string caption_;
    bool default_ = false;
};

}  // namespace varnith
