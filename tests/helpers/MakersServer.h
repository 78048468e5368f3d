#pragma once

#include "helpers/RawServer.h"

namespace varnith::test {

// The server that the program under test, in version 1.2.3, takes for both of the maker's.
RawServer& MakersServer();

}  // namespace varnith::test
