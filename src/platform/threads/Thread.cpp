#include "platform/threads/Thread.h"

#include "platform/threads/Scheduler.h"

namespace varnith {

namespace {
// Below 64 MiB, the largest stack that AddressSanitizer cleans up after an exception.
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

// Keeps an exception until the fiber has ended, so that it is handled on the event loop's stack. Catches only
// std::exception, because the exception by which a kill unwinds the stack must pass.
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
