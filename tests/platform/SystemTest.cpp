#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include "platform/base/Text.h"
#include "platform/files/SpecialFolders.h"
#include "platform/system/ApplicationLaunch.h"
#include "platform/system/Shell.h"
#include "platform/system/SystemInformationMBS.h"
#include "support/ProgramTest.h"

namespace varnith::test {

namespace {

namespace fs = std::filesystem;

TEST(ShellTest, GivesWhatACommandWrites) {
    const std::string much = "head -c 300000 /dev/zero | tr '\\0' x";
    std::vector<std::pair<std::string, std::string>> cases = {
        {"echo warning >&2; echo listing", "listing\nwarning\n"},
        {"cat; exit 3", ""},
        {much + " >&2; " + much, std::string(600'000, 'x')},
    };
    for (const std::string name : {"two  blanks", "it's", "\"$HOME\"`id`\\", "a\nb\xFF", "-n", "*", "~"})
        cases.emplace_back("printf '<%s>' " + FolderItem::FromPath("/" + name)->ShellPath(),
                           "</" + name + ">");
    Shell shell;
    for (const auto& [command, result] : cases) {
        shell.Execute(command);
        EXPECT_TRUE(shell.Result() == result) << command;
    }
}

// The real disk, on which some files and a folder are the test's own, as is what belongs to whom.
class SystemTest : public testing::Test, public TestFileSystem {
  protected:
    std::vector<DirectoryEntry> Entries(const std::string& path) const override {
        return FileSystem::Entries(path == memory ? folder.Path() : path);
    }
    std::optional<FileStatus> EntryStatus(const std::string& path) const override {
        auto status = FileSystem::EntryStatus(path);
        if (status && others) ++status->owner;
        return status;
    }
    void Write(const std::string& path, const std::string& bytes) {
        elsewhere[path] = folder.File(ReplaceAll(path, "/", "-"), bytes);
    }

    const std::string memory = "/sys/devices/system/memory";
    bool others = false;
    TemporaryFolder folder;

  private:
    FileSystem::Replacement in_force_{*this};
};

TEST_F(SystemTest, TellsNameVersionAndMemory) {
    using Case = std::tuple<const char*, const char*, const char*>;
    for (const auto& [release, name, version] : {Case{"NAME=\"a \\\"b\\\" c\"\nNAMES=d\n", "a \"b\" c", ""},
                                                 {"NAME='\\a'\nVERSION_ID=\"39\"\nBUILD_ID=x\n", "\\a", "39"},
                                                 {"NAME=\nBUILD_ID=rolling\n", "Linux", "rolling"}}) {
        Write("/etc/os-release", release);
        EXPECT_EQ(SystemInformationMBS::OSName(), name);
        EXPECT_EQ(SystemInformationMBS::OSVersionString(), version);
    }
    // What is built in counts, whatever part of it the system keeps for itself.
    Write(memory + "/block_size_bytes", "80000000\n");
    for (const std::string block : {"memory0", "memory1", "memory3", "memory7", "memory8"}) {
        folder.Folder(block);
        Write(memory + "/" + block + "/online", block == "memory3" ? "0\n" : "1\n");
    }
    EXPECT_EQ(SystemInformationMBS::LogicalRAM(), 8.0 * (1 << 30));
}

TEST_F(SystemTest, TellsMachinesApartWithoutGivingThemAway) {
    const auto number_with = [this](const char* path, const std::string& bytes) {
        Write(path, bytes);
        return SystemInformationMBS::MacSerialNumber();
    };
    const char* const product = "/sys/class/dmi/id/product_serial";
    const char* const board = "/proc/device-tree/serial-number";
    const char* const machine = "/etc/machine-id";
    number_with(product, "  \n");
    number_with(board, "");
    const std::string number = number_with(machine, "0123456789abcdef0123456789abcdef\n");
    EXPECT_EQ(ReplaceAll(number, "-", "").find("01234567"), std::string::npos) << number;
    EXPECT_NE(number_with(machine, "1123456789abcdef0123456789abcdef\n"), number);
    EXPECT_EQ(number_with(machine, "0123456789abcdef0123456789abcdef\n"), number);
    EXPECT_EQ(number_with(machine, ""), "");
    EXPECT_EQ(number_with(board, std::string("10000000abc\0", 12)), "10000000abc");
    EXPECT_EQ(number_with(product, " PF-1 2\n"), "PF-1 2");
}

TEST_F(SystemTest, TheTemporaryFolderIsTheUsersAlone) {
    const Environment where("TMPDIR", folder.Path());
    const std::string name = "varnith-" + std::to_string(geteuid());
    const std::string place = folder / name;
    const auto is_taken = [] { return static_cast<bool>(varnith::TemporaryFolder()); };

    fs::create_directory_symlink(folder.Folder("elsewhere"), place);
    EXPECT_FALSE(is_taken()) << "a link";
    fs::remove(place);
    folder.File(name);
    EXPECT_FALSE(is_taken()) << "a file";
    fs::remove(place);
    EXPECT_EQ(varnith::TemporaryFolder()->AbsolutePath(), place);
    for (const auto& [mode, taken] : {std::pair(0777, false), {0720, false}, {0702, false}, {0755, true}}) {
        EXPECT_EQ(TreeOf(folder.Path()).at(name), "700/");
        fs::permissions(place, fs::perms(mode));
        EXPECT_EQ(is_taken(), taken) << std::oct << mode;
        fs::permissions(place, fs::perms(0700));
    }
    others = true;
    EXPECT_FALSE(is_taken()) << "someone else's";
}

TEST(LaunchTest, StartsOneProcessOfAProgramAndBringsItToTheFront) {
    const TemporaryFolder folder;
    TestDesktop desktop;
    const Desktop::InForce in_force(desktop);
    const auto program = [&](const char* name, const std::string& bytes) {
        fs::permissions(folder.File(name, bytes), fs::perms(0755));
    };
    const auto launch = [&](const char* name) {
        LaunchApplication(FolderItem::FromPath(folder / name), true);
    };
    folder.File("a file", "#!/bin/sh\n");
    program("Broken.app/Contents/MacOS/Program", "\x7F" + std::string("ELF"));
    for (const char* name : {"a file", ".", "missing", "Broken.app"})
        for (int i = 0; i < 2; ++i) launch(name);
    EXPECT_TRUE(desktop.brought_to_front.empty()) << "nothing has been started";

    // It reads its input, notes down its process, and waits to be ended.
    const std::string note = folder / "note";
    program("New Name/Contents/MacOS/Program",
            "#!/bin/sh\ncat\necho $$ >'" + note + "'\nexec tail -f /dev/null\n");
    folder.File("New Name/Contents/MacOS/A file");
    const auto started = [&] {
        pid_t process = 0;
        RunThreadsUntil([&] { return static_cast<bool>(std::ifstream(note) >> process); });
        fs::remove(note);
        return process;
    };
    const FileHandle not_handed_on(dup(STDERR_FILENO));
    for (int i = 0; i < 3; ++i) launch("New Name");
    const pid_t process = started();
    ASSERT_GT(process, 0);
    EXPECT_EQ(desktop.brought_to_front, (std::vector<std::int64_t>{process, process}));
    EXPECT_EQ(getsid(process), process) << "it would end with this program's terminal";
    EXPECT_FALSE(fs::exists("/proc/" + Str(process) + "/fd/" + Str(not_handed_on.Descriptor())));

    kill(process, SIGKILL);
    while (kill(process, 0) == 0) launch("New Name");
    const pid_t successor = started();
    ASSERT_GT(successor, 0);
    kill(successor, SIGKILL);
}

}  // namespace

}  // namespace varnith::test
