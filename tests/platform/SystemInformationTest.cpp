#include <gtest/gtest.h>

#include "platform/base/Text.h"
#include "platform/system/SystemInformationMBS.h"
#include "support/TemporaryFolder.h"
#include "support/TestFileSystem.h"

namespace varnith::test {
namespace {

// The real disk, on which a folder of the system is the test's own.
class SystemInformationTest : public testing::Test, public TestFileSystem {
  protected:
    std::vector<DirectoryEntry> Entries(const std::string& path) const override {
        return FileSystem::Entries(path == blocks ? folder.Path() : path);
    }
    void Write(const std::string& path, const std::string& bytes) {
        elsewhere[path] = folder.File(std::to_string(++files_), bytes);
    }

    const std::string blocks = "/sys/devices/system/memory";
    TemporaryFolder folder;

  private:
    FileSystem::Replacement in_force_{*this};
    int files_ = 0;
};

TEST_F(SystemInformationTest, ReadsVersionAndMemoryWhereTheSystemHasThem) {
    const std::string releases[][2] = {
        {"VERSION_ID=\"39\"\nBUILD_ID=x\n", "39"},
        {"NAME=Rolling\nBUILD_ID=rolling\n", "rolling"},
        {"NAME=x\n", ""},
    };
    for (const auto& [release, version] : releases) {
        Write("/etc/os-release", release);
        EXPECT_EQ(SystemInformationMBS::OSVersionString(), version);
    }
    // What is built in counts, whatever part of it the system keeps for itself.
    Write(blocks + "/block_size_bytes", "80000000\n");
    for (const std::string block : {"memory0", "memory1", "memory3", "memory7", "memory8"}) {
        folder.Folder(block);
        Write(blocks + "/" + block + "/online", block == "memory3" ? "0\n" : "1\n");
    }
    EXPECT_EQ(SystemInformationMBS::LogicalRAM(), 8.0 * (1 << 30));
}

TEST_F(SystemInformationTest, TellsMachinesApartWithoutGivingThemAway) {
    const std::string machine = "0123456789abcdef0123456789abcdef";
    Write("/sys/class/dmi/id/product_serial", "  \n");
    Write("/proc/device-tree/serial-number", "");
    Write("/etc/machine-id", machine + "\n");
    const std::string number = SystemInformationMBS::MacSerialNumber();
    EXPECT_EQ(ReplaceAll(number, "-", "").find(machine.substr(0, 8)), std::string::npos) << number;
    EXPECT_EQ(SystemInformationMBS::MacSerialNumber(), number);
    Write("/etc/machine-id", "1" + machine.substr(1) + "\n");
    EXPECT_NE(SystemInformationMBS::MacSerialNumber(), number);
    Write("/etc/machine-id", "");
    EXPECT_EQ(SystemInformationMBS::MacSerialNumber(), "");
    Write("/proc/device-tree/serial-number", std::string("10000000abc\0", 12));
    EXPECT_EQ(SystemInformationMBS::MacSerialNumber(), "10000000abc");
    Write("/sys/class/dmi/id/product_serial", " PF-1 2\n");
    EXPECT_EQ(SystemInformationMBS::MacSerialNumber(), "PF-1 2");
}

}  // namespace
}  // namespace varnith::test
