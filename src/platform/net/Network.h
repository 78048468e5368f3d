#pragma once

#include <string>

namespace varnith {

// The system's network.
class Network {
  public:
    // Looks up a host name and returns its numeric address as text; empty if it can't be resolved. Nothing is
    // sent to that host. Waits for the answer; the program's threads run on meanwhile, its windows don't.
    static std::string LookupIPAddress(const std::string& name);
};

}  // namespace varnith
