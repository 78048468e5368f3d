#pragma once

#include <chrono>
#include <cstdint>
#include <exception>
#include <memory>

#include "platform/base/Ref.h"
#include "platform/threads/Fiber.h"

namespace varnith {

// A cooperative thread: a body that runs beside the event handlers and gives way at yield points only.
// Dropping the last Ref of a running thread kills it.
class Thread : public RefCounted {
  public:
    ~Thread() override;

    // How urgent the thread is. With turns of equal length for all it has nothing to decide.
    std::int32_t Priority = 5;

    // The size of the stack in bytes; 0 for the default of 60 MiB, of which only what is used takes memory.
    // It holds some ten thousands of nested calls.
    std::int32_t StackSize = 0;

    // Starts the body, which first runs at the event loop's next turn. Without effect while it runs.
    virtual void Run();

    // Takes the thread out of the turns until Resume. From within the thread it also gives way.
    virtual void Suspend();
    virtual void Resume();

    // Takes the thread out of the turns for that many milliseconds. From within the thread it also gives way.
    virtual void Sleep(std::int32_t milliseconds);

    // Ends the thread at the yield point where it stands and unwinds its stack. Without effect if it doesn't
    // run. REQUIRES: not called from within the thread itself.
    virtual void Kill();

  protected:
    // The body. An exception that leaves it ends the thread and goes to the handler of unhandled exceptions.
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
