#pragma once

#include <exception>

#include "platform/ui/Application.h"

namespace varnith {

// The application object. It sees to what has to be there before the first window opens, and decides which
// failures the program lives on with.
class App : public Application {
  public:
    App();

    // The one App. REQUIRES: it has been made.
    static App& Instance();

    // Fired once, when the run loop starts. Makes the results database beside the application if it is
    // missing; an existing file is taken as it stands. Removes what the last update has left behind, tells
    // the settings where their file is, and asks for a newer version. Failure is silent.
    void Event_Open() override;

    // True for the failures that end nothing but the handler or thread in which they arose.
    bool Event_UnhandledException(const std::exception& error) override;
};

}  // namespace varnith
