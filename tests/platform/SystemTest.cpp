#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include "platform/files/SpecialFolders.h"
#include "platform/system/ApplicationLaunch.h"
#include "platform/system/Shell.h"
#include "support/Environment.h"
#include "support/TemporaryFolder.h"
#include "support/TestDesktop.h"

namespace varnith::test {

namespace {

namespace fs = std::filesystem;

TEST(ShellTest, GivesWhatACommandWrites) {
    const std::string both = "head -c 300000 /dev/zero | tr '\\0' x";
    const std::pair<std::string, std::string> cases[] = {
        {"echo warning >&2; echo listing", "listing\nwarning\n"},
        {"cat; exit 3", ""},
        {both + " >&2; " + both, std::string(600'000, 'x')},
    };
    Shell shell;
    for (const auto& [command, result] : cases) {
        shell.Execute(command);
        EXPECT_EQ(shell.Result(), result);
    }
    for (const std::string name : {"two  blanks", "it's", "\"$HOME\"`id`\\", "a\nb\xFF", "-n", "*", "~"}) {
        shell.Execute("printf '<%s>' " + FolderItem::FromPath("/")->Child(name)->ShellPath());
        EXPECT_EQ(shell.Result(), "</" + name + ">");
    }
}

// A disk on which everything belongs to another user.
class OthersDisk : public FileSystem {
    std::optional<FileStatus> EntryStatus(const std::string& path) const override {
        auto status = FileSystem::EntryStatus(path);
        if (status) ++status->owner;
        return status;
    }
};

TEST(TemporaryFolderTest, IsTheUsersAlone) {
    const TemporaryFolder parent;
    const Environment where("TMPDIR", parent.Path());
    const std::string name = "varnith-" + std::to_string(geteuid());
    const std::string place = parent / name;
    const auto is_taken = [] { return static_cast<bool>(varnith::TemporaryFolder()); };

    fs::permissions(parent.Folder("elsewhere"), fs::perms::owner_all);
    fs::create_directory_symlink(parent / "elsewhere", place);
    EXPECT_FALSE(is_taken()) << "a link";
    fs::remove(place);
    parent.File(name, "a file");
    EXPECT_FALSE(is_taken()) << "a file";
    fs::remove(place);

    EXPECT_EQ(varnith::TemporaryFolder()->AbsolutePath(), place);
    EXPECT_EQ(TreeOf(parent.Path()).at(name), "700/");
    for (const auto& [mode, taken] :
         {std::pair(0777u, false), {0720u, false}, {0702u, false}, {0755u, true}}) {
        fs::permissions(place, fs::perms(mode));
        EXPECT_EQ(is_taken(), taken) << std::oct << mode;
    }
    EXPECT_EQ(TreeOf(parent.Path()).at(name), "700/");
    const OthersDisk disk;
    const FileSystem::Replacement in_force(disk);
    EXPECT_FALSE(is_taken()) << "someone else's";
}

class LaunchTest : public testing::Test {
  protected:
    ~LaunchTest() override {
        for (const pid_t process : Started(0)) kill(process, SIGKILL);
    }

    // A program that reads its input, notes down its process, and waits to be ended.
    void Program(const std::string& name) const {
        const std::string path = folder.File(
            name, "#!/bin/sh\ncat\necho $$ >>'" + folder.Path() + "/started'\nexec tail -f /dev/null\n");
        fs::permissions(path, fs::perms(0755));
    }
    // The processes, once there are so many.
    std::vector<pid_t> Started(std::size_t count) const {
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        for (;;) {
            std::ifstream lines(folder / "started");
            const std::vector<pid_t> processes(std::istream_iterator<pid_t>(lines), {});
            if (processes.size() >= count || std::chrono::steady_clock::now() > limit) return processes;
            std::this_thread::yield();
        }
    }
    void Launch(const std::string& name) const {
        LaunchApplication(FolderItem::FromPath(folder / name), true);
    }

    TemporaryFolder folder;
    TestDesktop desktop;
    Desktop::InForce in_force{desktop};
};

TEST_F(LaunchTest, StartsOneProcessAndBringsItToTheFront) {
    Program("New Name/Contents/MacOS/Program");
    folder.File("New Name/Contents/MacOS/A file");
    const FileHandle not_handed_on(dup(STDERR_FILENO));
    for (int i = 0; i < 3; ++i) Launch("New Name");
    ASSERT_EQ(Started(1).size(), 1u);
    const pid_t process = Started(1).front();
    EXPECT_EQ(desktop.brought_to_front, (std::vector<std::int64_t>{process, process}));
    EXPECT_EQ(getsid(process), process) << "it would end with this program's terminal";
    const fs::directory_iterator files("/proc/" + std::to_string(process) + "/fd");
    EXPECT_LE(std::distance(begin(files), end(files)), 4) << "the shell has its script open too";

    kill(process, SIGKILL);
    while (kill(process, 0) == 0) Launch("New Name");
    EXPECT_EQ(Started(2).size(), 2u);
}

TEST_F(LaunchTest, WhatIsNoProgramIsNotStarted) {
    folder.File("a file", "#!/bin/sh\n");
    folder.Folder("a folder");
    fs::permissions(folder.File("Broken.app/Contents/MacOS/Program",
                                "\x7F"
                                "ELF"),
                    fs::perms(0755));
    for (const char* name : {"a file", "a folder", "missing", "Broken.app"})
        for (int i = 0; i < 2; ++i) Launch(name);
    EXPECT_TRUE(desktop.brought_to_front.empty());
}

}  // namespace

}  // namespace varnith::test
