#include "BuildSettings.h"

namespace varnith {

// The program under test has no server, and no name to look up.
const int BuildSettings::MajorVersion = 1;
const int BuildSettings::MinorVersion = 2;
const int BuildSettings::BugVersion = 3;
const std::string BuildSettings::UpdateServer;
const std::string BuildSettings::WebServer;
const std::string BuildSettings::ReachabilityHost;

}  // namespace varnith
