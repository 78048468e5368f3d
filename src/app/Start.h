#pragma once

#include <memory>

#include "app/App.h"

namespace varnith {

// The program's start sequence: the application with its menu bar, the first window, the run loop. Returns
// the exit status when the program has quit. REQUIRES: a desktop is in force.
int _Main();

// The program declares no file types of its own.
void _InitFileTypes();

// Makes the App, which is the current application from then on.
std::unique_ptr<App> _NewAppInstance();

// The application as such handles no menu entries; MainWindow does.
void _ApplicationAddMenuHandlers();

// Makes MainWindow, the only window that opens by itself.
void _MakeDefaultView();

}  // namespace varnith
