#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

#include "platform/base/FileDescriptor.h"

namespace varnith {

// Starts a program as a process of its own: in a session of its own, so that it outlives this one and its
// terminal, with no input and none of this program's open files. What it writes goes to the two given files,
// or where this program's own output goes if they are empty. The arguments begin with the program's absolute
// path. Returns the process id, or 0 if the program could not be started.
pid_t StartProcess(std::vector<std::string> arguments, const FileDescriptor& output = {},
                   const FileDescriptor& errors = {});

// Waits for the end of a process that was started so, and returns its exit status, -1 if a signal has ended
// it. REQUIRES: it has not been seen to end.
int WaitForEnd(pid_t process);

// Whether it still runs. REQUIRES: it has not been seen to end, since then its number may be another's.
bool IsRunning(pid_t process);

}  // namespace varnith
