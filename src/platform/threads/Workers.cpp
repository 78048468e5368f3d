#include "platform/threads/Workers.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include <sys/resource.h>

namespace varnith {

namespace {

// What a thread has spent its time on since the object was made, in seconds.
class Stopwatch {
  public:
    double Elapsed() const { return Seconds(std::chrono::steady_clock::now() - start_).count(); }

    // The time that it did not wait for the disk. A thread that never gave up the processor of its own accord
    // has waited for nothing but the processor, which more threads would not bring nearer.
    double Working(double elapsed) const {
        const rusage now = Usage();
        if (now.ru_nvcsw == usage_.ru_nvcsw) return elapsed;
        return std::min(elapsed, ProcessorTime(now) - ProcessorTime(usage_));
    }

  private:
    using Seconds = std::chrono::duration<double>;

    static rusage Usage() {
        rusage usage;
        getrusage(RUSAGE_THREAD, &usage);
        return usage;
    }
    static double ProcessorTime(const rusage& usage) {
        const auto seconds = [](const timeval& time) {
            return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
        };
        return seconds(usage.ru_utime) + seconds(usage.ru_stime);
    }

    const rusage usage_ = Usage();
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace

// Shared with the threads, which may outlive the workers.
struct Workers::State : std::enable_shared_from_this<State> {
    State(std::size_t at_least, std::size_t at_most) : least(at_least), most(at_most) {}

    // The number of threads that keeps the processors busy, given how long jobs wait. REQUIRES, as for what
    // follows: the mutex is held.
    std::size_t AtOnce() const {
        constexpr double LeastWork = 1e-6;
        const double at_once = processors * elapsed / std::max(working, LeastWork);
        return std::clamp(static_cast<std::size_t>(std::min(at_once, 1e6)), least, most);
    }

    void StartThreads() try {
        for (; threads < AtOnce() && threads - busy < jobs.size(); ++threads)
            std::thread([self = shared_from_this()] { self->Work(); }).detach();
    } catch (const std::system_error&) {
        // No more can be had: those that there are go on.
    }

    void Work() {
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
        const std::shared_ptr<Job> job = std::move(jobs.front());
        jobs.pop_front();
        if (job->dropped) return;
        ++busy;
        lock.unlock();
        const Stopwatch watch;
        job->Run();
        const double taken = watch.Elapsed();
        const double worked = watch.Working(taken);
        job->done.store(true, std::memory_order_release);
        lock.lock();
        --busy;
        Remember(taken, worked);
        if (somebody_waits) answered.notify_one();
    }

    // As means that forget. The first job counts in full, so that a share comes to its best at once.
    void Remember(double taken, double worked) {
        const double weight = elapsed == 0 ? 1 : 1.0 / 8;
        elapsed += (taken - elapsed) * weight;
        working += (worked - working) * weight;
    }

    const double processors = std::max(1u, std::thread::hardware_concurrency());
    const std::size_t least;
    const std::size_t most;
    std::mutex mutex;
    std::condition_variable added;
    std::condition_variable answered;
    std::deque<std::shared_ptr<Job>> jobs;
    std::size_t threads = 0;
    std::size_t busy = 0;
    std::size_t idle = 0;
    bool somebody_waits = false;
    double elapsed = 0;  // that a job takes, in seconds
    double working = 0;  // of that, what it doesn't wait
    bool ended = false;
};

namespace {

// Those of the whole program, as long as they or one of their threads live.
std::mutex all_mutex;
std::vector<std::weak_ptr<Workers::State>> all;

}  // namespace

Workers::Workers(std::size_t least, std::size_t most) : state_(std::make_shared<State>(least, most)) {
    const std::lock_guard lock(all_mutex);
    std::erase_if(all, [](const auto& state) { return state.expired(); });
    all.push_back(state_);
}

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
    // Where not one thread can be had, whoever asks does the work.
    if (state_->threads == 0) return state_->DoNext(lock);
    if (state_->idle > 0) state_->added.notify_one();
}

void Workers::Wait(const Job& job, std::chrono::milliseconds most) {
    std::unique_lock lock(state_->mutex);
    state_->somebody_waits = true;
    state_->answered.wait_for(lock, most, [&] { return job.done.load(); });
    state_->somebody_waits = false;
}

bool Workers::AnyAtWork() {
    const std::lock_guard lock(all_mutex);
    return std::any_of(all.begin(), all.end(), [](const auto& each) {
        const auto state = each.lock();
        if (!state) return false;
        const std::lock_guard state_lock(state->mutex);
        return state->busy > 0;
    });
}

}  // namespace varnith
