#include <cstdlib>
#include <new>

#include "helpers/ProgramTest.h"
#include "platform/database/Database.h"
#include "platform/files/ReadAhead.h"
#include "platform/net/TCPSocket.h"
#include "platform/system/Shell.h"

namespace varnith::test {

static Ref<FolderItem> ItemOf(const std::string& path) {
    return FolderItem::FromPath(path);
}

// Failures that the program survives: the line that reports each, and its cause, given an empty folder.
using Failures = std::vector<std::pair<std::string, std::function<void(const TemporaryFolder&)>>>;
static const Failures failures = {
    {"open [^\n]*/nothing: No such file or directory",
     [](const auto& folder) { FileSystem::Current().OpenForReading(folder / "nothing"); }},
    {"remove [^\n]*/full: Directory not empty",
     [](const auto& folder) { ItemOf(folder.File("full/file"))->Parent()->Delete(); }},
    {"count [^\n]*/a.tif: no TIFF header",
     [](const auto& folder) { ItemOf(folder.File("a.tif", "text"))->PageCount(); }},
    {"go on with an event or a thread: std::bad_alloc",
     [](const auto& folder) {
         folder.File("a.tif");
         const WalkPlan plan{[](const ListedEntry&) -> bool { throw std::bad_alloc(); }, false};
         ItemOf(folder.Path())->ForWalk(plan)->Count();
     }},
    {"run exit 3: exit status 3", [](const auto&) { Shell().Execute("exit 3"); }},
    {"[^\n]*/words.sqlite[^\n]*",
     [](const auto& folder) {
         Database database;
         database.SetDatabaseFile(ItemOf(folder.File("words.sqlite", std::string(4096, 'x'))));
         database.Connect();
     }},
    {"[^\n]*127.0.0.1:1[^\n]*",
     [](const auto&) {
         const auto socket = MakeRef<TCPSocket>();
         socket->Address = "127.0.0.1";
         socket->Port = 1;
         socket->Connect();
         for (int i = 0; i < 1000 && socket->LastErrorCode() == 0; ++i) socket->Poll();
     }},
};

TEST(TraceTest, TellsEachFailureThatIsPassedOverInOneLineIfAskedTo) {
    // The program reads the environment once, so each failure needs a new process.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto meet = [](const auto& failure) { failure(TemporaryFolder()); };
    for (const bool asked : {true, false}) {
        const Environment trace("VARNITH_TRACE", asked ? "1" : "0");
        for (const auto& [line, failure] : failures)
            EXPECT_EXIT((meet(failure), std::_Exit(0)), testing::ExitedWithCode(0),
                        testing::MatchesRegex(asked ? "Varnith: can't " + line + "\n" : ""))
                << line;
    }
}

}  // namespace varnith::test
