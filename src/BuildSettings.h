#pragma once

#include <string>

namespace varnith {

// What the build fixes: the version and the addresses of the maker's servers. The values come from CMake
// cache variables (VARNITH_VERSION and so on) and nowhere else; the address of a server may carry a port.
struct BuildSettings {
    static const int MajorVersion;
    static const int MinorVersion;
    static const int BugVersion;
    // The host that is asked for newer versions.
    static const std::string UpdateServer;
    // The host of the product's web site, with its www.
    static const std::string WebServer;
    // A well-known public host, not one of the maker's. Its name is looked up to see whether there is a
    // network.
    static const std::string ReachabilityHost;
};

}  // namespace varnith
