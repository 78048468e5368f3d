#pragma once

#include <chrono>
#include <cstddef>
#include <future>
#include <memory>
#include <type_traits>
#include <utility>

#include "platform/threads/Scheduler.h"

namespace varnith {

// Threads of the operating system for what has to wait for the disk: few while jobs take no time, because
// more would only take the processors from each other, and the more the longer a job waits. A job works on
// values of its own, such as paths and file descriptors: never on a control, a Ref or anything else of the
// program's one thread.
class Workers {
  public:
    // The least and the most jobs that are done at once. REQUIRES: neither is 0.
    Workers(std::size_t least, std::size_t most);
    // Drops what has not begun. A job in the middle of its work is left to end by itself: a share that
    // doesn't answer keeps nobody waiting.
    ~Workers();

    // Has a job done, in the order of the asking, and returns what will be its outcome.
    template <class Job>
    std::future<std::invoke_result_t<Job&>> Do(Job job) {
        std::packaged_task<std::invoke_result_t<Job&>()> task(std::move(job));
        auto outcome = task.get_future();
        Add(Task([task = std::move(task)]() mutable { task(); }));
        return outcome;
    }

    // Waits until no job of any of the workers is in the middle of its work.
    static void WaitUntilQuiet();

  private:
    using Task = std::packaged_task<void()>;
    struct State;

    void Add(Task task);

    std::shared_ptr<State> state_;
};

// The outcome of a job; an exception that the job threw is thrown here. Until it is there, others run: the
// waiting side gives way as at a yield point.
template <class Outcome>
Outcome Awaited(std::future<Outcome>& outcome) {
    // To wait through the rest of a slice, and not for a sign to the event loop, costs neither side anything
    // when the outcome is a moment away, as mostly it is.
    while (outcome.wait_for(std::chrono::milliseconds(8)) != std::future_status::ready) {
        Scheduler::Current().GiveUpSlice();
        Yield();
    }
    return outcome.get();
}

}  // namespace varnith
