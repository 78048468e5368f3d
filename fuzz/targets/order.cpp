#include <cassert>
#include <tuple>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "platform/base/Text.h"

static std::string Key(const std::string& text) {
    std::string key;
    varnith::AppendNaturalKey(key, text);
    return key;
}

// The parts by which the natural order compares texts: numbers and single characters, and last all bytes.
static auto Parts(const std::string& text) {
    constexpr auto Digits = "0123456789";
    std::vector<std::tuple<unsigned char, std::size_t, std::string>> parts;
    for (std::size_t i = 0, end; i < text.size(); i = end) {
        end = std::min(text.find_first_not_of(Digits, i), text.size());
        const std::string digits = text.substr(i, end - i);
        const std::string number = digits.substr(std::min(digits.find_first_not_of('0'), digits.size()));
        const char lower = text[i] >= 'A' && text[i] <= 'Z' ? static_cast<char>(text[i] | 0x20) : text[i];
        parts.emplace_back(digits.empty() ? lower : '0', number.size(), number);
        if (digits.empty()) ++end;
    }
    return std::pair(parts, text);
}

// The keys of two texts without NUL compare as the parts do.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const std::string a = input.ConsumeRandomLengthString();
    const std::string b = input.ConsumeRemainingBytesAsString();
    if (a.find('\0') != a.npos || b.find('\0') != b.npos) return -1;
    assert((Key(a) <=> Key(b)) == (Parts(a) <=> Parts(b)));
    return 0;
}
