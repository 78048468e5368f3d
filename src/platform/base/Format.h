#pragma once

#include <string>
#include <string_view>

namespace varnith {

// A number as plain decimal text, rounded to as many decimals as the mask has digits behind its point: "0"
// gives a whole number, "0.00" two decimals.
std::string Format(double number, std::string_view mask);

}  // namespace varnith
