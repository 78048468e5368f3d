#include <cassert>
#include <set>

#include "http/InternetHeaders.h"
#include "platform/base/Text.h"

static bool HasNoGaps(const varnith::InternetHeaders& headers) {
    std::set<std::string> names;
    for (std::int32_t i = 0; i < headers.Count(); ++i) names.insert(varnith::FoldCase(headers.Name(i)));
    std::int32_t count = 0;
    for (const std::string& name : names) count += headers.NameCount(name);
    return count == headers.Count();
}

// Each header of a block is found by its name and number, even after another header of that name was deleted.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    varnith::InternetHeaders headers;
    headers._ParseHeaders(std::string(reinterpret_cast<const char*>(data), size));
    assert(HasNoGaps(headers));
    assert(headers._FormatEmailHeaders().size() >= headers._FormatHTTPHeaders().size());
    if (headers.Count() == 0) return 0;
    const std::string name = headers.Name(headers.Count() / 2);
    const std::int32_t count = headers.NameCount(name);
    headers.Delete(name, count / 2);
    assert(headers.NameCount(name) == count - 1 && HasNoGaps(headers));
    headers.Delete(name);
    assert(headers.NameCount(name) == 0 && HasNoGaps(headers));
    return 0;
}
