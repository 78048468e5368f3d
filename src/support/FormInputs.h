#pragma once

#include <string>

#include "platform/base/Dictionary.h"
#include "platform/base/Ref.h"

namespace varnith {

// The values by name of the inputs in the first form of a page. It reads the page as plain text: a name or a
// value ends at the first blank, in quotation marks or not.
Ref<Dictionary<std::string>> FormInputs(const std::string& html);

}  // namespace varnith
