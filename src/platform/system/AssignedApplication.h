#pragma once

#include <string>

namespace varnith {

// Opens a document or folder, by its absolute path in bytes, in the application that the desktop's own
// associations assign to its kind (https://specifications.freedesktop.org/mime-apps-spec/latest). The
// document itself is never run, whatever its mode says. The startup id, if not empty, is handed to the
// application: with it a window manager lets the application come to the front. What the application writes
// is dropped: it isn't this program that says it. Failure is told in a line on the standard error.
void OpenInAssignedApplication(const std::string& path, const std::string& startup_id);

// Opens a web address in the user's browser, as xdg-open finds it. Output and failure are as above.
void OpenInBrowser(const std::string& address);

}  // namespace varnith
