#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace varnith {

// The program is silent about most failures. Whoever has to find out why something did not come about starts it with
// VARNITH_TRACE=1 in the environment: then each failure that is passed over leaves a line on the standard error, with
// what was tried, on what, and the system's own words for why. Without it, a failure costs the look at a flag. May be
// called from any thread. None of these changes errno.

// Whether failures are traced. For a caller that would have to compose what it tells.
bool IsTracing();

// "Varnith: can't open /folder/file: No such file or directory": what was tried as a verb with its object's kind if
// need be, on what, which may be empty, and why.
void TraceFailure(std::string_view tried, std::string_view on, std::string_view why);

// The same with errno's words for why.
void TraceErrno(std::string_view tried, std::string_view on);

// An exception that the program lives on with, by its class.
void TraceException(const std::exception& error);

// Writes such a line whether failures are traced or not. Line ends and what a terminal takes for commands are shown
// as "?".
void TellFailure(std::string_view tried, std::string_view on, std::string_view why);

}  // namespace varnith
