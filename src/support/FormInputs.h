#pragma once

#include <string>

#include "platform/base/Dictionary.h"
#include "platform/base/Ref.h"

namespace varnith {

// Returns the names and values of the inputs in the first form of a page, never nil. It searches the page as
// plain text and does not parse HTML: a name or a value ends at the first blank, even within quotation marks.
Ref<Dictionary<std::string>> FormInputs(const std::string& html);

}  // namespace varnith
