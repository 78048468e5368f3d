#pragma once

#include <cstdint>
#include <exception>
#include <vector>

#include "platform/base/Ref.h"
#include "platform/ui/Menu.h"
#include "platform/ui/Window.h"

namespace varnith {

// The program as a whole: its version, its menu bar, its open windows and its event loop. A program
// constructs one object of this class or of a class derived from it, which then is Application::Current().
class Application {
  public:
    Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    virtual ~Application();

    // REQUIRES: an Application exists.
    static Application& Current();

    // Runs the program: calls Event_Open, opens the windows that were asked to open before, then runs the
    // event loop until Quit. At the end all threads are killed and all windows released; Event_Close is not
    // called. Returns the status given to Quit.
    int Run();

    // Ends the event loop with this exit status. The handler or thread that calls it runs on to its end. Only
    // the first call counts.
    void Quit(int status);
    bool IsQuitting() const { return quitting_; }

    // Runs one turn of the event loop inside a handler. The turn may enter the same handler again. If no
    // event is waiting, waits up to this many milliseconds for one; a value below 1 means no wait.
    void DoEvents(std::int32_t milliseconds);

    void SetMenuBar(const Ref<varnith::MenuBar>& bar) { menu_bar_ = bar; }
    const Ref<varnith::MenuBar>& MenuBar() const { return menu_bar_; }

    // The program's frontmost window; nil if none is open. While modal windows are open it is the newest of
    // them, otherwise the window that was shown or activated last.
    Ref<Window> FrontWindow() const;
    // Notes that a window is the frontmost, without asking the desktop for it. No effect on a blocked window.
    void SetFrontWindow(Window& window);
    // Whether a modal window blocks this one.
    bool IsBlocked(const Window& window) const;
    // Asks the desktop to raise and activate the front window.
    void BringToFront();

    // Whether the user can choose the menu entry now.
    bool IsEnabled(const MenuItem& item) const;
    // The user chooses the entry: runs the front window's handler for it, or quits for a QuitMenuItem.
    // A disabled entry does nothing.
    void Choose(const Ref<MenuItem>& item);

    std::int32_t MajorVersion() const { return version_.major; }
    std::int32_t MinorVersion() const { return version_.minor; }
    std::int32_t BugVersion() const { return version_.bug; }

  protected:
    struct Version {
        std::int32_t major = 0;
        std::int32_t minor = 0;
        std::int32_t bug = 0;
    };
    void SetVersion(const Version& version) { version_ = version; }

    // Called at the start of Run, before the first window opens.
    virtual void Event_Open() {}
    // Called with an exception that escapes from an event handler or a thread. Return true to carry on.
    // Otherwise the program shows the exception in a message box and quits with status 1.
    virtual bool Event_UnhandledException(const std::exception& /*error*/) { return false; }

  private:
    friend class Window;

    void Open(const Ref<Window>& window);
    void LetGo(Window& window);
    void BlockOthers();
    void End();
    void Handle(const std::exception& error);

    enum class Stage { BeforeRun, Running, Over };

    Stage stage_ = Stage::BeforeRun;
    bool quitting_ = false;
    int status_ = 0;
    Version version_;
    Ref<varnith::MenuBar> menu_bar_;
    std::vector<Ref<Window>> windows_;  // open or waiting for Run; the frontmost is last
};

// The same as Application::Current().Quit(status).
void Quit(int status);

}  // namespace varnith
