#include "platform/base/Base64.h"

#include <cstdint>

namespace varnith {

std::string EncodeBase64(std::string_view bytes) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string encoded;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t group = 0;
        for (std::size_t j = i; j < i + 3; ++j)
            group = group << 8 | (j < bytes.size() ? static_cast<unsigned char>(bytes[j]) : 0U);
        for (std::size_t digit = 0; digit < 4; ++digit) {
            const bool padding = i + digit > bytes.size();
            encoded += padding ? '=' : digits[group >> (18 - 6 * digit) & 0x3F];
        }
    }
    return encoded;
}

}  // namespace varnith
