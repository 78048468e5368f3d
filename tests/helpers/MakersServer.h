#pragma once

#include "helpers/RawServer.h"

namespace varnith::test {

// Stands in for both of the maker's servers. The program under test has version 1.2.3.
RawServer& MakersServer();

}  // namespace varnith::test
