#pragma once

#include <string>

namespace varnith {

// What the operating system says of itself.
class SystemInformationMBS {
  public:
    // The system's name as /etc/os-release has it under NAME, "Debian GNU/Linux" for one; "Linux" where the
    // file says nothing (https://www.freedesktop.org/software/systemd/man/os-release.html).
    static std::string OSName();
};

}  // namespace varnith
