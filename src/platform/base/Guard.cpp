#include "platform/base/Guard.h"

#include <new>
#include <utility>

#include "platform/base/Exceptions.h"

namespace varnith {

namespace {
UnhandledExceptionHandler& Handler() {
    static UnhandledExceptionHandler handler;
    return handler;
}
}  // namespace

void SetUnhandledExceptionHandler(UnhandledExceptionHandler handler) {
    Handler() = std::move(handler);
}

void HandleUnhandled(const std::exception_ptr& exception) {
    if (!Handler()) std::rethrow_exception(exception);
    try {
        std::rethrow_exception(exception);
    } catch (const std::bad_alloc&) {
        Handler()(OutOfMemoryException());
    } catch (const std::exception& error) {
        Handler()(error);
    }
}

}  // namespace varnith
