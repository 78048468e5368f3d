#pragma once

#include <string>

namespace varnith {

// Opens a document or folder in the application that the desktop associates with its type
// (https://specifications.freedesktop.org/mime-apps-spec/latest). The path is absolute, in bytes. The
// document itself is never executed, whatever its mode. The startup id, which may be empty, is passed to the
// application: with it the window manager lets the application come to the front
// (https://specifications.freedesktop.org/startup-notification-spec/latest). The application's output is
// discarded, so that the standard error has this program's messages only. A failure is written there in one
// line.
void OpenInAssignedApplication(const std::string& path, const std::string& startup_id);

// Opens a web address in the user's browser, found by xdg-open(1). Output and failures are treated as above.
void OpenInBrowser(const std::string& address);

}  // namespace varnith
