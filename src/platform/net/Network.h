#pragma once

#include <string>

namespace varnith {

// The system's network.
class Network {
  public:
    // Looks up a host name and returns its preferred numeric address as text, empty if it can't be resolved.
    // Sends nothing to that host. Waits for the answer; meanwhile the program's threads run, but not its
    // event loop.
    static std::string LookupIPAddress(const std::string& name);
};

}  // namespace varnith
