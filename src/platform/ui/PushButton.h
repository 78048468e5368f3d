#pragma once

#include <functional>
#include <string>
#include <utility>

#include "platform/ui/Control.h"

namespace varnith {

// A button with a caption in UTF-8.
class PushButton : public Control {
  public:
    // Called when the user presses the button.
    std::function<void()> Action;

    void SetCaption(std::string caption) { Set(caption_, std::move(caption)); }
    const std::string& Caption() const { return caption_; }

    // The Return key presses the default button, wherever in its window the focus is.
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
