#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace varnith {

class Picture;
class Window;

// The mouse pointer over a window: the usual one, that of a program which works meanwhile but can be used,
// and that of a program which doesn't react.
enum class PointerShape : std::uint8_t { Usual, Busy, Wait };

// An open window on the screen. Its destruction takes the window off the screen.
class WindowView {
  public:
    virtual ~WindowView() = default;
    // Raises the window above the others and gives it the keyboard.
    virtual void BringToFront() = 0;
    // Blocks the window's contents from the user's input, or unblocks them. The menus and the close button
    // keep working.
    virtual void SetBlocked(bool blocked) = 0;
    // Sets the mouse pointer over the window at once, even if the event loop stands still.
    virtual void SetPointer(PointerShape shape) = 0;
};

// A running timer. Its destruction stops it.
class TimerView {
  public:
    virtual ~TimerView() = default;
};

// What the program asks of the desktop it runs on. This base class behaves as a desktop without a display, so
// a test overrides only what it needs. QtDesktop is the real desktop. Texts are UTF-8; paths are the bytes
// that the file system has.
class Desktop {
  public:
    virtual ~Desktop() = default;

    // Runs the event loop until Quit and returns the status given there. Without a display there are no
    // events and it returns 0 at once.
    virtual int RunEventLoop() { return 0; }
    // Runs one turn of the event loop: delivers the waiting events, serves the sockets and gives the threads
    // their turns. If nothing is waiting, waits up to this many milliseconds; a value below 1 means no wait.
    virtual void DoEvents(std::int32_t milliseconds);
    // Ends the event loop and all nested ones with this exit status.
    virtual void Quit(int /*status*/) {}

    // Shows a window that has just opened. Returns nil without a display. REQUIRES: the window outlives the
    // view.
    virtual std::unique_ptr<WindowView> Show(Window& /*window*/) { return nullptr; }

    // Calls `fire` from the event loop each time that `period` milliseconds have passed, until the returned
    // object is destroyed. Returns nil without a display, where `fire` is never called.
    // NOLINTNEXTLINE(performance-unnecessary-value-param): a desktop with a display keeps it
    virtual std::unique_ptr<TimerView> StartTimer(std::int32_t /*period*/, std::function<void()> /*fire*/) {
        return nullptr;
    }

    // Sets the icon that the desktop shows for the program, for example in its list of windows.
    virtual void SetIcon(const Picture& /*picture*/) {}

    struct Size {
        std::int32_t Width;
        std::int32_t Height;
    };
    // A screen's size in pixels. Screens are numbered from 0, the main one.
    virtual Size ScreenSize(int /*screen*/) const { return {1024, 768}; }

    // Lets the user choose a folder in a modal dialog, which runs a nested event loop. Returns its absolute
    // path, or nullopt if the user cancels.
    virtual std::optional<std::string> ChooseFolder() { return std::nullopt; }

    // Lets the user choose a file to write in a modal dialog, which runs a nested event loop and suggests
    // `name`. The dialog lists the files of the type `filter`, which has the form "Name (*.extension)". It
    // adds the extension of `name` to a name without one, and asks before it accepts an existing file.
    // Returns the absolute path, or nullopt if the user cancels.
    virtual std::optional<std::string> ChooseFileToWrite(const std::string& /*filter*/,
                                                         const std::string& /*name*/) {
        return std::nullopt;
    }

    // Shows a context menu and runs a nested event loop until it closes. The entry "-" stands for a
    // separator. The menu opens where the user asked for it. Returns the index of the chosen entry, or
    // nullopt if the user chose none.
    virtual std::optional<std::size_t> ChooseFromMenu(const std::vector<std::string>& /*entries*/) {
        return std::nullopt;
    }

    // Whether a press that asks for a context menu is being delivered.
    virtual bool IsContextualPress() const { return false; }

    // Opens a document or folder, given by its absolute path, in the application that is assigned to its
    // type. With `to_front` the application may come to the front. The document itself is never executed. A
    // failure is written to the standard error.
    virtual void OpenDocument(const std::string& /*path*/, bool /*to_front*/) {}

    // Shows a message in a modal dialog with one button, which runs a nested event loop.
    virtual void ShowMessage(const std::string& /*text*/) {}

    // Plays the desktop's alert sound.
    virtual void Beep() {}

    // Opens an address in the user's browser. A failure is written to the standard error.
    virtual void OpenURL(const std::string& /*url*/) {}

    // Raises the windows of another process, given by its id, as far as the desktop lets one program do that
    // to another.
    virtual void BringToFront(std::int64_t /*process*/) {}

    // The text on the clipboard; empty if it holds none.
    virtual std::string ClipboardText() const { return {}; }

    // Whether the key is down now, or was at the key press that is being delivered.
    virtual bool IsCommandKeyDown() const { return false; }
    virtual bool IsControlKeyDown() const { return false; }

    // The desktop that InForce<Desktop> has set; otherwise one without a display.
    static Desktop& Current();
};

}  // namespace varnith
