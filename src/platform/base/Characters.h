#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace varnith {

// Operations on single characters, for the text operations of Text.h only.

struct Character {
    std::int32_t code;  // the code point, or the byte if it is not valid
    std::size_t bytes;  // its length in UTF-8
    bool valid;         // whether it is valid UTF-8
};

// The first character of a text (RFC 3629, section 4). If the text begins with no valid character, the result
// is its first byte. REQUIRES: the text is not empty.
Character FirstCharacter(std::string_view text);

// The code that a character shares with its upper and lower case forms. That of an invalid byte is the byte.
std::int32_t FoldedCode(const Character& character);

// Appends a code point as UTF-8.
void AppendUtf8(std::string& text, std::int32_t code);

// The length in bytes of the first `count` characters, or of the whole text if it has fewer. 0 for a count
// below 1.
std::size_t BytesOf(std::string_view text, std::int32_t count);

bool IsAscii(std::string_view text);

}  // namespace varnith
