#include "platform/base/Characters.h"

#include <algorithm>
#include <array>

#include <glib.h>

namespace varnith {

Character FirstCharacter(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80) return {lead, 1, true};
    // GLib returns (gunichar)-1 or (gunichar)-2 for invalid, overlong or incomplete sequences.
    const gunichar code = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
    if (code >= static_cast<gunichar>(-2)) return {lead, 1, false};
    return {static_cast<std::int32_t>(code), static_cast<std::size_t>(g_unichar_to_utf8(code, nullptr)),
            true};
}

// GLib maps the capital I with a dot to "i". That holds in Turkic languages only; elsewhere the two are
// different letters (https://www.unicode.org/Public/UNIDATA/CaseFolding.txt, status T).
std::int32_t FoldedCode(const Character& character) {
    constexpr std::int32_t CapitalDottedI = 0x130;
    if (character.code == CapitalDottedI) return character.code;
    if (character.code >= 'A' && character.code <= 'Z') return character.code - 'A' + 'a';
    if (!character.valid || character.code < 0x80) return character.code;
    return static_cast<std::int32_t>(g_unichar_tolower(static_cast<gunichar>(character.code)));
}

void AppendUtf8(std::string& text, std::int32_t code) {
    std::array<char, 6> bytes;
    const gint count = g_unichar_to_utf8(static_cast<gunichar>(code), bytes.data());
    text.append(bytes.data(), static_cast<std::size_t>(count));
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
