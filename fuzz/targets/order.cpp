#include <cassert>
#include <regex>

#include <fuzzer/FuzzedDataProvider.h>

#include "platform/base/Text.h"

// The parts by which the natural order compares texts: numbers and single characters, and last all bytes.
static auto Parts(const std::string& text) {
    static const std::regex part("0*([0-9]+)|[^0-9]");
    std::vector<std::tuple<unsigned char, std::size_t, std::string>> parts;
    for (std::sregex_iterator i(text.begin(), text.end(), part), end; i != end; ++i) {
        const std::string number = i->str(1);
        parts.emplace_back(number.empty() ? std::tolower(i->str()[0]) : '0', number.size(), number);
    }
    return std::pair(parts, text);
}

// The keys of two texts without NUL compare as the parts do.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const std::string a = input.ConsumeRandomLengthString();
    const std::string b = input.ConsumeRemainingBytesAsString();
    if (a.find('\0') != a.npos || b.find('\0') != b.npos) return -1;
    std::string keys[2];
    varnith::AppendNaturalKey(keys[0], a);
    varnith::AppendNaturalKey(keys[1], b);
    assert((keys[0] <=> keys[1]) == (Parts(a) <=> Parts(b)));
    return 0;
}
