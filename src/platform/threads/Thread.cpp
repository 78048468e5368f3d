#include "platform/threads/Thread.h"

#include "platform/threads/Scheduler.h"

namespace varnith {

namespace {
// AddressSanitizer follows exceptions on stacks of up to 64 MiB.
constexpr std::size_t DefaultStackSize = 60 << 20;
}  // namespace

Thread::~Thread() {
    Thread::Kill();
}

void Thread::Run() {
    if (fiber_) return;
    const std::size_t size = StackSize > 0 ? static_cast<std::size_t>(StackSize) : DefaultStackSize;
    turns_ = Turns::Ready;
    fiber_ = std::make_unique<Fiber>([this] { RunBody(); }, size);
    Scheduler::Current().Add(*this);
}

// What escapes is kept until the fiber has been left: it is handled on the stack of the event loop. Only
// std::exception is caught, so the unwinding of a kill passes.
void Thread::RunBody() {
    try {
        Event_Run();
    } catch (const std::exception&) {
        escaped_ = std::current_exception();
    }
}

void Thread::Suspend() {
    StandAside(Turns::Suspended);
}

void Thread::Resume() {
    turns_ = Turns::Ready;
    Scheduler::Current().TurnsChanged();
}

void Thread::Sleep(std::int32_t milliseconds) {
    wake_time_ = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    StandAside(Turns::Sleeping);
}

void Thread::StandAside(Turns turns) {
    if (!fiber_) return;
    turns_ = turns;
    Scheduler::Current().TurnsChanged();
    if (Scheduler::Current().IsRunning(*this)) fiber_->GiveWay();
}

void Thread::Kill() {
    if (!fiber_ || Scheduler::Current().IsRunning(*this)) return;
    Scheduler::Current().Remove(*this);
    fiber_.reset();
}

}  // namespace varnith
