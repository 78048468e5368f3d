#include <algorithm>
#include <chrono>
#include <cstdio>
#include <set>
#include <string>

#include <sys/resource.h>

#include "helpers/ProgramTest.h"
#include "platform/threads/Scheduler.h"

// Scans a folder with its subfolders, without a display, and prints what has come of it.
//   scan-once FOLDER
namespace varnith::test {

namespace {

std::string folder_to_scan;

struct ScanTest : ProgramTest {};

TEST_F(ScanTest, ComesToItsEnd) {
    Scheduler::Current().SetSlice(std::chrono::milliseconds(5));
    const int status = Start([&] {
        const auto start = std::chrono::steady_clock::now();
        Main().CheckBox4.SetValue(true);
        Locate(folder_to_scan);
        WaitUntil([] { return !Scheduler::Current().UntilNextTurn(); }, [] { Scheduler::Current().Turn(); });
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
        const Listbox& list = Main().Listbox1;
        EXPECT_TRUE(Main().Title().ends_with(" - Finished")) << Main().Title();
        EXPECT_EQ(SavedRows().size(), static_cast<std::size_t>(list.ListCount()));
        std::set<std::string> names;
        std::size_t longest = 0;
        for (std::int32_t row = 0; row < list.ListCount(); ++row) {
            names.insert(list.Cell(row, 1));
            longest = std::max(longest, list.Cell(row, 3).size());
        }
        rusage use;
        getrusage(RUSAGE_SELF, &use);
        std::printf("%d rows, %zu names, longest path %zu bytes, %.1f s, at most %ld MB\n", list.ListCount(),
                    names.size(), longest, time.count(), use.ru_maxrss >> 10);
    });
    EXPECT_EQ(status, 0);
}

}  // namespace

}  // namespace varnith::test

int main(int argc, char** argv) {
    testing::GTEST_FLAG(brief) = true;
    testing::InitGoogleTest(&argc, argv);
    if (argc != 2) {
        std::fputs("usage: scan-once FOLDER\n", stderr);
        return 2;
    }
    varnith::test::folder_to_scan = argv[1];
    return RUN_ALL_TESTS();
}
