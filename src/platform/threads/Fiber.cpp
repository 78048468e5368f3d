#include "platform/threads/Fiber.h"

#include <new>
#include <string>
#include <utility>

#include <boost/context/fiber.hpp>
#include <boost/context/protected_fixedsize_stack.hpp>

#include "platform/base/Trace.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/common_interface_defs.h>
#elif defined(__SANITIZE_THREAD__)
#include <sanitizer/tsan_interface.h>
#endif

namespace varnith {

namespace {

namespace context = boost::context;

// Tells AddressSanitizer about the switches between a stack and others: call Leaving before switching away
// and Arrived after switching back. Otherwise an exception on a fiber causes false reports. Without the
// sanitizer it does nothing.
class StackSide {
  public:
    struct Bounds {
        const void* bottom = nullptr;
        std::size_t size = 0;
    };

    // With `for_good` the sanitizer frees what it keeps about this stack, which is never switched back to.
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

// Tells ThreadSanitizer that another stack runs for as long as this exists. Only the side that resumes a
// fiber tells it, and inline: so the sanitizer counts as many calls as returns on each stack, although a
// switch leaves one function and arrives in another. Without the sanitizer it does nothing.
class OnStack {
  public:
#if defined(__SANITIZE_THREAD__)
    [[gnu::always_inline]] explicit OnStack(void* stack) : resumer_(__tsan_get_current_fiber()) {
        __tsan_switch_to_fiber(stack, 0);
    }
    [[gnu::always_inline]] ~OnStack() {
        __tsan_switch_to_fiber(resumer_, 0);
    }
    OnStack(const OnStack&) = delete;
    OnStack& operator=(const OnStack&) = delete;

    static void* New() {
        return __tsan_create_fiber(0);
    }
    static void Delete(void* stack) {
        __tsan_destroy_fiber(stack);
    }

  private:
    void* const resumer_;
#else
    explicit OnStack(void* /*stack*/) {}

    static void* New() {
        return nullptr;
    }
    static void Delete(void* /*stack*/) {}
#endif
};

// Runs a function at the end of the scope, also when an exception or a kill unwinds the stack.
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
    context::fiber own;      // the body, while it is suspended
    context::fiber resumer;  // the caller of Resume, while the body runs
    StackSide own_side;
    StackSide resumer_side;
    StackSide::Bounds own_stack;
    StackSide::Bounds resumer_stack;
    void* const counted_stack = OnStack::New();

    State(std::function<void()> function, std::size_t stack_size)
        : body(std::move(function)), allocator(stack_size), stack(allocator.allocate()) {}
    ~State() {
        if (!started) allocator.deallocate(stack);
        OnStack::Delete(counted_stack);
    }

    // Passes the ownership of the stack to the suspended body.
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

Fiber::Fiber(std::function<void()> body, std::size_t stack_size) try
    : state_(std::make_unique<State>(std::move(body), stack_size)) {
} catch (const std::bad_alloc&) {
    if (IsTracing()) TraceErrno("allocate a stack of", std::to_string(stack_size) + " bytes");
    throw;
}

// Destroying a suspended context::fiber resumes it with an exception that unwinds its stack.
Fiber::~Fiber() {
    if (!state_->own) return;
    const OnStack switching(state_->counted_stack);
    state_->resumer_side.Leaving(state_->own_stack);
    state_->own = context::fiber();
    state_->resumer_side.Arrived();
}

bool Fiber::Resume() {
    State& state = *state_;
    if (!state.started) state.Start();
    const OnStack switching(state.counted_stack);
    state.resumer_side.Leaving(state.own_stack);
    context::fiber rest = std::move(state.own).resume();
    state.resumer_side.Arrived();
    state.own = std::move(rest);
    return !state.ended;
}

std::size_t Fiber::StackLeft() const {
    const auto* const end = static_cast<const char*>(state_->stack.sp) - state_->stack.size;
    return static_cast<std::size_t>(static_cast<const char*>(__builtin_frame_address(0)) - end);
}

void Fiber::GiveWay() {
    State& state = *state_;
    state.own_side.Leaving(state.resumer_stack);
    const AtEnd arrived([&state] { state.resumer_stack = state.own_side.Arrived(); });
    state.resumer = std::move(state.resumer).resume();
}

}  // namespace varnith
