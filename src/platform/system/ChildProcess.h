#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

#include "platform/base/FileDescriptor.h"

namespace varnith {

// Starts a program in a new process. The process has a session of its own (setsid(2)), so that it outlives
// this program and its terminal, empty input, and none of this program's open files. Its standard output and
// error go to the two given files, or to this program's own if those are empty. The first argument is the
// absolute path of the program. Returns the process id, or 0 on failure. The caller has to call WaitForEnd,
// or IsRunning until that is false, or the process stays a zombie.
pid_t StartProcess(std::vector<std::string> arguments, const FileDescriptor& output = {},
                   const FileDescriptor& errors = {});

// Waits for the end of a process of StartProcess and returns its exit status, or -1 if a signal has killed
// it. REQUIRES, here and below: neither function has reported its end yet, because afterwards its id may
// belong to another process.
int WaitForEnd(pid_t process);

// Whether the process still runs. Doesn't wait.
bool IsRunning(pid_t process);

}  // namespace varnith
