#pragma once

#include <string>

namespace varnith {

// Information about the operating system, the machine and the user.
class SystemInformationMBS {
  public:
    // The system's name: NAME in /etc/os-release, such as "Debian GNU/Linux", or "Linux" if that is missing
    // (https://www.freedesktop.org/software/systemd/man/os-release.html).
    static std::string OSName();

    // The system's version: the first of VERSION, VERSION_ID and BUILD_ID that /etc/os-release has, such as
    // "12 (bookworm)"; empty if it has none.
    static std::string OSVersionString();

    // Sizes in bytes. LogicalRAM is the memory of the machine or, if the system doesn't tell that, the memory
    // that the kernel manages. AvailableRAM is what programs can still use without swapping.
    static double LogicalRAM();
    static double AvailableRAM();

    // The serial number of the hardware. Most systems show it to root only; the result is then an id of this
    // installation that never changes. It is a hash of /etc/machine-id, which is to be kept secret
    // (https://www.freedesktop.org/software/systemd/man/machine-id.html). Empty if there is neither.
    static std::string MacSerialNumber();

    // The login name of the process's user; empty if the system has none.
    static std::string Username();
};

}  // namespace varnith
