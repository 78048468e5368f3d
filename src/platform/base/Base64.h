#pragma once

#include <string>
#include <string_view>

namespace varnith {

// Encodes bytes in Base64 with padding (RFC 4648, section 4), without line breaks.
std::string EncodeBase64(std::string_view bytes);

}  // namespace varnith
