#pragma once

#include <cstddef>
#include <functional>
#include <memory>

namespace varnith {

// A coroutine: a function (the body) with a stack of its own, which can suspend itself and be resumed.
// Destroying a suspended fiber unwinds its stack, so all objects on it are destroyed.
// A body may not suspend itself inside of a catch block or a destructor.
class Fiber {
  public:
    // Allocates the stack, with its size in bytes; throws std::bad_alloc if that fails. The body starts at
    // the first Resume. No exception may leave the body.
    Fiber(std::function<void()> body, std::size_t stack_size);
    ~Fiber();

    // Runs the body until it calls GiveWay or ends. False if it has ended.
    bool Resume();

    // Suspends the body: Resume returns, and the next Resume continues here. Called by the body only.
    void GiveWay();

    // The bytes of the stack that the caller has left. Called by the body only.
    std::size_t StackLeft() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace varnith
