#include "platform/threads/Scheduler.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "platform/base/CoarseClock.h"
#include "platform/base/Guard.h"
#include "platform/threads/Thread.h"

namespace varnith {

Scheduler& Scheduler::Current() {
    static Scheduler scheduler;
    return scheduler;
}

void Scheduler::Yield() {
    if (CoarseNow() < slice_end_) return;
    if (running_)
        running_->fiber_->GiveWay();
    else
        Turn();
}

bool Scheduler::HasStack() const {
    constexpr std::size_t Enough = 256 << 10;
    return !running_ || running_->fiber_->StackLeft() >= Enough;
}

void Scheduler::Turn() {
    if (running_) return;
    const std::vector<Thread*> turn = threads_;
    for (Thread* thread : turn) {
        // A thread that ran earlier in this turn may have killed it.
        if (std::find(threads_.begin(), threads_.end(), thread) == threads_.end()) continue;
        const bool due = thread->turns_ == Thread::Turns::Sleeping &&
                         thread->wake_time_ <= std::chrono::steady_clock::now();
        if (due) thread->turns_ = Thread::Turns::Ready;
        if (thread->turns_ == Thread::Turns::Ready) RunOneTurn(*thread);
    }
    BeginSlice();
}

void Scheduler::RunOneTurn(Thread& thread) {
    const Ref<Thread> alive(&thread);
    running_ = &thread;
    BeginSlice();
    const bool goes_on = thread.fiber_->Resume();
    running_ = nullptr;
    if (goes_on) return;
    thread.Thread::Kill();
    if (thread.escaped_) HandleUnhandled(std::exchange(thread.escaped_, nullptr));
}

std::optional<std::chrono::milliseconds> Scheduler::UntilNextTurn() const {
    std::optional<std::chrono::milliseconds> shortest;
    for (const Thread* thread : threads_) {
        if (thread == running_ || thread->turns_ == Thread::Turns::Suspended) continue;
        const auto now = std::chrono::steady_clock::now();
        const auto due = thread->turns_ == Thread::Turns::Ready ? now : std::max(now, thread->wake_time_);
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(due - now);
        shortest = shortest ? std::min(*shortest, wait) : wait;
    }
    return shortest;
}

void Scheduler::KillAll() {
    while (!threads_.empty()) threads_.back()->Kill();
}

void Scheduler::Add(Thread& thread) {
    threads_.push_back(&thread);
    TurnsChanged();
}

void Scheduler::Remove(Thread& thread) {
    std::erase(threads_, &thread);
}

void Scheduler::TurnsChanged() {
    if (wake_up_) wake_up_();
}

void Scheduler::BeginSlice() {
    slice_end_ = CoarseNow() + slice_;
}

void Yield() {
    Scheduler::Current().Yield();
}

}  // namespace varnith
