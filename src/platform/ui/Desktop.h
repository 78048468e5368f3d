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

// How a window is shown. Dropped when the window closes.
class WindowView {
  public:
    virtual ~WindowView() = default;
    // Shows the window in front of the others.
    virtual void BringToFront() = 0;
    // Keeps the window's contents from answering the user, or lets them again. Its menus and its close box
    // answer at all times.
    virtual void SetBlocked(bool blocked) = 0;
};

// A timer that runs. Dropped when it is to fire no more.
class TimerView {
  public:
    virtual ~TimerView() = default;
};

// What the program asks of the desktop it runs on. This class answers each call as a desktop that has no
// display would, so a test overrides what it wants to see or answer; the Qt side is the real one.
class Desktop {
  public:
    virtual ~Desktop() = default;

    // Runs the event loop until Quit; returns the status given there. Without a display there are no events,
    // so it returns 0 at once.
    virtual int RunEventLoop() { return 0; }
    // Runs the event loop once: delivers the events that wait, those of sockets and the threads' turns among
    // them. If there is none, waits for one that many milliseconds; not at all below 1.
    virtual void DoEvents(std::int32_t milliseconds);
    // Lets the event loop, inner ones included, end soon with that status.
    virtual void Quit(int /*status*/) {}

    // Shows a window that has just opened; nil without a display. REQUIRES: the window outlives its view.
    virtual std::unique_ptr<WindowView> Show(Window& /*window*/) { return nullptr; }

    // Calls something each time that so many milliseconds have gone by, from the event loop; nil without a
    // display, where nothing is ever called.
    // NOLINTNEXTLINE(performance-unnecessary-value-param): a desktop with a display keeps it
    virtual std::unique_ptr<TimerView> StartTimer(std::int32_t /*period*/, std::function<void()> /*fire*/) {
        return nullptr;
    }

    // Has the desktop show the program by this picture, in its lists of windows for one.
    virtual void SetIcon(const Picture& /*picture*/) {}

    struct Size {
        std::int32_t Width;
        std::int32_t Height;
    };
    // The size in pixels of the screen with that number, from 0.
    virtual Size ScreenSize(int /*screen*/) const { return {1024, 768}; }

    // Lets the user choose a folder; returns its path as bytes, or nothing if the user cancels. Waits for
    // the user in an event loop of its own.
    virtual std::optional<std::string> ChooseFolder() { return std::nullopt; }

    // Lets the user say where a file is to be written, in a dialog that has a name to offer. It shows files
    // of the kind `filter`, "Name (*.extension)", and that extension is added to a name without one. Asks
    // before it takes a file that exists. Returns the path as bytes, or nothing if the user cancels. Waits
    // for the user in an event loop of its own.
    virtual std::optional<std::string> ChooseFileToWrite(const std::string& /*filter*/,
                                                         const std::string& /*name*/) {
        return std::nullopt;
    }

    // Shows a menu of these entries, of which "-" makes a line, where the press that asked for it was made.
    // Returns the place of the chosen entry, from 0, or nothing. Waits for the user in an event loop of its
    // own.
    virtual std::optional<std::size_t> ChooseFromMenu(const std::vector<std::string>& /*entries*/) {
        return std::nullopt;
    }

    // Whether a press is being delivered that asks for a context menu.
    virtual bool IsContextualPress() const { return false; }

    // Opens a document or folder, by its absolute path in bytes, in the application that is assigned to it,
    // and brings that one to the front if asked for. The document itself is never run.
    virtual void OpenDocument(const std::string& /*path*/, bool /*to_front*/) {}

    // Shows a message with one button and waits for the user in an event loop of its own.
    virtual void ShowMessage(const std::string& /*text*/) {}

    // Sounds the system's signal.
    virtual void Beep() {}

    // Opens an address in the user's browser.
    virtual void OpenURL(const std::string& /*url*/) {}

    // Shows the windows of another process in front of all others, as far as the desktop lets one program
    // do that for another.
    virtual void BringToFront(std::int64_t /*process*/) {}

    // The text on the clipboard; empty if it holds none.
    virtual std::string ClipboardText() const { return {}; }

    // Whether the key is held down at this moment.
    virtual bool IsCommandKeyDown() const { return false; }
    virtual bool IsControlKeyDown() const { return false; }

    // The desktop without a display, unless another is in force: InForce<Desktop>.
    static Desktop& Current();
};

}  // namespace varnith
