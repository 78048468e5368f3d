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

// Threads of the operating system for what has to wait for the disk. A job works on values of its own, such
// as paths and file descriptors: never on a control, a Ref or anything else of the program's one thread. It
// may not throw.
//
// How many jobs are done at once follows from why they take long. Jobs that keep the processors busy are done
// by few threads, because more would only take the processors from each other. Jobs that spend nine tenths of
// their time waiting are done by ten threads for each processor.
class Workers {
  public:
    // What a job will come to. Copies stand for the same answer. An empty one stands for none.
    template <class Outcome>
    class Answer;

    // The least and the most jobs that are done at once. REQUIRES: neither is 0.
    Workers(std::size_t least, std::size_t most);
    // Drops what has not begun. A job that has begun is left to end by itself: a share that doesn't answer
    // keeps nobody waiting.
    ~Workers();

    // Has a job done, in the order of the asking.
    template <class Work>
    Answer<std::invoke_result_t<Work&>> Do(Work work);

    // Waits until the answer is there, but for so long at most.
    template <class Outcome>
    void WaitBriefly(const Answer<Outcome>& answer, std::chrono::milliseconds most) {
        Wait(*answer.job_, most);
    }

    // Whether a job of any workers has begun and not ended. Workers that are gone count while it lasts.
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
    // REQUIRES: it is there.
    Outcome& Get() const { return **outcome_; }
    // Nobody wants it any more: a job that has not begun is not done.
    void Drop() const { job_->dropped = true; }

  private:
    friend class Workers;
    Answer(std::shared_ptr<Job> job, std::optional<Outcome>* outcome)
        : job_(std::move(job)), outcome_(outcome) {}

    std::shared_ptr<Job> job_;
    std::optional<Outcome>* outcome_ = nullptr;  // part of the job
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

// The outcome of a job. Until it is there, others run: the waiting side gives way as at a yield point.
template <class Outcome>
Outcome& Awaited(Workers& workers, const Workers::Answer<Outcome>& answer) {
    // Blocks for up to one slice first, because the answer is usually moments away.
    constexpr std::chrono::milliseconds Slice{8};
    while (!answer.IsThere()) {
        workers.WaitBriefly(answer, Slice);
        if (answer.IsThere()) break;
        Scheduler::Current().GiveUpSlice();
        Yield();
    }
    return answer.Get();
}

}  // namespace varnith
