#pragma once

#include <cstdint>

namespace varnith {

// Asks the window manager to raise the windows of another process, given by its id. Works on X11 only, by
// _NET_CLIENT_LIST, _NET_WM_PID and _NET_ACTIVE_WINDOW
// (https://specifications.freedesktop.org/wm-spec/latest). Does nothing on Wayland, which lets no program
// raise the windows of another.
void RaiseWindowsOf(std::int64_t process);

}  // namespace varnith
