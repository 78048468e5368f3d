#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace varnith {

class Thread;

// Schedules the program's cooperative threads. All of the program's code runs on one thread of the operating
// system: the event handlers on its main stack, and each Thread on a stack of its own. The scheduler resumes
// a Thread for a time slice, and the Thread gives way only at a yield point. Not thread-safe: call it from
// that one OS thread only.
class Scheduler {
  public:
    static Scheduler& Current();

    // A yield point. Returns at once unless the caller's time slice is over. Then a Thread is suspended until
    // its next turn, and an event handler lets each ready Thread run for a slice. If the Thread is killed
    // meanwhile, its stack is unwound from here.
    void Yield();

    // Whether the caller is a Thread. Else it is an event handler or the event loop.
    bool IsInThread() const { return running_ != nullptr; }

    // Whether a Thread that calls this has stack enough for one more level of a recursion, and for what the
    // deepest level does. Always true outside of a Thread.
    bool HasStack() const;

    // Ends the caller's time slice, so that the next yield point lets others run.
    void GiveUpSlice() { slice_end_ = {}; }

    // Runs each ready thread for a slice. Called by the event loop; without effect within a Thread.
    void Turn();

    // How long the event loop may wait before the next turn: zero if a thread is ready, else until the first
    // sleeping thread is due. Nothing if all threads are suspended or none exists. The calling Thread itself
    // doesn't count.
    std::optional<std::chrono::milliseconds> UntilNextTurn() const;

    // Sets a function that is called whenever UntilNextTurn may have become shorter.
    void SetWakeUp(std::function<void()> wake_up) { wake_up_ = std::move(wake_up); }

    // Sets the length of a time slice. If it is zero, every yield point lets others run.
    void SetSlice(std::chrono::milliseconds slice) { slice_ = slice; }

    // Kills all threads, when the program ends.
    void KillAll();

  private:
    friend class Thread;

    void Add(Thread& thread);
    void Remove(Thread& thread);
    bool IsRunning(const Thread& thread) const { return running_ == &thread; }
    void TurnsChanged();
    void RunOneTurn(Thread& thread);
    void BeginSlice();

    std::vector<Thread*> threads_;  // the threads that have started and not ended; not owned
    Thread* running_ = nullptr;     // null while an event handler or the event loop runs
    std::chrono::milliseconds slice_{2};
    std::chrono::nanoseconds slice_end_{0};
    std::function<void()> wake_up_;
};

// A yield point of the current scheduler. Each iteration of the program's long loops ends with it.
void Yield();

}  // namespace varnith
