#include "platform/base/Text.h"

#include <algorithm>
#include <clocale>
#include <cwctype>

namespace varnith {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

char LowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool IsAscii(std::string_view text) {
    return std::none_of(text.begin(), text.end(),
                        [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

struct Character {
    std::int32_t code;
    std::size_t bytes;
    bool valid;
};

// The character at the start of a text that is not empty (RFC 3629, section 4). What is no UTF-8 gives its
// first byte.
Character FirstCharacter(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    const Character broken{lead, 1, false};
    if (lead < 0x80) return {lead, 1, true};
    const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < bytes) return broken;
    std::int32_t code = lead & (0xFF >> (bytes + 1));
    for (std::size_t i = 1; i < bytes; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return broken;
        code = code << 6 | (byte(i) & 0x3F);
    }
    const bool overlong = (bytes == 3 && code < 0x800) || (bytes == 4 && code < 0x10000);
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (overlong || surrogate || code > 0x10FFFF) return broken;
    return {code, bytes, true};
}

void AppendUtf8(std::string& text, std::uint32_t code) {
    const auto tail = [&](int shift) { text += static_cast<char>(0x80 | (code >> shift & 0x3F)); };
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += static_cast<char>(0xC0 | code >> 6);
        tail(0);
    } else if (code < 0x10000) {
        text += static_cast<char>(0xE0 | code >> 12);
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | code >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

// Case pairs as the C library's own UTF-8 locale has them, whatever locale the user runs.
locale_t CaseLocale() {
    static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

// Skips `count` characters and returns the number of bytes skipped.
std::size_t BytesOf(std::string_view text, std::int32_t count) {
    std::size_t bytes = 0;
    for (; count > 0 && bytes < text.size(); --count) bytes += FirstCharacter(text.substr(bytes)).bytes;
    return bytes;
}

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

std::int32_t CountFields(std::string_view text, std::string_view separator) {
    if (text.empty()) return 0;
    if (separator.empty()) return 1;
    std::int32_t fields = 1;
    for (std::size_t at = text.find(separator); at != text.npos;
         at = text.find(separator, at + separator.size()))
        ++fields;
    return fields;
}

std::string NthField(std::string_view text, std::string_view separator, std::int32_t n) {
    if (n < 1) return {};
    std::size_t start = 0;
    for (; n > 1; --n) {
        const std::size_t at = separator.empty() ? text.npos : text.find(separator, start);
        if (at == text.npos) return {};
        start = at + separator.size();
    }
    const std::size_t end = separator.empty() ? text.npos : text.find(separator, start);
    return std::string(text.substr(start, end == text.npos ? end : end - start));
}

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
        if (character.valid && character.code >= 0x80)
            AppendUtf8(folded, towlower_l(static_cast<wint_t>(character.code), CaseLocale()));
        else
            folded += LowerAscii(text.front());
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
