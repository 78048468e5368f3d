#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace varnith {

// The program ignores most failures silently. To find out why something didn't work, start it with
// VARNITH_TRACE=1 in the environment. Then each ignored failure writes a line to standard error: what was
// tried, on what, and the system's message. With tracing off a failure costs the test of a flag. These
// functions may be called from any thread and keep errno.

// Whether tracing is on. A caller that has to compose an argument asks first.
bool IsTracing();

// Writes a line such as "Varnith: can't open /folder/file: No such file or directory" if tracing is on.
// `tried` is a verb, with the kind of its object where that isn't plain; `on` is the object and may be empty;
// `why` is the reason.
void TraceFailure(std::string_view tried, std::string_view on, std::string_view why);

// The same with the system's message for errno as the reason.
void TraceErrno(std::string_view tried, std::string_view on);

// The same for an exception that does not end the program, with its class as the reason.
void TraceException(const std::exception& error);

// Writes such a line whether tracing is on or off. Control characters are written as "?".
void TellFailure(std::string_view tried, std::string_view on, std::string_view why);

}  // namespace varnith
