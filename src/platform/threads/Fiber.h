#pragma once

#include <cstddef>
#include <functional>
#include <memory>

namespace varnith {

// A stack of its own that runs a body, turn by turn. Dropping one that stands in the middle of its body
// unwinds its stack from where it gave way, so all that lives there is released in order.
// A body may not give way inside of a catch block or a destructor.
class Fiber {
  public:
    // Makes the stack, of that many bytes, and runs nothing yet; std::bad_alloc if there is no room for it.
    // What the body throws may not leave it.
    Fiber(std::function<void()> body, std::size_t stack_size);
    ~Fiber();

    // Runs the body until it gives way or ends. True as long as it has not ended.
    bool Resume();

    // Called from within the body: returns to whoever resumed it, and comes back at the next Resume.
    void GiveWay();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace varnith
