#include "platform/system/ApplicationLaunch.h"

#include <map>
#include <string>

#include <sys/types.h>

#include "platform/base/Trace.h"
#include "platform/files/FileSystem.h"
#include "platform/system/ChildProcess.h"
#include "platform/ui/Desktop.h"

namespace varnith {

namespace {

bool IsExecutable(const std::string& path) {
    const auto status = FileSystem::Current().Status(path);
    return status && status->kind == FileKind::Regular && (status->mode & 0111) != 0;
}

// The path of an application's executable; empty if there is none. For a bundle that is the executable in
// Contents/MacOS, whatever its name: users may rename the bundle, so its name isn't that of the executable.
std::string ProgramOf(const Ref<FolderItem>& application) {
    const std::string path = application->AbsolutePath();
    if (!application->Directory()) return IsExecutable(path) ? path : "";
    const Listing programs(std::make_shared<OpenFolder>(path + "/Contents/MacOS"));
    for (std::size_t place = 0; place < programs.Size(); ++place) {
        const std::string program = programs.Folder().PathOf(programs[place].name);
        if (IsExecutable(program)) return program;
    }
    return {};
}

}  // namespace

void LaunchApplication(const Ref<FolderItem>& application, bool to_front) {
    static std::map<std::string, pid_t> launched;
    pid_t& process = launched[application->AbsolutePath()];
    if (process != 0 && IsRunning(process)) {
        if (to_front) Desktop::Current().BringToFront(process);
        return;
    }
    const std::string program = ProgramOf(application);
    if (program.empty() && IsTracing())
        TraceFailure("launch", application->AbsolutePath(), "it has no executable");
    process = program.empty() ? 0 : StartProcess({program});
}

}  // namespace varnith
