#pragma once

#include <functional>
#include <type_traits>

#include "platform/base/Guard.h"
#include "platform/base/Ref.h"

namespace varnith {

// Calls the handler in the slot of an event, within Guarded. Returns the handler's result, or Result() if the
// slot is empty or an exception leaves the handler. The handler may release its owner and may assign to its
// own slot: both the owner and the handler live until the call has ended. The owner may be null.
template <class Result, class... Parameters, class... Arguments>
Result RunSlot(RefCounted* owner, const std::function<Result(Parameters...)>& slot,
               Arguments&&... arguments) {
    if (!slot) return Result();
    const Ref<RefCounted> alive(owner);
    const auto handler = slot;
    if constexpr (std::is_void_v<Result>) {
        Guarded([&] { handler(arguments...); });
    } else {
        Result result{};
        Guarded([&] { result = handler(arguments...); });
        return result;
    }
}

}  // namespace varnith
