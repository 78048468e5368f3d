#include "support/FormInputs.h"

#include "platform/base/Text.h"
#include "platform/threads/Scheduler.h"

namespace varnith {

namespace {

std::string Attribute(const std::string& input, const std::string& mark) {
    const std::string rest = NthField(input, mark, 2);
    return Trim(ReplaceAll(NthField(NthField(rest, " ", 1), ">", 1), "\"", ""));
}

}  // namespace

Ref<Dictionary<std::string>> FormInputs(const std::string& html) {
    constexpr const char* InputMark = "<input type=";
    auto inputs = MakeRef<Dictionary<std::string>>();
    const std::string inside = NthField(NthField(html, "<form", 2), "</form>", 1);
    for (std::int32_t i = 2; i <= CountFields(inside, InputMark); ++i) {
        const std::string input = NthField(inside, InputMark, i);
        inputs->SetValue(Attribute(input, "name="), Attribute(input, "value="));
        Yield();
    }
    return inputs;
}

}  // namespace varnith
