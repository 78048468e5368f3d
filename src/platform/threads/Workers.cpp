#include "platform/threads/Workers.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>

#include <sys/resource.h>
#include <unistd.h>

#include "platform/base/Trace.h"

namespace varnith {

namespace {

// The number of times that the calling thread has waited for something other than a processor: its voluntary
// context switches (getrusage(2)).
long Waits() {
    rusage usage;
    getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_nvcsw;
}

// The number of jobs that run now, of all Workers. Whoever sees it fall also sees what the jobs have done.
std::atomic<std::size_t> at_work = 0;

}  // namespace

// Shared with the threads, which may outlive the Workers object.
struct Workers::State : std::enable_shared_from_this<State> {
    State(std::size_t at_least, std::size_t at_most) : least(at_least), most(at_most) {}

    // The number of threads that suits the jobs. The square, because some jobs wait even if the disk is
    // quick: for each other's locks. REQUIRES, here and below: the caller holds the mutex.
    std::size_t AtOnce() const {
        return least + static_cast<std::size_t>(waiting * waiting * static_cast<double>(most - least));
    }

    void StartThreads() try {
        for (; threads < AtOnce() && threads - busy < jobs.size(); ++threads)
            std::thread([self = shared_from_this()] { self->Work(); }).detach();
    } catch (const std::system_error& error) {
        // The system allows no more threads: the existing ones do the work.
        if (IsTracing()) TraceFailure("start a worker thread", "", error.code().message());
    }

    void Work() {
        // The window comes first where the processors are busy.
        setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), Niceness);
        std::unique_lock lock(mutex);
        while (threads <= AtOnce()) {
            ++idle;
            added.wait(lock, [this] { return ended || !jobs.empty(); });
            --idle;
            if (ended) return;
            DoNext(lock);
            StartThreads();
        }
        --threads;
    }

    void DoNext(std::unique_lock<std::mutex>& lock) {
        std::shared_ptr<Job> job = std::move(jobs.front());
        jobs.pop_front();
        ++busy;
        ++at_work;
        lock.unlock();
        const Job* const done = job->dropped ? nullptr : job.get();
        const bool waited = done && HasWaited(*job);
        // If nobody wants the outcome any more, the job is destroyed here. To close a file may take long.
        job = nullptr;
        --at_work;
        lock.lock();
        --busy;
        if (!done) return;
        Remember(waited);
        if (awaited == done) answered.notify_one();
    }

    // Runs the job and returns whether it had to wait.
    static bool HasWaited(Job& job) {
        const long waits = Waits();
        job.Run();
        const bool waited = Waits() != waits;
        job.done.store(true, std::memory_order_release);
        return waited;
    }

    // Updates the moving average. The first job sets it, so that a slow share has many threads at once.
    void Remember(bool waited) {
        waiting += ((waited ? 1 : 0) - waiting) * (has_done ? Weight : 1);
        has_done = true;
    }

    static constexpr double Weight = 1.0 / 16;
    static constexpr int Niceness = 5;

    const std::size_t least;
    const std::size_t most;
    std::mutex mutex;
    std::condition_variable added;
    std::condition_variable answered;
    std::deque<std::shared_ptr<Job>> jobs;
    std::size_t threads = 0;
    std::size_t busy = 0;
    std::size_t idle = 0;
    const Job* awaited = nullptr;
    bool has_done = false;  // a job
    double waiting = 0;     // the part of the latest jobs that waited for the disk
    bool ended = false;
};

Workers::Workers(std::size_t least, std::size_t most) : state_(std::make_shared<State>(least, most)) {}

Workers::~Workers() {
    const std::lock_guard lock(state_->mutex);
    state_->ended = true;
    state_->jobs.clear();
    state_->added.notify_all();
}

void Workers::Add(std::shared_ptr<Job> job) {
    std::unique_lock lock(state_->mutex);
    state_->jobs.push_back(std::move(job));
    state_->StartThreads();
    // If no thread could be started, the caller does the work.
    if (state_->threads == 0) return state_->DoNext(lock);
    if (state_->idle > 0) state_->added.notify_one();
}

void Workers::Wait(const Job& job, std::chrono::milliseconds most) {
    std::unique_lock lock(state_->mutex);
    state_->awaited = &job;
    state_->answered.wait_for(lock, most, [&] { return job.done.load(); });
    state_->awaited = nullptr;
}

std::size_t Workers::AtOnce() const {
    const std::lock_guard lock(state_->mutex);
    return state_->AtOnce();
}

bool Workers::AnyAtWork() {
    return at_work > 0;
}

}  // namespace varnith
