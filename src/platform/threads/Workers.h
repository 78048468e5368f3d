#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include "platform/threads/Scheduler.h"

namespace varnith {

// A pool of threads of the operating system, for jobs that wait for the disk. A job may use only values of
// its own, such as paths and file descriptors: never a control, a Ref or anything else of the program's one
// thread. It may not throw.
//
// The number of threads adapts to the jobs. For jobs that keep the processors busy there are few, because
// more would only compete for the processors. The more of the latest jobs had to wait, the more threads there
// are, because a disk and a share answer many questions faster than one after the other.
class Workers {
  public:
    // A handle of a job's outcome. Copies refer to the same job. A default-constructed one refers to none,
    // and may only be assigned to.
    template <class Outcome>
    class Answer;

    // The minimum and maximum number of threads. REQUIRES: 0 < least <= most.
    Workers(std::size_t least, std::size_t most);
    // Discards the jobs that have not started. Doesn't wait for the others, so that a share that doesn't
    // answer blocks nobody.
    ~Workers();

    // Queues a job, a function without arguments. Jobs start in the order of these calls.
    template <class Work>
    Answer<std::invoke_result_t<Work&>> Do(Work work);

    // Blocks until the answer is there, for up to that time.
    template <class Outcome>
    void WaitBriefly(const Answer<Outcome>& answer, std::chrono::milliseconds most) {
        Wait(*answer.job_, most);
    }

    // The number of jobs that run at once now, by how many of the latest jobs had to wait.
    std::size_t AtOnce() const;

    // Whether a job of any Workers object is running, including those of destroyed ones.
    static bool AnyAtWork();

    struct State;

  private:
    struct Job {
        virtual ~Job() = default;
        virtual void Run() = 0;
        std::atomic<bool> done = false;
        std::atomic<bool> dropped = false;
    };
    template <class Work>
    struct JobOf;

    void Add(std::shared_ptr<Job> job);
    void Wait(const Job& job, std::chrono::milliseconds most);

    std::shared_ptr<State> state_;
};

template <class Outcome>
class Workers::Answer {
  public:
    Answer() = default;

    bool IsThere() const { return job_->done.load(std::memory_order_acquire); }
    // The outcome, which the job owns. REQUIRES: IsThere().
    Outcome& Get() const { return **outcome_; }
    // Cancels the job if it has not started.
    void Drop() const { job_->dropped = true; }

  private:
    friend class Workers;
    Answer(std::shared_ptr<Job> job, std::optional<Outcome>* outcome)
        : job_(std::move(job)), outcome_(outcome) {}

    std::shared_ptr<Job> job_;
    std::optional<Outcome>* outcome_ = nullptr;  // a member of the job
};

template <class Work>
struct Workers::JobOf : Workers::Job {
    explicit JobOf(Work w) : work(std::move(w)) {}
    void Run() override { outcome.emplace(work()); }

    Work work;
    std::optional<std::invoke_result_t<Work&>> outcome;
};

template <class Work>
Workers::Answer<std::invoke_result_t<Work&>> Workers::Do(Work work) {
    auto job = std::make_shared<JobOf<Work>>(std::move(work));
    const Answer<std::invoke_result_t<Work&>> answer(job, &job->outcome);
    Add(std::move(job));
    return answer;
}

// Waits for a job and returns its outcome, which the job owns. It is a yield point: while it waits, the
// program's other threads run.
template <class Outcome>
Outcome& Awaited(Workers& workers, const Workers::Answer<Outcome>& answer) {
    // Block for up to one slice, because the result is usually moments away.
    constexpr std::chrono::milliseconds Slice{4};
    while (!answer.IsThere()) {
        workers.WaitBriefly(answer, Slice);
        if (answer.IsThere()) break;
        Scheduler::Current().GiveUpSlice();
        Yield();
    }
    return answer.Get();
}

}  // namespace varnith
