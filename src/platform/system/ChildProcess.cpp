#include "platform/system/ChildProcess.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/base/Trace.h"

namespace varnith {

namespace {

// The differences between the new process and this one, for posix_spawn(3). Done by hand, because neither Qt
// nor GLib gives a child all of these: a session, no inherited descriptors, and an end that can be waited
// for.
class Changes {
  public:
    Changes(const FileDescriptor& output, const FileDescriptor& errors) {
        posix_spawn_file_actions_init(&files);
        posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        if (output) posix_spawn_file_actions_adddup2(&files, output.Descriptor(), STDOUT_FILENO);
        if (errors) posix_spawn_file_actions_adddup2(&files, errors.Descriptor(), STDERR_FILENO);
        posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);

        posix_spawnattr_init(&attributes);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes, &signals);
        sigaddset(&signals, SIGPIPE);
        posix_spawnattr_setsigdefault(&attributes, &signals);
        posix_spawnattr_setflags(&attributes,
                                 POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    Changes(const Changes&) = delete;
    Changes& operator=(const Changes&) = delete;
    ~Changes() {
        posix_spawn_file_actions_destroy(&files);
        posix_spawnattr_destroy(&attributes);
    }

    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
};

}  // namespace

pid_t StartProcess(std::vector<std::string> arguments, const FileDescriptor& output,
                   const FileDescriptor& errors) {
    const Changes changes(output, errors);
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    pid_t process = 0;
    const int failure = posix_spawn(&process, pointers.front(), &changes.files, &changes.attributes,
                                    pointers.data(), environ);
    if (failure == 0) return process;
    TraceFailure("start", arguments.front(), strerrordesc_np(failure));
    return 0;
}

int WaitForEnd(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) continue;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool IsRunning(pid_t process) {
    return waitpid(process, nullptr, WNOHANG) == 0;
}

}  // namespace varnith
