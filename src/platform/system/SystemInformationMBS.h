#pragma once

#include <string>

namespace varnith {

// What the operating system says of itself, its machine and its user.
class SystemInformationMBS {
  public:
    // The system's name as /etc/os-release has it under NAME, "Debian GNU/Linux" for one; "Linux" where the
    // file says nothing (https://www.freedesktop.org/software/systemd/man/os-release.html).
    static std::string OSName();

    // Its version as the same file has it under VERSION, "12 (bookworm)" for one, or under VERSION_ID or
    // BUILD_ID where that is missing; empty where there is none.
    static std::string OSVersionString();

    // The memory of the machine in bytes, and what programs could still take of it without swapping. Where
    // the system doesn't tell the size of what is built in, it is what the system has for its use.
    static double LogicalRAM();
    static double AvailableRAM();

    // The serial number of the hardware. Most systems show it to the administrator only: then it is an
    // identifier of this installation, which stays the same, is made from /etc/machine-id and doesn't give
    // that away (https://www.freedesktop.org/software/systemd/man/machine-id.html). Empty where there is
    // neither.
    static std::string MacSerialNumber();

    // The name under which the user has logged in.
    static std::string Username();
};

}  // namespace varnith
