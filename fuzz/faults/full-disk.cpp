#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "WalkTest.h"

// Runs the program on a small disk that has less and less room: for its results, settings, exports and
// downloads. REQUIRES: TMPDIR is the mount point of a file system of its own, with about a megabyte.
//   full-disk STEP   fills the disk by STEP KB more for each run
namespace varnith::test {

namespace {

std::uint64_t room = 0;  // bytes

std::uint64_t RoomIn(const std::string& folder) {
    struct statvfs disk;
    return statvfs(folder.c_str(), &disk) == 0 ? std::uint64_t{disk.f_bavail} * disk.f_bsize : 0;
}

class FullDiskTest : public WalkTest {
  protected:
    // Leaves that many bytes free.
    void Fill() const {
        const std::uint64_t free = RoomIn(application.Path());
        if (free <= room) return;
        const int file = open(filler_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        ASSERT_EQ(posix_fallocate(file, 0, static_cast<off_t>(free - room)), 0);
        close(file);
    }
    void Free() const { std::filesystem::remove(filler_); }

  private:
    const std::string filler_ = documents / "filler";
};

TEST_F(FullDiskTest, LeavesAllAsBeforeOrAsAfter) {
    for (const bool first : {false, true}) {
        SCOPED_TRACE((first ? "a first" : "a later") + std::string(" start, bytes free: ") +
                     std::to_string(room));
        Check(
            first, [this] { Fill(); }, [this] { Free(); });
    }
}

int RunOnLessAndLess(std::uint64_t step) {
    const TemporaryFolder server("/tmp");
    WalkTest::StartServers(server.Path());
    const std::uint64_t all = RoomIn(getenv("TMPDIR"));
    int runs = 0;
    int findings = 0;
    for (room = 0; room < all - all / 3; room += step, ++runs) findings += RUN_ALL_TESTS() == 0 ? 0 : 1;
    std::printf("full disk %6d runs%6d findings\n", runs, findings);
    return findings == 0 ? 0 : 1;
}

}  // namespace

}  // namespace varnith::test

int main(int argc, char** argv) {
    testing::GTEST_FLAG(brief) = true;
    testing::InitGoogleTest(&argc, argv);
    if (argc != 2 || !getenv("TMPDIR")) {
        std::fputs("usage: TMPDIR=MOUNTPOINT full-disk STEP\n", stderr);
        return 2;
    }
    return varnith::test::RunOnLessAndLess(std::strtoull(argv[1], nullptr, 10) << 10);
}
