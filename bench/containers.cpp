#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <optional>

#include "comparison.h"
#include "platform/base/SegmentedVector.h"

// Compares SegmentedVector, which holds the rows of the list, with std::deque, which doesn't move its
// elements either.
//   containers ROWS RUNS
namespace {

// As large as a row of the list: handles of its texts and their types.
struct Row {
    std::array<void*, 10> texts{};
    std::array<std::uint8_t, 10> kinds{};
};

void CompareAll(std::size_t rows) {
    std::optional<varnith::SegmentedVector<Row>> ours(std::in_place);
    std::optional<std::deque<Row>> theirs(std::in_place);
    Compare(
        "append",
        [&] {
            for (std::size_t i = 0; i < rows; ++i) ours->Append().kinds[0] = static_cast<std::uint8_t>(i);
        },
        [&] {
            for (std::size_t i = 0; i < rows; ++i)
                theirs->emplace_back().kinds[0] = static_cast<std::uint8_t>(i);
        });
    const auto sum = [&](const auto& all) {
        std::size_t total = 0;
        for (std::size_t i = 0; i < rows; ++i) total += all[i].kinds[0];
        Use(total);
    };
    Compare(
        "go through by index", [&] { sum(*ours); }, [&] { sum(*theirs); });
    Compare(
        "empty", [&] { ours.reset(); }, [&] { theirs.reset(); });
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: containers ROWS RUNS\n", stderr);
        return 2;
    }
    for (int run = 0; run < std::atoi(argv[2]); ++run)
        CompareAll(static_cast<std::size_t>(std::atoi(argv[1])));
    return 0;
}
