#include "platform/base/Text.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <glib.h>

#include "platform/base/Characters.h"

namespace varnith {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

char LowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr std::string_view WhiteSpace = " \t\n\v\f\r";

// Appends a number so that the plain order of bytes is that of the values: its length goes in front of its
// digits, which are without leading zeros. A digit stands in front of it all, so that a number and another
// character compare as they would unchanged.
void AppendNumberKey(std::string& key, std::string_view digits) {
    constexpr std::size_t Most = 0xFF;
    key += '0';
    std::size_t length = digits.size();
    for (; length >= Most; length -= Most) key += static_cast<char>(Most);
    key += static_cast<char>(length);
    key += digits;
}

}  // namespace

std::int32_t Len(std::string_view text) {
    std::int32_t characters = 0;
    for (; !text.empty(); ++characters) text.remove_prefix(FirstCharacter(text).bytes);
    return characters;
}

std::string Mid(std::string_view text, std::int32_t start, std::int32_t length) {
    text.remove_prefix(BytesOf(text, start - 1));
    return std::string(text.substr(0, BytesOf(text, length)));
}

std::string Mid(std::string_view text, std::int32_t start) {
    return std::string(text.substr(BytesOf(text, start - 1)));
}

std::string Str(std::int64_t number) {
    return std::to_string(number);
}

double Val(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(WhiteSpace), text.size()));
    std::size_t end = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
    const auto skip_digits = [&] {
        const std::size_t start = end;
        while (end < text.size() && IsDigit(text[end])) ++end;
        return end > start;
    };
    skip_digits();
    if (end < text.size() && text[end] == '.') {
        ++end;
        skip_digits();
    }
    const std::size_t mantissa = end;
    if (end < text.size() && LowerAscii(text[end]) == 'e') {
        ++end;
        if (end < text.size() && (text[end] == '-' || text[end] == '+')) ++end;
        if (!skip_digits()) end = mantissa;
    }
    // The library's own would take more than the digits up to here, "0x" and "inf" among it.
    return g_ascii_strtod(std::string(text.substr(0, end)).c_str(), nullptr);
}

std::int32_t WholeNumber(double number) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan(number)) return 0;
    return static_cast<std::int32_t>(std::clamp(number, double{Limits::min()}, double{Limits::max()}));
}

std::string LTrim(std::string_view text) {
    return std::string(text.substr(std::min(text.find_first_not_of(WhiteSpace), text.size())));
}

std::string Trim(std::string_view text) {
    return LTrim(text.substr(0, text.find_last_not_of(WhiteSpace) + 1));
}

bool SameText(std::string_view a, std::string_view b) {
    if (IsAscii(a) && IsAscii(b))
        return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                          [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
    return FoldCase(a) == FoldCase(b);
}

std::string FoldCase(std::string_view text) {
    std::string folded;
    folded.reserve(text.size());
    while (!text.empty()) {
        const Character character = FirstCharacter(text);
        if (character.valid)
            AppendUtf8(folded, FoldedCode(character));
        else
            folded += text.front();
        text.remove_prefix(character.bytes);
    }
    return folded;
}

void AppendNaturalKey(std::string& key, std::string_view text) {
    std::size_t i = 0;
    while (i < text.size()) {
        if (!IsDigit(text[i])) {
            key += LowerAscii(text[i++]);
            continue;
        }
        while (i < text.size() && text[i] == '0') ++i;
        const std::size_t start = i;
        while (i < text.size() && IsDigit(text[i])) ++i;
        AppendNumberKey(key, text.substr(start, i - start));
    }
    key += '\0';
    key += text;
}

}  // namespace varnith
