#pragma once

#include <string>

namespace varnith {

// The version and the server addresses. The build sets them from CMake cache variables (VARNITH_VERSION and
// so on).
struct BuildSettings {
    static const int MajorVersion;
    static const int MinorVersion;
    static const int BugVersion;
    // The server that offers newer versions, as "host" or "host:port".
    static const std::string UpdateServer;
    // The product's web site, as "host" or "host:port", including its "www.".
    static const std::string WebServer;
    // The name of a well-known public host, not one of the maker's. The program resolves it to find out
    // whether there is a network.
    static const std::string ReachabilityHost;
};

}  // namespace varnith
