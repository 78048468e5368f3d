#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace varnith {

// What the text operations know of a single character. For their own use.

struct Character {
    std::int32_t code;
    std::size_t bytes;
    bool valid;
};

// The character at the start of a text that is not empty (RFC 3629, section 4). What is no UTF-8 gives its
// first byte.
Character FirstCharacter(std::string_view text);

// The code of a character in the form that all cases of it share. What is no UTF-8 stays as it is.
std::int32_t FoldedCode(const Character& character);

void AppendUtf8(std::string& text, std::int32_t code);

// The number of bytes that the first `count` characters take, or all of them if there are fewer.
std::size_t BytesOf(std::string_view text, std::int32_t count);

bool IsAscii(std::string_view text);

}  // namespace varnith
