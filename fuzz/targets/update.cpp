#include <cassert>
#include <cstdio>

#include "app/App.h"
#include "platform/base/Text.h"
#include "update/UpdateChecker.h"

using namespace varnith;

// The keys and values of a data file are parts of its lines, and a version is offered if it is newer.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const App app;  // has version 1.2.3
    const std::string content(reinterpret_cast<const char*>(data), size);
    const auto found = UpdateChecker::ParseDataFile(content);
    for (std::int32_t i = 0; i < found->Count(); ++i)
        for (const std::string& part : {found->Key(i), found->Value(found->Key(i))})
            assert(part == Trim(part) && part.find_first_of("\r\n") == part.npos);

    MakeRef<UpdateChecker>()->Event_PageReceived("", 200, nullptr, content);
    const bool is_offered = static_cast<bool>(app.FrontWindow());
    const std::string version = found->Lookup("version", "");
    int major = 0, minor = 0, bug = 0, length = 0;
    std::sscanf(version.c_str(), "%4d.%4d.%4d%n", &major, &minor, &bug, &length);
    assert(length == 0 || static_cast<std::size_t>(length) < version.size() ||
           is_offered == (major * 1000 + minor * 100 + bug > 1203));
    return 0;
}
