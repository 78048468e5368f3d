// Runs the whole program without a display, with a user who does everything in random order: scans, stops,
// filters, sorts, ticks, exports, writes to support, gets an update offered, closes and quits. The threads
// switch at each yield point, and the workers are delayed at random. After each turn the list is compared
// with a model of it, and at the end the saved rows.
//   turns [FIRST-SEED] [RUNS]
// A run is known by its seed. It is not quite the same each time, as the workers are the system's threads.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>

#include "Run.h"

int main(int argc, char** argv) {
    using namespace varnith::test;
    testing::InitGoogleTest(&argc, argv);
    const auto first = static_cast<std::uint32_t>(argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1);
    const auto runs = static_cast<std::uint32_t>(argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 200);
    Totals totals;
    for (std::uint32_t seed = first; seed < first + runs; ++seed) {
        std::fprintf(stderr, "\rseed %u ", seed);
        Run(seed).Do(totals);
        if (testing::Test::HasFailure()) return 1;
    }
    std::printf(
        "\r%u runs, %ld turns: %d scans finished, %d saves cut short (%d after their delete), %d filters, "
        "%d exports, %d offers\n",
        runs, totals.turns, totals.finished, totals.cut_short, totals.emptied, totals.filtered,
        totals.exported, totals.offered);
}
