#pragma once

#include <exception>
#include <functional>

namespace varnith {

// The handler of unhandled exceptions is called with each exception that leaves an event handler or a thread.
// The application sets it once. Without a handler such an exception ends the process.
using UnhandledExceptionHandler = std::function<void(const std::exception&)>;
void SetUnhandledExceptionHandler(UnhandledExceptionHandler handler);

// Calls the handler of unhandled exceptions; with OutOfMemoryException for std::bad_alloc. Rethrows the
// exception if there is no handler.
void HandleUnhandled(const std::exception_ptr& exception);

// Every event handler runs in this. Calls the body and passes an exception that leaves it to HandleUnhandled.
// Catches std::exception only: a killed thread is unwound by an exception of another kind.
template <class Body>
void Guarded(Body&& body) {
    try {
        body();
    } catch (const std::exception&) {
        HandleUnhandled(std::current_exception());
    }
}

}  // namespace varnith
