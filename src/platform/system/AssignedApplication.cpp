#include "platform/system/AssignedApplication.h"

#include <memory>

#include <gio/gio.h>

#include "platform/files/FileSystem.h"

namespace varnith {

namespace {

struct Releaser {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(char* text) const { g_free(text); }
};
template <class T>
using Owned = std::unique_ptr<T, Releaser>;

// The application for a file whose name tells its kind; none for other items. GIO by itself takes an empty
// file for a text, whatever its name.
Owned<GAppInfo> ApplicationByName(const std::string& path) {
    const auto status = FileSystem::Current().Status(path);
    if (!status || status->kind != FileKind::Regular) return nullptr;
    gboolean uncertain = FALSE;
    const Owned<char> kind(g_content_type_guess(path.c_str(), nullptr, 0, &uncertain));
    return Owned<GAppInfo>(uncertain ? nullptr : g_app_info_get_default_for_type(kind.get(), FALSE));
}

}  // namespace

void OpenInAssignedApplication(const std::string& path, const std::string& startup_id) {
    const Owned<GAppLaunchContext> context(g_app_launch_context_new());
    if (!startup_id.empty())
        g_app_launch_context_setenv(context.get(), "DESKTOP_STARTUP_ID", startup_id.c_str());
    const Owned<GFile> file(g_file_new_for_path(path.c_str()));
    if (const auto application = ApplicationByName(path)) {
        GList files{file.get(), nullptr, nullptr};
        g_app_info_launch(application.get(), &files, context.get(), nullptr);
        return;
    }
    // As a file:// address, in which every byte of the path has its place, text or not.
    const Owned<char> address(g_file_get_uri(file.get()));
    g_app_info_launch_default_for_uri(address.get(), context.get(), nullptr);
}

}  // namespace varnith
