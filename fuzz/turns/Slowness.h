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

    // Called by the threads that are to be delayed, and without effect by the one that runs the program.
    void Delay() {
        if (std::this_thread::get_id() == program_ || most_ == 0) return;
        const auto [time, turns] = Next();
        std::this_thread::sleep_for(time);
        // The turns may come to an end meanwhile.
        const auto limit = std::chrono::steady_clock::now() + std::chrono::milliseconds(20);
        const long until = turns_ + turns;
        while (turns_ < until && std::chrono::steady_clock::now() < limit) std::this_thread::yield();
    }

    long Turns() const { return turns_; }
    void CountTurn() { ++turns_; }

  private:
    // A time and a number of turns. Of the turns there are seldom any, and then few or many.
    std::pair<std::chrono::microseconds, int> Next() {
        const std::lock_guard lock(mutex_);
        const int most_turns = random_.OneIn(30) ? random_.Of({3, 3, 300}) : 0;
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
