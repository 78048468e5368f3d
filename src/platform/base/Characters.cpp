#include "platform/base/Characters.h"

#include <algorithm>
#include <clocale>
#include <cwctype>

namespace varnith {

namespace {

// Case pairs as the C library's own UTF-8 locale has them, whatever locale the user runs.
locale_t CaseLocale() {
    static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

}  // namespace

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

// The C library lowers the capital I with a dot to a plain i, which is its small letter in Turkish only:
// elsewhere the two are different letters (https://www.unicode.org/Public/UNIDATA/CaseFolding.txt, status T).
std::int32_t FoldedCode(const Character& character) {
    constexpr std::int32_t CapitalDottedI = 0x130;
    if (character.code == CapitalDottedI) return character.code;
    if (character.code >= 'A' && character.code <= 'Z') return character.code - 'A' + 'a';
    if (!character.valid || character.code < 0x80) return character.code;
    return static_cast<std::int32_t>(towlower_l(static_cast<wint_t>(character.code), CaseLocale()));
}

void AppendUtf8(std::string& text, std::int32_t code) {
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

std::size_t BytesOf(std::string_view text, std::int32_t count) {
    std::size_t bytes = 0;
    for (; count > 0 && bytes < text.size(); --count) bytes += FirstCharacter(text.substr(bytes)).bytes;
    return bytes;
}

bool IsAscii(std::string_view text) {
    return std::none_of(text.begin(), text.end(),
                        [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

}  // namespace varnith
