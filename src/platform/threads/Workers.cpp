#include "platform/threads/Workers.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>

namespace varnith {

namespace {

// The jobs in the middle of their work, in the whole program.
std::atomic<std::size_t> jobs_in_work = 0;

}  // namespace

// Shared with the threads, which may outlive the workers.
struct Workers::State : std::enable_shared_from_this<State> {
    State(std::size_t at_least, std::size_t at_most) : least(at_least), most(at_most) {}

    // As many as a job lately took halves of a millisecond. REQUIRES, as for what follows: the mutex is held.
    std::size_t AtOnce() const { return std::clamp(static_cast<std::size_t>(2 * milliseconds), least, most); }

    void StartThreads() try {
        for (; threads < AtOnce() && threads - busy < tasks.size(); ++threads)
            std::thread([self = shared_from_this()] { self->Work(); }).detach();
    } catch (const std::system_error&) {
        // No more can be had: those that there are go on.
    }

    void Work() {
        std::unique_lock lock(mutex);
        while (threads <= AtOnce()) {
            changed.wait(lock, [this] { return ended || !tasks.empty(); });
            if (ended) return;
            DoNext(lock);
            StartThreads();
        }
        --threads;
    }

    void DoNext(std::unique_lock<std::mutex>& lock) {
        Task task = std::move(tasks.front());
        tasks.pop_front();
        ++busy;
        ++jobs_in_work;
        lock.unlock();
        const auto begin = std::chrono::steady_clock::now();
        task();
        const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - begin;
        --jobs_in_work;
        jobs_in_work.notify_all();
        lock.lock();
        --busy;
        milliseconds += (taken.count() - milliseconds) / 8;
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Task> tasks;
    const std::size_t least;
    const std::size_t most;
    std::size_t threads = 0;
    std::size_t busy = 0;
    double milliseconds = 0;  // that a job takes, as a mean that forgets
    bool ended = false;
};

Workers::Workers(std::size_t least, std::size_t most) : state_(std::make_shared<State>(least, most)) {}

Workers::~Workers() {
    const std::lock_guard lock(state_->mutex);
    state_->ended = true;
    state_->tasks.clear();
    state_->changed.notify_all();
}

void Workers::Add(Task task) {
    std::unique_lock lock(state_->mutex);
    state_->tasks.push_back(std::move(task));
    state_->StartThreads();
    // Where not one thread can be had, whoever asks does the work.
    if (state_->threads == 0) return state_->DoNext(lock);
    lock.unlock();
    state_->changed.notify_one();
}

void Workers::WaitUntilQuiet() {
    while (const std::size_t count = jobs_in_work) jobs_in_work.wait(count);
}

}  // namespace varnith
