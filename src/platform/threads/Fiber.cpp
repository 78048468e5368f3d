#include "platform/threads/Fiber.h"

#include <utility>

#include <boost/context/fiber.hpp>
#include <boost/context/protected_fixedsize_stack.hpp>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/common_interface_defs.h>
#endif

namespace varnith {

namespace {

namespace context = boost::context;

// One side of a switch between stacks, as AddressSanitizer has to be told of it: Leaving in front of the
// switch away, Arrived behind the switch back. Without them an exception on a fiber gives false reports.
// Without the sanitizer all of it is nothing.
class StackSide {
  public:
    struct Bounds {
        const void* bottom = nullptr;
        std::size_t size = 0;
    };

    // A side that is left for good has no need of its bookkeeping any more.
    void Leaving([[maybe_unused]] const Bounds& target, [[maybe_unused]] bool for_good = false) {
#if defined(__SANITIZE_ADDRESS__)
        __sanitizer_start_switch_fiber(for_good ? nullptr : &fake_stack_, target.bottom, target.size);
#endif
    }

    // Returns the bounds of the stack that was left for this one.
    Bounds Arrived() {
        Bounds other;
#if defined(__SANITIZE_ADDRESS__)
        __sanitizer_finish_switch_fiber(fake_stack_, &other.bottom, &other.size);
#endif
        return other;
    }

  private:
    [[maybe_unused]] void* fake_stack_ = nullptr;
};

// Runs its function at the end of the scope, left by a turn or by an unwinding.
template <class Function>
class AtEnd {
  public:
    explicit AtEnd(Function function) : function_(std::move(function)) {}
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;
    ~AtEnd() { function_(); }

  private:
    Function function_;
};

}  // namespace

struct Fiber::State {
    std::function<void()> body;
    context::protected_fixedsize_stack allocator;
    context::stack_context stack;
    bool started = false;
    bool ended = false;
    context::fiber own;      // the suspended body, while someone else runs
    context::fiber resumer;  // the suspended resumer, while the body runs
    StackSide own_side;
    StackSide resumer_side;
    StackSide::Bounds own_stack;
    StackSide::Bounds resumer_stack;

    State(std::function<void()> function, std::size_t stack_size)
        : body(std::move(function)), allocator(stack_size), stack(allocator.allocate()) {}
    ~State() {
        if (!started) allocator.deallocate(stack);
    }

    // The stack belongs to the suspended body from here on.
    void Start() {
        started = true;
        own_stack = {static_cast<char*>(stack.sp) - stack.size, stack.size};
        own = context::fiber(std::allocator_arg, context::preallocated(stack.sp, stack.size, stack),
                             allocator, [this](context::fiber&& first_resumer) {
                                 resumer = std::move(first_resumer);
                                 resumer_stack = own_side.Arrived();
                                 const AtEnd leaving([this] { own_side.Leaving(resumer_stack, true); });
                                 body();
                                 ended = true;
                                 return std::move(resumer);
                             });
    }
};

Fiber::Fiber(std::function<void()> body, std::size_t stack_size)
    : state_(std::make_unique<State>(std::move(body), stack_size)) {}

Fiber::~Fiber() {
    if (!state_->own) return;
    state_->resumer_side.Leaving(state_->own_stack);
    state_->own = context::fiber();
    state_->resumer_side.Arrived();
}

bool Fiber::Resume() {
    State& state = *state_;
    if (!state.started) state.Start();
    state.resumer_side.Leaving(state.own_stack);
    context::fiber rest = std::move(state.own).resume();
    state.resumer_side.Arrived();
    state.own = std::move(rest);
    return !state.ended;
}

void Fiber::GiveWay() {
    State& state = *state_;
    state.own_side.Leaving(state.resumer_stack);
    const AtEnd arrived([&state] { state.resumer_stack = state.own_side.Arrived(); });
    state.resumer = std::move(state.resumer).resume();
}

}  // namespace varnith
