#pragma once

#include <memory>

#include "app/App.h"

namespace varnith {

// Runs the program: creates the application with its menu bar and the first window, then runs the event loop
// until the program quits. Returns the exit status, which is 1 if an exception ended the start. REQUIRES: the
// Desktop to run on is in force (InForce<Desktop>).
int _Main();

// A step of the start that does nothing: the program declares no file types.
void _InitFileTypes();

// Creates the App with its menu bar and makes it the current application. The caller owns it.
std::unique_ptr<App> _NewAppInstance();

// A step of the start that does nothing: MainWindow handles the menu entries, not the application.
void _ApplicationAddMenuHandlers();

// Creates MainWindow, the only window that every start opens.
void _MakeDefaultView();

}  // namespace varnith
