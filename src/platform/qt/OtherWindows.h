#pragma once

#include <cstdint>

namespace varnith {

// Asks the window manager to bring the windows of another process to the front. Works on X11, by the hints of
// https://specifications.freedesktop.org/wm-spec/latest (_NET_CLIENT_LIST, _NET_WM_PID, _NET_ACTIVE_WINDOW);
// Wayland lets no program do that, and nothing happens.
void RaiseWindowsOf(std::int64_t process);

}  // namespace varnith
