#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace varnith {

class Thread;

// Who runs when. The program's code runs on one thread of the operating system: its event handlers, and
// beside them the threads of class Thread, each on a stack of its own that this scheduler resumes for a time
// slice and that gives way only at a yield point. Nothing here may be called from another OS thread.
class Scheduler {
  public:
    static Scheduler& Current();

    // A yield point: an offer to let the others run, taken up when the running side has used up its slice.
    // Within a thread it gives the turn back to whoever resumed it; in an event handler it lets each ready
    // thread run for a slice. A killed thread ends here: its stack is unwound.
    void Yield();

    // The running side has nothing more to do in its slice: the next yield point is taken up.
    void GiveUpSlice() { slice_end_ = {}; }

    // One turn: each thread that is ready runs for a slice. Called by the event loop, on its own stack.
    void Turn();

    // How long the event loop may wait before the next turn: zero if a thread is ready, otherwise until the
    // first sleeping one is due; nothing if no thread waits for a turn. The thread that asks is not counted.
    std::optional<std::chrono::milliseconds> UntilNextTurn() const;

    // Called whenever UntilNextTurn may have become shorter.
    void SetWakeUp(std::function<void()> wake_up) { wake_up_ = std::move(wake_up); }

    // The time that one side may run before a yield point is taken up; at zero every one is.
    void SetSlice(std::chrono::milliseconds slice) { slice_ = slice; }

    // Ends all threads, at the end of the program.
    void KillAll();

  private:
    friend class Thread;

    void Add(Thread& thread);
    void Remove(Thread& thread);
    bool IsRunning(const Thread& thread) const { return running_ == &thread; }
    void TurnsChanged();
    void RunOneTurn(Thread& thread);
    void BeginSlice();

    std::vector<Thread*> threads_;  // those that have been started and have not ended
    Thread* running_ = nullptr;     // null while the event loop's side runs
    std::chrono::milliseconds slice_{8};
    std::chrono::nanoseconds slice_end_{0};
    std::function<void()> wake_up_;
};

// The yield point that ends each pass of the program's loops.
void Yield();

}  // namespace varnith
