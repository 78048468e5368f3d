#pragma once

#include <string>

namespace varnith {

// Opens a document or folder, by its absolute path in bytes, in the application that the desktop's own
// associations assign to its kind (https://specifications.freedesktop.org/mime-apps-spec/latest). The
// document itself is never run, whatever its mode says. The startup id, if not empty, is handed to the
// application: with it a window manager lets the application come to the front. Failure is silent.
void OpenInAssignedApplication(const std::string& path, const std::string& startup_id);

}  // namespace varnith
