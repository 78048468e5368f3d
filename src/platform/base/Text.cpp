#include "platform/base/Text.h"

#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>

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

// Takes the digits at the front of a text off it and returns them without their leading zeros.
std::string_view TakeNumber(std::string_view& text) {
    std::size_t end = 0;
    while (end < text.size() && IsDigit(text[end])) ++end;
    std::size_t start = 0;
    while (start < end && text[start] == '0') ++start;
    const std::string_view digits = text.substr(start, end - start);
    text.remove_prefix(end);
    return digits;
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

std::int32_t Asc(std::string_view text) {
    return text.empty() ? 0 : FirstCharacter(text).code;
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
    static const locale_t plain = newlocale(LC_NUMERIC_MASK, "C", nullptr);
    return strtod_l(std::string(text.substr(0, end)).c_str(), nullptr, plain);
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

std::strong_ordering CompareNaturally(std::string_view a, std::string_view b) {
    std::string_view left = a;
    std::string_view right = b;
    while (!left.empty() && !right.empty()) {
        const char x = left.front();
        const char y = right.front();
        if (IsDigit(x) && IsDigit(y)) {
            const std::string_view m = TakeNumber(left);
            const std::string_view n = TakeNumber(right);
            if (m.size() != n.size()) return m.size() <=> n.size();
            if (m != n) return m <=> n;
            continue;
        }
        if (LowerAscii(x) != LowerAscii(y))
            return static_cast<unsigned char>(LowerAscii(x)) <=> static_cast<unsigned char>(LowerAscii(y));
        left.remove_prefix(1);
        right.remove_prefix(1);
    }
    if (left.size() != right.size()) return left.size() <=> right.size();
    return a <=> b;
}

}  // namespace varnith
