#pragma once

#include <cstdint>
#include <exception>
#include <vector>

#include "platform/base/Ref.h"
#include "platform/ui/Menu.h"
#include "platform/ui/Window.h"

namespace varnith {

// The program as a whole: its version, its menu bar, its open windows and its run loop. There is one object
// of this class or of one derived from it; making it makes it the current one.
class Application {
  public:
    Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    virtual ~Application();

    // The one application. REQUIRES: there is one.
    static Application& Current();

    // The run loop: the application's opening event, then the windows that wait to be opened, then events
    // until Quit. After it all threads are ended and all windows gone, without their closing events.
    // Returns the status given to Quit.
    int Run();

    // Ends the run loop soon, from wherever it is called, with that status. The handler that calls it is
    // run to its end.
    void Quit(int status);
    bool IsQuitting() const { return quitting_; }

    // Runs the event loop once from within a handler, which may so be entered again. Waits that many
    // milliseconds for an event if there is none; not at all below 1.
    void DoEvents(std::int32_t milliseconds);

    void SetMenuBar(const Ref<varnith::MenuBar>& bar) { menu_bar_ = bar; }
    const Ref<varnith::MenuBar>& MenuBar() const { return menu_bar_; }

    // The window in front of the program's others, nil if none is open. It is the newest modal one, else the
    // last one shown, or as the user has arranged them.
    Ref<Window> FrontWindow() const;
    // Without effect on a window that a modal one keeps from answering.
    void SetFrontWindow(Window& window);
    bool IsBlocked(const Window& window) const;
    // Shows the front window in front of the others.
    void BringToFront();

    // Whether the entry can be chosen now, and the user's choice of it.
    bool IsEnabled(const MenuItem& item) const;
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

    virtual void Event_Open() {}
    // An exception has reached the top of an event handler or of a thread. True if it is handled; otherwise
    // it is reported, and the program ends with status 1.
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
    std::vector<Ref<Window>> windows_;  // the open ones and those that wait to be, the frontmost last
};

// Ends the program with that status.
void Quit(int status);

}  // namespace varnith
