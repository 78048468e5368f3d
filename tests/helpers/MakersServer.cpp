#include "helpers/MakersServer.h"

#include "BuildSettings.h"

namespace varnith {

test::RawServer& test::MakersServer() {
    static RawServer server;
    return server;
}

const int BuildSettings::MajorVersion = 1;
const int BuildSettings::MinorVersion = 2;
const int BuildSettings::BugVersion = 3;
const std::string BuildSettings::UpdateServer = test::MakersServer().At("");
const std::string BuildSettings::WebServer = test::MakersServer().At("");
const std::string BuildSettings::ReachabilityHost = "localhost";

}  // namespace varnith
