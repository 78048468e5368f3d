#include <cassert>

#include "platform/base/Text.h"
#include "support/FormInputs.h"

// The names and values in a page are words of it, without the marks around them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string page(reinterpret_cast<const char*>(data), size);
    const auto inputs = varnith::FormInputs(page);
    assert(inputs->Count() < varnith::CountFields(page, "<input type=") || inputs->Count() == 0);
    for (std::int32_t i = 0; i < inputs->Count(); ++i)
        for (const std::string& word : {inputs->Key(i), inputs->Value(inputs->Key(i))})
            assert(word == varnith::Trim(word) && word.find_first_of(" >\"") == word.npos);
    return 0;
}
