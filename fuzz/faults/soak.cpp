#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <malloc.h>
#include <unistd.h>

#include "export/Exporter.h"
#include "helpers/ProgramTest.h"
#include "platform/threads/Scheduler.h"
#include "platform/ui/Application.h"

// Scans a tree over and over, with a filter and an export after each scan, and prints the open descriptors
// and the memory at the start, after the tenth scan and at the end. Fails if they grow from the tenth scan
// on.
//   soak SCANS FILES
namespace varnith::test {

namespace {

int scans = 0;
int files = 0;

struct Use {
    long descriptors;
    long memory;     // resident, in KB
    long allocated;  // in KB
};

Use UseNow() {
    namespace fs = std::filesystem;
    std::ifstream statm("/proc/self/statm");
    long total = 0;
    long resident = 0;
    statm >> total >> resident;
    const auto open = std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    return {static_cast<long>(open), resident * (sysconf(_SC_PAGESIZE) / 1024),
            static_cast<long>(mallinfo2().uordblks >> 10)};
}

class SoakTest : public ProgramTest {
  protected:
    SoakTest() {
        Scheduler::Current().SetSlice(std::chrono::milliseconds(5));
        const std::string page = TiffBytes(1);
        for (int file = 0; file < files; ++file)
            documents.File(std::to_string(file / 200) + "/" + std::to_string(file) + ".tif", page);
        desktop.choose_file = [this](const std::string&, const std::string&) { return home / "out"; };
    }

    void Export(std::int32_t format) const {
        const auto window = Exporter::Instance();
        window->Show();
        window->PopupMenu1.Pick(window->PopupMenu1.Rows().at(static_cast<std::size_t>(format)));
        window->PushButton1.Press();
    }
};

TEST_F(SoakTest, TakesNoMoreDescriptorsAndMemory) {
    Use tenth{};
    Start([&] {
        for (int scan = 1; scan <= scans; ++scan) {
            Scan(documents.Path(), scan % 4 != 0);
            ASSERT_EQ(Main().Listbox1.ListCount(), scan % 4 != 0 ? files : 0);
            Main().PopupMenu1.Pick("All");
            for (std::int32_t format = 1; format <= 3; ++format) Export(format);
            WaitForWorkers();
            disk.opened = desktop.opened = {};  // what the doubles keep
            if (scan != 1 && scan != 10 && scan % 50 != 0 && scan != scans) continue;
            const Use use = UseNow();
            std::printf("after scan %3d: %ld descriptors, %ld KB allocated, %ld KB resident\n", scan,
                        use.descriptors, use.allocated, use.memory);
            if (scan == 10) tenth = use;
            if (scan <= 10) continue;
            EXPECT_LE(use.descriptors, tenth.descriptors);
            EXPECT_LE(use.allocated, tenth.allocated * 21 / 20);
        }
    });
}

}  // namespace

}  // namespace varnith::test

int main(int argc, char** argv) {
    testing::GTEST_FLAG(brief) = true;
    testing::InitGoogleTest(&argc, argv);
    if (argc != 3) {
        std::fputs("usage: soak SCANS FILES\n", stderr);
        return 2;
    }
    varnith::test::scans = std::atoi(argv[1]);
    varnith::test::files = std::atoi(argv[2]);
    return RUN_ALL_TESTS();
}
