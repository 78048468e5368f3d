#include <filesystem>
#include <fstream>
#include <memory>
#include <set>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include "helpers/ProgramTest.h"
#include "platform/base/Text.h"
#include "platform/system/ApplicationLaunch.h"
#include "platform/system/AssignedApplication.h"
#include "platform/system/Shell.h"
#include "platform/system/SystemInformationMBS.h"
#include "platform/threads/Scheduler.h"
#include "platform/threads/Thread.h"
#include "platform/ui/Application.h"

namespace varnith::test {

namespace fs = std::filesystem;

struct SchedulerTest : testing::Test {
    SchedulerTest() { scheduler.SetSlice(std::chrono::milliseconds(0)); }
    ~SchedulerTest() override { scheduler.KillAll(); }

    // A thread that writes its letter in that many turns, and a dot when its stack unwinds, however it ends.
    Ref<Beside> Writer(char letter, int times) {
        return MakeRef<Beside>([this, letter, times] {
            const std::shared_ptr<void> dot(nullptr, [this](void*) { log += '.'; });
            for (int i = 0; i < times; ++i, Yield()) log += letter;
        });
    }
    std::string LogAfterTurn() { return scheduler.Turn(), log; }

    Scheduler& scheduler = Scheduler::Current();
    std::string log;
};

TEST_F(SchedulerTest, SwitchesAtYieldPointsOnlyAndWhenTheSliceIsUsedUp) {
    const auto a = Writer('a', 3);
    const auto b = Writer('b', 2);
    a->Run();
    EXPECT_EQ(log, "") << "a body starts with the next turn";
    EXPECT_EQ(LogAfterTurn(), "ab");
    Yield();
    EXPECT_EQ(log, "abab") << "a yield point in an event handler gives the threads a turn";
    EXPECT_EQ(LogAfterTurn(), "ababa.");
    EXPECT_EQ(LogAfterTurn(), "ababa..") << "a running thread isn't started again";
    scheduler.SetSlice(std::chrono::hours(1));
    a->Run();
    EXPECT_EQ(LogAfterTurn(), "ababa..aaa.");
}

TEST_F(SchedulerTest, AThreadStandsAsideOrIsKilledWhereItStands) {
    Writer('u', 1)->Kill();
    const auto a = Writer('a', 9);
    a->Suspend();
    EXPECT_EQ(LogAfterTurn(), "");
    EXPECT_FALSE(scheduler.UntilNextTurn()) << "nothing to wake the event loop for";
    a->Resume();
    EXPECT_EQ(LogAfterTurn(), "a");
    for (int i = 0; i < 2; ++i) a->Kill();
    EXPECT_EQ(LogAfterTurn(), "a.");
    a->Run();
    EXPECT_EQ(LogAfterTurn(), "a.a") << "a killed thread can be started again";
    a->Kill();
    const auto killer = MakeRef<Beside>([&] { a->Kill(); });
    a->Run();
    Writer('w', 9);
    EXPECT_EQ(LogAfterTurn(), "a.a.") << "a was killed before its turn; w lost its last Ref";
}

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

TEST(OpenTest, StartsWithTheSignalsOfAShellAndSaysOneLineAtMost) {
    const Application program;
    const TemporaryFolder folder;
    const Environment configuration("XDG_CONFIG_HOME", folder.Path());
    const Environment data("XDG_DATA_HOME", folder.Path());
    const Environment no_desktop("XDG_CURRENT_DESKTOP", "");
    const Environment path("PATH", folder.Path() + ":" + getenv("PATH"));
    // The opener writes to both output streams, and leaves a note if neither SIGXFSZ nor SIGPIPE is
    // ignored.
    const std::string note = folder / "note";
    const std::string opener = folder.File(
        "xdg-open",
        "#!/bin/sh\necho output; echo error >&2\ntrap 'echo \"$1\" >" + note +
            "' PIPE\ntrap 'kill -PIPE $$' XFSZ\nkill -XFSZ $$\n[ \"$1\" != mailto:nobody ] || exit 3\n");
    fs::permissions(opener, fs::perms::owner_all);
    folder.File("applications/viewer.desktop",
                "[Desktop Entry]\nType=Application\nName=Viewer\nExec=" + opener + " %f\n");
    folder.File("mimeapps.list", "[Default Applications]\nimage/tiff=viewer.desktop\n");
    const auto opened = [&] {
        std::string what;
        RunThreadsUntil([&] {
            std::ifstream file(note);
            return static_cast<bool>(std::getline(file, what));
        });
        fs::remove(note);
        return what;
    };

    const std::string terminal = folder.File("terminal");
    const FileDescriptor before(dup(STDERR_FILENO));
    dup2(FileDescriptor(open(terminal.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC)).Descriptor(), STDERR_FILENO);
    const std::string document = folder.File("document.tif");
    OpenInAssignedApplication(document, "");
    EXPECT_EQ(opened(), document);
    OpenInBrowser("http://host");
    EXPECT_EQ(opened(), "http://host");
    EXPECT_EQ(BytesOf(terminal), "");
    OpenInAssignedApplication(folder.File("two\nlines.unheard-of", std::string(1, '\0')), "");
    const std::string line = BytesOf(terminal);
    EXPECT_TRUE(line.starts_with("Varnith: can't open " + folder / "two?lines.unheard-of: ")) << line;
    OpenInBrowser("mailto:nobody");
    EXPECT_EQ(opened(), "mailto:nobody");
    RunThreadsUntil([&] {
        return BytesOf(terminal) == line + "Varnith: can't open mailto:nobody: there is no browser\n";
    });
    dup2(before.Descriptor(), STDERR_FILENO);
}

struct SystemInformationTest : testing::Test, TestFileSystem {
    bool List(const OpenFolder& listed, std::vector<DirectoryEntry>& entries) const override {
        return listed.Path() == memory ? FileSystem::List(OpenFolder(folder.Path()), entries)
                                       : FileSystem::List(listed, entries);
    }
    void Put(const std::string& path, const std::string& bytes) {
        elsewhere[path] = folder.File(ReplaceAll(path, "/", "-"), bytes);
    }

    const std::string memory = "/sys/devices/system/memory";
    TemporaryFolder folder;
    DiskInForce in_force{*this};
};

TEST_F(SystemInformationTest, TellsWhatTheSystemHas) {
    const char* const release = "/etc/os-release";
    const char* const product = "/sys/class/dmi/id/product_serial";
    const char* const board = "/proc/device-tree/serial-number";
    const char* const machine = "/etc/machine-id";
    const auto serial = SystemInformationMBS::MacSerialNumber;
    Put(product, "  \n");
    Put(board, "");
    std::set<std::string> numbers;
    for (const std::string id : {"01234567890abcde", "11234567890abcde", "01234567890abcde"}) {
        Put(machine, id + "\n");
        numbers.insert(serial());
        EXPECT_EQ(ReplaceAll(serial(), "-", "").find("1234567"), std::string::npos) << "the id stays secret";
    }
    EXPECT_EQ(numbers.size(), 2u) << "a machine's number is stable and unique";
    using Case = std::tuple<const char*, std::string, std::string (*)(), std::string>;
    for (const auto& [path, bytes, told, expected] :
         {Case{release, "NAME=\"a \\\"b\\\" c\"\nNAMES=d\n", SystemInformationMBS::OSName, "a \"b\" c"},
          {release, "NAME=\nBUILD_ID=rolling\n", SystemInformationMBS::OSName, "Linux"},
          {release, "NAMES=d\nBUILD_ID=rolling\n", SystemInformationMBS::OSVersionString, "rolling"},
          {release, "VERSION_ID=\"39\"\nBUILD_ID=x\n", SystemInformationMBS::OSVersionString, "39"},
          {machine, "", serial, ""},
          {board, std::string("10000000abc\0", 12), serial, "10000000abc"},
          {product, " PF-1 2\n", serial, "PF-1 2"}}) {
        Put(path, bytes);
        EXPECT_EQ(told(), expected) << bytes;
    }
    // The installed memory counts, including what the kernel reserves.
    Put(memory + "/block_size_bytes", "80000000\n");
    for (const std::string block : {"memory0", "memory1", "memory3", "memory7", "memory8"}) {
        folder.Folder(block);
        Put(memory + "/" + block + "/online", block == "memory3" ? "0\n" : "1\n");
    }
    EXPECT_EQ(SystemInformationMBS::LogicalRAM(), 8.0 * (1 << 30));
}

TEST(LaunchTest, StartsOneProcessOfAProgramAndBringsItToTheFront) {
    const TemporaryFolder folder;
    TestDesktop desktop;
    const InForce<Desktop> in_force(desktop);
    const auto launch = [&](const char* name) {
        LaunchApplication(FolderItem::FromPath(folder / name), true);
    };
    folder.File("New Name/Contents/MacOS/A file", "#!/bin/sh\n");
    for (const char* name : {"missing", ".", "New Name/Contents/MacOS/A file"})
        for (int i = 0; i < 2; ++i) launch(name);
    EXPECT_TRUE(desktop.brought_to_front.empty()) << "nothing has been started";

    const std::string note = folder / "note";
    fs::permissions(folder.File("New Name/Contents/MacOS/Program",
                                "#!/bin/sh\necho $$ >'" + note + "'\nexec tail -f /dev/null\n"),
                    fs::perms::owner_all);
    const auto started = [&] {
        pid_t process = 0;
        RunThreadsUntil([&] { return static_cast<bool>(std::ifstream(note) >> process); });
        fs::remove(note);
        return process;
    };
    const FileDescriptor not_handed_on(dup2(STDERR_FILENO, 100));  // far above the child's own descriptors
    for (int i = 0; i < 3; ++i) launch("New Name");
    const pid_t process = started();
    ASSERT_GT(process, 0);
    EXPECT_EQ(desktop.brought_to_front, (std::vector<std::int64_t>{process, process}));
    EXPECT_EQ(getsid(process), process) << "it has its own session, so it outlives our terminal";
    EXPECT_FALSE(fs::exists("/proc/" + Str(process) + "/fd/" + Str(not_handed_on.Descriptor())));

    kill(process, SIGKILL);
    WaitUntil([&] { return kill(process, 0) != 0; }, [&] { launch("New Name"); });
    const pid_t successor = started();
    ASSERT_GT(successor, 0);
    kill(successor, SIGKILL);
}

}  // namespace varnith::test
