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

// A window: its properties, its controls and its events. While it is open the application holds a Ref to it
// and the desktop, if there is a display, shows it.
class Window : public RefCounted, public Observed {
  public:
    ~Window() override;

    // Opens the window: calls Event_Open, then shows the window. Before Application::Run the window is only
    // registered, and Run opens it. No effect on an open window.
    void Open();

    // Opens the window unless it is open, and brings it to the front.
    void Show();

    // Closes the window: calls Event_Close, removes the window from the screen and drops the application's
    // Ref. No effect on a window that isn't open.
    void Close();

    // Redraws the whole window with the next frame. The background is redrawn in any case.
    void Refresh(bool erase_background);

    // The mouse pointer over the window while it is open. Takes effect at once, even if a handler keeps the
    // event loop from running.
    void SetPointer(PointerShape shape);

    // In UTF-8.
    void SetTitle(std::string title) { Set(title_, std::move(title)); }
    const std::string& Title() const { return title_; }

    // The window's position on the screen and the size of its contents without the menu bar, in pixels. The
    // size is clamped to Style's minimum and maximum. The controls follow it by their locks.
    void SetLeft(std::int32_t left);
    void SetTop(std::int32_t top);
    void SetSize(std::int32_t width, std::int32_t height);
    std::int32_t Left() const { return left_; }
    std::int32_t Top() const { return top_; }
    std::int32_t Width() const { return width_; }
    std::int32_t Height() const { return height_; }

    // A document window, or a modal one. A modal window can be moved; until it closes it blocks the contents
    // of the program's other windows.
    enum class FrameKind : std::uint8_t { Document = 0, MovableModal = 1 };
    // Where a window appears: at Left and Top, or in the middle of its parent's screen.
    enum class PlacementKind : std::uint8_t { Default = 0, ParentScreen = 3 };

    // Properties that are fixed before the window opens. Sizes are in pixels and of the contents.
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
        // Closes the window when the user presses Escape.
        bool EscapeCloses = false;
        // Fills the contents with white, whatever the desktop's colours. The texts on it are black.
        bool WhiteBackground = false;
    };
    const Style& GetStyle() const { return style_; }

    // The menu bar in the window; nil for none.
    void SetMenuBar(const Ref<varnith::MenuBar>& bar) { menu_bar_ = bar; }
    const Ref<varnith::MenuBar>& MenuBar() const { return menu_bar_; }

    // Sets the handler for the menu entry of that name. It applies while this window is the frontmost. The
    // handler returns true if it has handled the command.
    void AddMenuHandler(const std::string& name, std::function<bool()> handler);
    bool HasMenuHandler(const std::string& name) const { return menu_handlers_.HasKey(name); }
    // Returns what the handler returns; false if there is none.
    bool RunMenuHandler(const std::string& name);

    // The user presses a key. The key is given as the text that it types without Control and Meta: "w" for
    // Ctrl+W, "W" for Ctrl+Shift+W. Returns true if the window has handled the key, so that no control gets
    // it.
    bool PressKey(const std::string& key);

    const std::vector<Control*>& Controls() const { return controls_; }

    bool IsModal() const { return style_.Frame == FrameKind::MovableModal; }

    // Nil while the window isn't open, and without a display. The window owns it.
    WindowView* View() const { return view_.get(); }

    // For the view: the number of calls of Refresh.
    std::int32_t Refreshes() const { return refreshes_; }

  protected:
    // Called by Open, Close and PressKey. Event_KeyDown returns true if it has handled the key.
    virtual void Event_Open() {}
    virtual void Event_Close() {}
    virtual bool Event_KeyDown(const std::string& /*key*/) { return false; }
    // Called when the window has closed, so that a single instance can drop its Ref to itself.
    virtual void Forget() {}

    void SetStyle(const Style& style) { style_ = style; }
    // The size, in pixels, for which the bounds of the controls are given.
    void SetDesignSize(std::int32_t width, std::int32_t height);

    // Adds a control, which isn't owned. REQUIRES: the control lives as long as the window.
    void AddControl(Control& control, const Bounds& bounds, const Locks& locks, std::int32_t tab_index);

    // Centres the window on the first screen. The position is rounded once, after the subtraction.
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

// A window class with a single instance. Instance creates and opens it if there is none, as at the first call
// or after it was closed.
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
