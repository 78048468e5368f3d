#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>

#include "platform/base/Event.h"
#include "platform/base/Ref.h"
#include "platform/ui/Observed.h"

namespace varnith {

// A rectangle in a window, in pixels from the top left corner of the window's contents.
struct Bounds {
    std::int32_t Left = 0;
    std::int32_t Top = 0;
    std::int32_t Width = 0;
    std::int32_t Height = 0;

    bool operator==(const Bounds&) const = default;
};

// The window edges to which a control keeps its distance when the window is resized. If it is locked to both
// edges of an axis, it stretches. If it is locked to the right or the bottom edge only, it moves along.
// Otherwise it stays where it is.
struct Locks {
    bool Left = false;
    bool Top = false;
    bool Right = false;
    bool Bottom = false;
};

enum class TextAlign : std::uint8_t { Left = 0, Centre = 1, Right = 2 };

// The text size in the program's windows, in pixels.
constexpr std::int32_t SystemTextSize = 13;

// The base class of all controls. A control holds its state and its event slots (std::function members) and
// needs no window system; while its window is open, a view shows it. The view reports the user's actions by
// calling the same operations that a test calls. Texts are UTF-8, but a file name in one may hold any bytes.
class Control : public Observed {
  public:
    virtual ~Control() = default;

    // Sets the control's place in its window. The owner is the object that the control is a member of. The
    // control doesn't own it, but keeps it alive while one of its slots runs. Tab moves the focus from
    // control to control by rising tab_index.
    // REQUIRES: called once, before the window opens.
    void Place(RefCounted& owner, const Bounds& bounds, const Locks& locks, std::int32_t tab_index);

    const Bounds& CurrentBounds() const { return bounds_; }
    std::int32_t TabIndex() const { return tab_index_; }

    // The window's contents are larger than in the layout by this many pixels, or smaller if negative. Moves
    // and resizes the control by its locks.
    void FollowWindow(std::int32_t more_width, std::int32_t more_height);

    // The user presses a key while the control has the focus; Window::PressKey tells the form of the key.
    // Returns true if the control has handled the key, so that the toolkit skips its default handling.
    virtual bool PressKey(const std::string& /*key*/) { return false; }

    // The text size in pixels; 0 for the desktop's own.
    void SetTextSize(std::int32_t size) { Set(text_size_, size); }
    std::int32_t TextSize() const { return text_size_; }

    void SetBold(bool bold) { Set(bold_, bold); }
    bool Bold() const { return bold_; }

    void SetUnderline(bool underline) { Set(underline_, underline); }
    bool Underline() const { return underline_; }

    // What a screen reader calls the control if it has neither a text of its own nor a label. Must be set
    // before the window opens.
    void SetAccessibleName(std::string name) { accessible_name_ = std::move(name); }
    const std::string& AccessibleName() const { return accessible_name_; }

    void SetEnabled(bool enabled) { Set(enabled_, enabled); }
    bool Enabled() const { return enabled_; }

  protected:
    // Runs a slot of the control. The slot may close the control's window.
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
    std::string accessible_name_;
};

}  // namespace varnith
