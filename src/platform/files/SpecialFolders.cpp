#include "platform/files/SpecialFolders.h"

#include <cstdlib>
#include <string>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/base/Trace.h"
#include "platform/files/FileSystem.h"

namespace varnith {

namespace {

// The value of an environment variable if it is an absolute path, else empty.
std::string PathFromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value && *value == '/' ? value : "";
}

std::string HomeFolder() {
    const std::string home = PathFromEnvironment("HOME");
    if (!home.empty()) return home;
    const passwd* user = getpwuid(getuid());
    return user && user->pw_dir ? user->pw_dir : "/";
}

std::string TemporaryPath() {
    const std::string configured = PathFromEnvironment("TMPDIR");
    return (configured.empty() ? "/tmp" : configured) + "/varnith-" + std::to_string(geteuid());
}

}  // namespace

Ref<FolderItem> PreferencesFolder() {
    const std::string configured = PathFromEnvironment("XDG_CONFIG_HOME");
    const std::string path = configured.empty() ? HomeFolder() + "/.config" : configured;
    FileSystem::Current().MakeFolders(path);
    return FolderItem::FromPath(path);
}

Ref<FolderItem> TemporaryFolder() {
    FileSystem::Current().MakeFolder(TemporaryPath());
    return ExistingTemporaryFolder();
}

Ref<FolderItem> ExistingTemporaryFolder() {
    const FileSystem& disk = FileSystem::Current();
    const std::string path = TemporaryPath();
    const auto status = disk.EntryStatus(path);
    const bool is_own = status && status->kind == FileKind::Directory && status->owner == geteuid() &&
                        (status->mode & (S_IWGRP | S_IWOTH)) == 0;
    if (status && !is_own) TraceFailure("use", path, "it is no folder of this user's own");
    // Unpacking an archive here may have changed the mode, which lets others read it.
    return is_own && disk.SetMode(path, S_IRWXU) ? FolderItem::FromPath(path) : nullptr;
}

}  // namespace varnith
