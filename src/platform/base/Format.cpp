#include "platform/base/Format.h"

#include <charconv>
#include <limits>

namespace varnith {

std::string Format(double number, std::string_view mask) {
    const std::size_t point = mask.find('.');
    const int decimals = point == mask.npos ? 0 : static_cast<int>(mask.size() - point - 1);
    std::string text(std::numeric_limits<double>::max_exponent10 + 4 + static_cast<std::size_t>(decimals),
                     '\0');
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, decimals);
    text.resize(static_cast<std::size_t>(end.ptr - text.data()));
    return text;
}

}  // namespace varnith
