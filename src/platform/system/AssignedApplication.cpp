#include "platform/system/AssignedApplication.h"

#include <memory>
#include <system_error>
#include <thread>

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include "platform/base/Trace.h"
#include "platform/files/FileSystem.h"
#include "platform/system/ChildProcess.h"

namespace varnith {

namespace {

struct Releaser {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(char* text) const { g_free(text); }
};
template <class T>
using Owned = std::unique_ptr<T, Releaser>;

struct GErrorFreer {
    void operator()(GError* error) const { g_error_free(error); }
};

// The application for a file whose name tells its kind; none for other items. GIO by itself takes an empty
// file for a text, whatever its name.
Owned<GAppInfo> ApplicationByName(const std::string& path) {
    const auto status = FileSystem::Current().Status(path);
    if (!status || status->kind != FileKind::Regular) return nullptr;
    gboolean uncertain = FALSE;
    const Owned<char> kind(g_content_type_guess(path.c_str(), nullptr, 0, &uncertain));
    return Owned<GAppInfo>(uncertain ? nullptr : g_app_info_get_default_for_type(kind.get(), FALSE));
}

// Starts an application for a file:// address, in which every byte of a path has its place, text or not.
bool Start(const Owned<GAppInfo>& application, char* address, GAppLaunchContext* context, GError** error) {
    GList addresses{address, nullptr, nullptr};
    constexpr auto Silent = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                                                     G_SPAWN_STDERR_TO_DEV_NULL);
    return g_desktop_app_info_launch_uris_as_manager(G_DESKTOP_APP_INFO(application.get()), &addresses,
                                                     context, Silent, nullptr, nullptr, nullptr, nullptr,
                                                     error);
}

// What a failure of xdg-open, by its exit status, or of the way to it, comes to.
void TellFailureOfBrowser(const std::string& address, int status) {
    constexpr int NoBrowser = 3;
    constexpr int NoXdgOpen = 127;
    TellFailure("open", address,
                status == NoBrowser   ? "there is no browser"
                : status == NoXdgOpen ? "xdg-open is missing"
                                      : "the browser can't be started");
}

}  // namespace

void OpenInAssignedApplication(const std::string& path, const std::string& startup_id) {
    const Owned<GAppLaunchContext> context(g_app_launch_context_new());
    if (!startup_id.empty())
        g_app_launch_context_setenv(context.get(), "DESKTOP_STARTUP_ID", startup_id.c_str());
    const Owned<GFile> file(g_file_new_for_path(path.c_str()));
    const Owned<char> address(g_file_get_uri(file.get()));
    GError* error = nullptr;
    auto application = ApplicationByName(path);
    if (!application) application.reset(g_file_query_default_handler(file.get(), nullptr, &error));
    if (application && Start(application, address.get(), context.get(), &error)) return;
    const std::unique_ptr<GError, GErrorFreer> failure(error);
    TellFailure("open", path, failure->message);
}

void OpenInBrowser(const std::string& address) {
    const FileDescriptor nowhere = FileSystem::Current().OpenForWriting("/dev/null", false);
    const pid_t process = StartProcess({"/usr/bin/env", "xdg-open", address}, nowhere, nowhere);
    if (process == 0) return TellFailureOfBrowser(address, -1);
    // Where there is no desktop, it lasts as long as the browser does.
    try {
        std::thread([process, address] {
            const int status = WaitForEnd(process);
            if (status != 0) TellFailureOfBrowser(address, status);
        }).detach();
    } catch (const std::system_error&) {
        // Nobody hears of a failure then.
    }
}

}  // namespace varnith
