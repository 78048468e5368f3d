#pragma once

#include <chrono>
#include <cstdint>
#include <exception>
#include <memory>

#include "platform/base/Ref.h"
#include "platform/threads/Fiber.h"

namespace varnith {

// A cooperative thread: its body runs by turns with the event handlers and gives way at yield points only
// (Scheduler). Dropping the last Ref of a running thread kills it.
class Thread : public RefCounted {
  public:
    ~Thread() override;

    // The priority. It has no effect: all threads get turns of equal length.
    std::int32_t Priority = 5;

    // The size of the stack in bytes, used by Run. 0 means 60 MiB, enough for a hundred thousand nested
    // calls; only the part that is used takes memory.
    std::int32_t StackSize = 0;

    // Starts the body, which first runs at the event loop's next turn. Without effect if the thread runs
    // already. Throws std::bad_alloc if the stack can't be allocated.
    virtual void Run();

    // Suspend takes the thread out of the turns until Resume. If the thread calls it itself, it also gives
    // way.
    virtual void Suspend();
    virtual void Resume();

    // Takes the thread out of the turns for that time. If the thread calls it itself, it also gives way.
    virtual void Sleep(std::int32_t milliseconds);

    // Ends the thread at the yield point where it waits, and unwinds its stack. Without effect if it has not
    // started or has ended, and if the thread calls it itself.
    virtual void Kill();

  protected:
    // The body. An exception that leaves it ends the thread and goes to HandleUnhandled (base/Guard.h).
    virtual void Event_Run() = 0;

  private:
    friend class Scheduler;

    enum class Turns { Ready, Suspended, Sleeping };

    void RunBody();
    void StandAside(Turns turns);

    std::unique_ptr<Fiber> fiber_;
    std::exception_ptr escaped_;
    Turns turns_ = Turns::Ready;
    std::chrono::steady_clock::time_point wake_time_;
};

}  // namespace varnith
