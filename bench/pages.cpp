#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "comparison.h"
#include "platform/files/FileSystem.h"
#include "platform/files/TiffPages.h"

// Measures the time to count a page in a long file, compared with a page in a short one.
//   pages RUNS SHORT-FILE FILE...
namespace {

std::int64_t PagesOf(const std::string& path) {
    return varnith::CountPages(varnith::FileSystem::Current().OpenForReading(path)).value_or(0);
}

// Counts a short file many times, so that all measurements take about as long.
double SecondsAPage(const std::string& path) {
    const std::int64_t pages = std::max<std::int64_t>(PagesOf(path), 1);
    const std::int64_t times = std::max<std::int64_t>(100'000 / pages, 1);
    const double seconds = SecondsOf([&] {
        for (std::int64_t i = 0; i < times; ++i) Use(PagesOf(path));
    });
    return seconds / static_cast<double>(times * pages);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fputs("usage: pages RUNS SHORT-FILE FILE...\n", stderr);
        return 2;
    }
    const std::vector<std::string> files(argv + 2, argv + argc);
    for (int run = 0; run < std::atoi(argv[1]); ++run) {
        const double of_short = SecondsAPage(files.front());
        for (std::size_t i = 1; i < files.size(); ++i)
            Print("a page of " + std::to_string(PagesOf(files[i])), SecondsAPage(files[i]), of_short);
    }
    return 0;
}
