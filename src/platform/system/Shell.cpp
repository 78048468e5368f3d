#include "platform/system/Shell.h"

#include <array>

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "platform/base/FileDescriptor.h"
#include "platform/system/ChildProcess.h"

namespace varnith {

namespace {

// A stream of the command, from our end of a pipe to its end.
struct Stream {
    Stream() {
        std::array<int, 2> ends{-1, -1};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) return;
        ours = FileDescriptor(ends[0]);
        theirs = FileDescriptor(ends[1]);
    }

    // Reads a piece, waiting for it. False at the end of the stream.
    bool Read() {
        std::array<char, 4096> piece;
        const ssize_t count = read(ours.Descriptor(), piece.data(), piece.size());
        if (count > 0) text.append(piece.data(), static_cast<std::size_t>(count));
        return count > 0 || (count < 0 && errno == EINTR);
    }

    FileDescriptor ours;
    FileDescriptor theirs;
    std::string text;
};

// Reads both streams as they fill, so that the command never waits for us, until both have ended.
void ReadAll(Stream& output, Stream& errors) {
    std::array<pollfd, 2> open{pollfd{output.ours.Descriptor(), POLLIN, 0},
                               pollfd{errors.ours.Descriptor(), POLLIN, 0}};
    while (open[0].fd >= 0 || open[1].fd >= 0) {
        if (poll(open.data(), open.size(), -1) < 0) continue;
        if (open[0].revents != 0 && !output.Read()) open[0].fd = -1;
        if (open[1].revents != 0 && !errors.Read()) open[1].fd = -1;
    }
}

}  // namespace

void Shell::Execute(const std::string& command_line) {
    result_.clear();
    Stream output;
    Stream errors;
    const pid_t process = StartProcess({"/bin/sh", "-c", command_line}, output.theirs, errors.theirs);
    output.theirs = {};
    errors.theirs = {};
    if (process == 0) return;
    ReadAll(output, errors);
    WaitForEnd(process);
    result_ = output.text + errors.text;
}

}  // namespace varnith
