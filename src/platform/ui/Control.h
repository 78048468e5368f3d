#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>

#include "platform/base/Event.h"
#include "platform/base/Ref.h"
#include "platform/ui/Observed.h"

namespace varnith {

// A place in a window, in pixels from the top left of its contents.
struct Bounds {
    std::int32_t Left = 0;
    std::int32_t Top = 0;
    std::int32_t Width = 0;
    std::int32_t Height = 0;

    bool operator==(const Bounds&) const = default;
};

// The window edges from which a control keeps its distance. Locked to both edges of an axis it stretches
// with the window, locked to the far one only it moves along, otherwise it stays.
struct Locks {
    bool Left = false;
    bool Top = false;
    bool Right = false;
    bool Bottom = false;
};

enum class TextAlign : std::uint8_t { Left = 0, Centre = 1, Right = 2 };

// The size of the texts in the program's windows, in pixels.
constexpr std::int32_t SystemTextSize = 13;

// What all controls have. A control holds its state and its event slots and works with no window system; a
// view shows it while its window is open. The user's actions come in through the same operations that a
// test calls.
class Control : public Observed {
  public:
    virtual ~Control() = default;

    // Where the control stands in its window, and what it clings to. The owner is what the control is a part
    // of, and is kept alive while a slot of the control runs.
    // REQUIRES: called once, before the window opens.
    void Place(RefCounted& owner, const Bounds& bounds, const Locks& locks, std::int32_t tab_index);

    const Bounds& CurrentBounds() const { return bounds_; }
    std::int32_t TabIndex() const { return tab_index_; }

    // The window's contents have grown by that much since the layout; follows its locks.
    void FollowWindow(std::int32_t more_width, std::int32_t more_height);

    // The user presses a key while the control has the focus; the key is given as for Window::PressKey. True
    // if the control has taken it and is to make nothing else of it.
    virtual bool PressKey(const std::string& /*key*/) { return false; }

    // The size of the text in pixels; 0 for the system's own.
    void SetTextSize(std::int32_t size) { Set(text_size_, size); }
    std::int32_t TextSize() const { return text_size_; }

    void SetBold(bool bold) { Set(bold_, bold); }
    bool Bold() const { return bold_; }

    void SetUnderline(bool underline) { Set(underline_, underline); }
    bool Underline() const { return underline_; }

    void SetEnabled(bool enabled) { Set(enabled_, enabled); }
    bool Enabled() const { return enabled_; }

  protected:
    // Runs a slot of the control, which may close the control's window.
    template <class Result, class... Arguments>
    Result Fire(const std::function<Result(Arguments...)>& slot,
                std::type_identity_t<Arguments>... arguments) {
        return RunSlot(owner_, slot, arguments...);
    }

  private:
    RefCounted* owner_ = nullptr;
    Bounds design_;
    Bounds bounds_;
    Locks locks_;
    std::int32_t tab_index_ = 0;
    std::int32_t text_size_ = 0;
    bool bold_ = false;
    bool underline_ = false;
    bool enabled_ = true;
};

}  // namespace varnith
