#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/base/Dictionary.h"
#include "platform/base/Ref.h"
#include "platform/ui/Control.h"
#include "platform/ui/Desktop.h"
#include "platform/ui/Menu.h"

namespace varnith {

// A window: its properties, its controls and its events. It is made, opened and closed; between opening and
// closing the application holds a Ref to it, and the desktop, if there is a display, shows it.
class Window : public RefCounted, public Observed {
  public:
    ~Window() override;

    // Opens the window: the opening event, then it is shown. Before the application runs, it is only noted
    // down and opens when the run loop starts. Without effect on one that is open.
    void Open();

    // Shows the window in front of the others, opening it if it isn't open yet.
    void Show();

    // Closes the window: the closing event, then the view goes and the application lets go of it.
    // Without effect on one that isn't open.
    void Close();

    // Has everything in the window drawn anew with the next frame, the background too if asked for.
    void Refresh(bool erase_background);

    void SetTitle(std::string title) { Set(title_, std::move(title)); }
    const std::string& Title() const { return title_; }

    // Place of the window on the screen and size of its contents, without the menu bar, in pixels. The
    // controls follow a new size by their locks. A size is kept between the least and the greatest.
    void SetLeft(std::int32_t left);
    void SetTop(std::int32_t top);
    void SetSize(std::int32_t width, std::int32_t height);
    std::int32_t Left() const { return left_; }
    std::int32_t Top() const { return top_; }
    std::int32_t Width() const { return width_; }
    std::int32_t Height() const { return height_; }

    // How a window stands to the others: one of several documents, or a modal one, which can be moved but
    // keeps the contents of the program's other windows from answering until it is closed.
    enum class FrameKind : std::uint8_t { Document = 0, MovableModal = 1 };
    // Where a window comes up: where its Left and Top say, or in the middle of its parent's screen.
    enum class PlacementKind : std::uint8_t { Default = 0, ParentScreen = 3 };

    // The layout of a window, fixed before it opens.
    struct Style {
        FrameKind Frame = FrameKind::Document;
        PlacementKind Placement = PlacementKind::Default;
        std::int32_t MinWidth = 64;
        std::int32_t MinHeight = 64;
        std::int32_t MaxWidth = 32000;
        std::int32_t MaxHeight = 32000;
        bool Resizeable = true;
        bool CloseButton = true;
        bool MaximizeButton = true;
        bool MinimizeButton = true;
        // White behind the controls, whatever the desktop's colours; the texts on it are black.
        bool WhiteBackground = false;
    };
    const Style& GetStyle() const { return style_; }

    // The bar shown in the window; nil for none.
    void SetMenuBar(const Ref<varnith::MenuBar>& bar) { menu_bar_ = bar; }
    const Ref<varnith::MenuBar>& MenuBar() const { return menu_bar_; }

    // Binds the entry of that name to a handler, for as long as this window is the frontmost. The handler
    // returns true if the command is handled.
    void AddMenuHandler(const std::string& name, std::function<bool()> handler);
    bool HasMenuHandler(const std::string& name) const { return menu_handlers_.HasKey(name); }
    bool RunMenuHandler(const std::string& name);

    // The user presses a key: as the text of the key without its modifiers' effect, "w" for Ctrl+W, "W" with
    // the shift key. True if the window has taken the key and no control is to see it.
    bool PressKey(const std::string& key);

    const std::vector<Control*>& Controls() const { return controls_; }

    bool IsModal() const { return style_.Frame == FrameKind::MovableModal; }

    // What shows the window; nil while it isn't open, and without a display.
    WindowView* View() const { return view_.get(); }

    // How often Refresh was asked for.
    std::int32_t Refreshes() const { return refreshes_; }

  protected:
    virtual void Event_Open() {}
    virtual void Event_Close() {}
    virtual bool Event_KeyDown(const std::string& /*key*/) { return false; }
    // The window has closed; a single instance forgets itself.
    virtual void Forget() {}

    void SetStyle(const Style& style) { style_ = style; }
    void SetDesignSize(std::int32_t width, std::int32_t height);

    // Puts a control of the window in its place. REQUIRES: it lives as long as the window.
    void AddControl(Control& control, const Bounds& bounds, const Locks& locks, std::int32_t tab_index);

    // Puts the window in the middle of the first screen; halves are kept until the difference is taken.
    void CentreOnScreen();

  private:
    friend class Application;
    void OpenNow();

    std::string title_;
    std::int32_t left_ = 0;
    std::int32_t top_ = 0;
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::int32_t design_width_ = 0;
    std::int32_t design_height_ = 0;
    std::int32_t refreshes_ = 0;
    bool open_ = false;
    Style style_;
    Ref<varnith::MenuBar> menu_bar_;
    Dictionary<std::function<bool()>> menu_handlers_;
    std::vector<Control*> controls_;
    std::unique_ptr<WindowView> view_;
};

// A window class with one implicit instance, made and opened when it is first asked for, and anew after it
// was closed.
template <class T>
class SingleWindow : public Window {
  public:
    static Ref<T> Instance() {
        if (!Slot()) {
            Slot() = MakeRef<T>();
            Slot()->Open();
        }
        return Slot();
    }

  protected:
    void Forget() override { Slot() = nullptr; }

  private:
    static Ref<T>& Slot() {
        static Ref<T> instance;
        return instance;
    }
};

}  // namespace varnith
