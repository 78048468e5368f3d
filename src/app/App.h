#pragma once

#include <exception>

#include "platform/ui/Application.h"

namespace varnith {

// The application object. It prepares what the program needs before its first window opens, and decides which
// exceptions the program survives.
class App : public Application {
  public:
    App();

    // The only App. REQUIRES: it has been created.
    static App& Instance();

    // Called once, when the run loop starts. Creates the results database beside the application if it is
    // missing, and leaves an existing file alone. Removes what the last update left behind, sets the path of
    // the settings file and starts the check for a newer version. Failures are silent, except that a line on
    // standard error says if the user can't write to the application's folder or to the bundle.
    void Event_Open() override;

    // True for the exceptions that end only the event handler or thread that threw them. Any other exception
    // ends the program.
    bool Event_UnhandledException(const std::exception& error) override;
};

}  // namespace varnith
