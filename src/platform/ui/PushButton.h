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

    // The user presses the button; a disabled one does nothing.
    void Press() {
        if (Enabled()) Fire(Action);
    }

  private:
    std::string caption_;
};

}  // namespace varnith
