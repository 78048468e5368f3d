#pragma once

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

#include "Random.h"

namespace varnith::test {

// Delays the worker threads at random, by some time or by turns of the program's threads. How much is random,
// too: some disks are fast.
class Slowness {
  public:
    explicit Slowness(std::uint32_t seed) : random_(seed), most_(random_.Below(3) * random_.Below(300)) {}

    // Called by the threads that are to be delayed, and without effect by the one that runs the program. In
    // one of `seldom` calls it waits for turns, as long as `most` if they don't come.
    void Delay(int seldom, std::chrono::milliseconds most) {
        if (std::this_thread::get_id() == program_ || most_ == 0) return;
        const auto [time, turns] = Next(seldom);
        std::this_thread::sleep_for(time);
        const auto limit = std::chrono::steady_clock::now() + most;
        const long until = turns_ + turns;
        while (turns_ < until && std::chrono::steady_clock::now() < limit) std::this_thread::yield();
    }

    long Turns() const { return turns_; }
    void CountTurn() { ++turns_; }

  private:
    // A time and a number of turns, which are few or many.
    std::pair<std::chrono::microseconds, int> Next(int seldom) {
        const std::lock_guard lock(mutex_);
        const int most_turns = random_.OneIn(seldom) ? random_.Of({3, 3, 1000}) : 0;
        return {std::chrono::microseconds(random_.OneIn(3) ? random_.Below(most_) : 0),
                random_.Below(most_turns + 1)};
    }

    const std::thread::id program_ = std::this_thread::get_id();
    std::mutex mutex_;
    Random random_;
    const int most_;  // microseconds
    std::atomic<long> turns_ = 0;
};

}  // namespace varnith::test
