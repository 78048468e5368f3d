#pragma once

#include <functional>
#include <type_traits>

#include "platform/base/Guard.h"
#include "platform/base/Ref.h"

namespace varnith {

// Runs the slot of an event, if there is one, inside the guard of event handlers. The slot may drop its
// owner, which lives until it has ended, and may put another slot in its own place. The owner may be null.
// Returns what the slot does; without one, or when an exception leaves it, the plain value of the type.
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
