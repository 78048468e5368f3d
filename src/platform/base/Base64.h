#pragma once

#include <string>
#include <string_view>

namespace varnith {

// The bytes in Base64 form with padding, all in one line (RFC 4648, section 4).
std::string EncodeBase64(std::string_view bytes);

}  // namespace varnith
