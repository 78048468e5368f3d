#include "BuildSettings.h"

#include "update/UpdateTest.h"

namespace varnith {

// The settings of a build whose update server is the test's, on a port that is free.
const int BuildSettings::MajorVersion = 1;
const int BuildSettings::MinorVersion = 0;
const int BuildSettings::BugVersion = 0;
const std::string BuildSettings::UpdateServer = test::UpdateTest::Server().At("");
const std::string BuildSettings::WebServer = "www.varnith.example";
const std::string BuildSettings::ReachabilityHost = "localhost";

}  // namespace varnith
