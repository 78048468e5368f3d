#pragma once

#include <cstddef>
#include <string>

#include <fcntl.h>
#include <sys/types.h>

#include "platform/base/FileDescriptor.h"

namespace varnith {

// How FileSystem names files in its calls and traces.

// A path in the form that the *at calls take: a descriptor and a path relative to it. The system takes no
// path of PATH_MAX bytes or more, so a longer one is opened piece by piece, each piece relative to the folder
// of the piece before it. A relative path starts at `base`. REQUIRES: the path outlives this object.
class Place {
  public:
    explicit Place(const std::string& whole, int base = AT_FDCWD);

    // After a failed step the descriptor is -1 and every later call fails.
    int Base() const { return stepped_ ? folder_.Descriptor() : base_; }
    const char* Path() const { return path_; }

    // Opens the file as openat(2) does, closed on exec. Empty on failure.
    FileDescriptor Open(int flags, mode_t mode = 0666) const;

  private:
    bool StepDown();

    const int base_;
    FileDescriptor folder_;
    bool stepped_ = false;
    const char* path_;  // relative to Base() unless it begins with a slash
    std::size_t length_;
};

// The path of an open file, for a trace. Leaves errno as it is.
std::string PathOf(const FileDescriptor& file);

}  // namespace varnith
