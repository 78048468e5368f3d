#include "platform/system/AssignedApplication.h"

#include <memory>

#include <gio/gio.h>

namespace varnith {

namespace {

struct Releaser {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(char* text) const { g_free(text); }
};

}  // namespace

void OpenInAssignedApplication(const std::string& path, const std::string& startup_id) {
    const std::unique_ptr<GAppLaunchContext, Releaser> context(g_app_launch_context_new());
    if (!startup_id.empty())
        g_app_launch_context_setenv(context.get(), "DESKTOP_STARTUP_ID", startup_id.c_str());
    // As a file:// address, in which every byte of the path has its place, text or not.
    const std::unique_ptr<GFile, Releaser> file(g_file_new_for_path(path.c_str()));
    const std::unique_ptr<char, Releaser> address(g_file_get_uri(file.get()));
    g_app_info_launch_default_for_uri(address.get(), context.get(), nullptr);
}

}  // namespace varnith
