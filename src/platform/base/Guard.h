#pragma once

#include <exception>
#include <functional>

namespace varnith {

// Who is told of an exception that has reached the top of an event handler or of a thread. Set once, by
// the application; with nobody set the exception ends the process, as any uncaught one does.
using UnhandledExceptionHandler = std::function<void(const std::exception&)>;
void SetUnhandledExceptionHandler(UnhandledExceptionHandler handler);

// Hands an exception that nobody caught to the handler. std::bad_alloc arrives as OutOfMemoryException.
void HandleUnhandled(const std::exception_ptr& exception);

// The guard around each event handler: runs the body and gives what escapes from it to the handler.
// It catches std::exception only, so the unwinding of a killed thread passes through.
template <class Body>
void Guarded(Body&& body) {
    try {
        body();
    } catch (const std::exception&) {
        HandleUnhandled(std::current_exception());
    }
}

}  // namespace varnith
