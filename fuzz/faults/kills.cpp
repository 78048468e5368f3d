#include <cstdio>
#include <cstdlib>
#include <string>

#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include "helpers/ProgramTest.h"

// Kills the program at a random moment of its saves: each save has other rows, and another number of them.
// After that the file must open and hold the rows of one save, all of them, or none.
//   kills TIMES
namespace varnith::test {

namespace {

std::string application_folder;

// The whole program without a display, which saves until it is killed.
class SavingTest : public ProgramTest {
  protected:
    SavingTest() { disk.executable = application_folder + "/Varnith"; }
};

void Fill(Listbox& list, int save) {
    list.DeleteAllRows();
    const int rows = 1 + save * 977 % 2000;
    for (int row = 0; row < rows; ++row) {
        list.AddRow("");
        list.SetCell(list.LastIndex(), 1, std::string(static_cast<std::size_t>(row % 300), 'n'));
        list.SetCell(list.LastIndex(), 2, std::to_string(row));
        list.SetCell(list.LastIndex(), 3, std::to_string(rows));
        list.SetCell(list.LastIndex(), 4, std::to_string(save));
    }
}

TEST_F(SavingTest, Saves) {
    Start([] {
        for (int save = static_cast<int>(random() % 1000);; ++save) {
            Fill(Main().Listbox1, save);
            const auto thread = MakeRef<Beside>([] { Main().savetodb(); });
            RunThreads();
        }
    });
}

std::string Asked(sqlite3* file, const char* statement) {
    std::string answer;
    const auto take = [](void* to, int, char** values, char**) {
        *static_cast<std::string*>(to) = values[0] ? values[0] : "";
        return 0;
    };
    return sqlite3_exec(file, statement, take, &answer, nullptr) == SQLITE_OK ? answer : sqlite3_errmsg(file);
}

// What is wrong with the file; empty if nothing is. `full` tells whether it holds rows.
std::string FaultOf(const std::string& path, bool& full) {
    sqlite3* file = nullptr;
    std::string fault;
    if (sqlite3_open_v2(path.c_str(), &file, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK)
        fault = sqlite3_errmsg(file);
    else if (const std::string check = Asked(file, "pragma integrity_check"); check != "ok")
        fault = check;
    else
        fault = Asked(file,
                      "select case when count(*) = 0 or (count(distinct filetype) = 1 and count(*) = "
                      "max(cast(filepath as integer)) and count(distinct pagecount) = count(*)) "
                      "then '' else 'part of a save' end from preferences");
    full = Asked(file, "select count(*) > 0 from preferences") == "1";
    sqlite3_close(file);
    return fault;
}

pid_t StartSaving() {
    const pid_t child = fork();
    if (child != 0) return child;
    srandom(static_cast<unsigned>(getpid()));
    std::exit(RUN_ALL_TESTS());
}

int KillOften(int times) {
    int findings = 0;
    int with_rows = 0;
    for (int kill_number = 0; kill_number < times; ++kill_number) {
        const pid_t child = StartSaving();
        // The start takes some tens of milliseconds, a save a few.
        usleep(static_cast<useconds_t>(20'000 + random() % 150'000));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        if (access((application_folder + "/varnth").c_str(), F_OK) != 0) continue;
        bool full = false;
        const std::string fault = FaultOf(application_folder + "/varnth", full);
        with_rows += full ? 1 : 0;
        if (fault.empty()) continue;
        ++findings;
        std::printf("kill %d: %s\n", kill_number, fault.c_str());
    }
    std::printf("%d kills, rows were left %d times, %d findings\n", times, with_rows, findings);
    return findings;
}

}  // namespace

}  // namespace varnith::test

int main(int argc, char** argv) {
    using namespace varnith::test;
    testing::GTEST_FLAG(brief) = true;
    testing::InitGoogleTest(&argc, argv);
    if (argc != 2) {
        std::fputs("usage: kills TIMES\n", stderr);
        return 2;
    }
    const TemporaryFolder folder;
    application_folder = folder.Path();
    setenv("TMPDIR", folder.Folder("temporary").c_str(), 1);
    return KillOften(std::atoi(argv[1])) == 0 ? 0 : 1;
}
