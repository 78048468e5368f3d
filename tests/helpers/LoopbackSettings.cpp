#include <cstdlib>

#include "BuildSettings.h"

namespace varnith {

static std::string FromEnvironment(const char* name, const std::string& otherwise) {
    const char* value = std::getenv(name);
    return value ? value : otherwise;
}

// Whoever starts the program chooses the hosts. A host name of 300 characters is invalid, so no name server
// is asked for it.
const int BuildSettings::MajorVersion = 1;
const int BuildSettings::MinorVersion = 2;
const int BuildSettings::BugVersion = 3;
const std::string BuildSettings::UpdateServer =
    FromEnvironment("TEST_UPDATE_SERVER", "127.0.0.1:1");  // by default a port without a server
const std::string BuildSettings::WebServer = FromEnvironment("TEST_WEB_SERVER", "www.varnith.example");
const std::string BuildSettings::ReachabilityHost =
    FromEnvironment("TEST_REACHABILITY_HOST", std::string(300, 'x'));

}  // namespace varnith
