#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>

#include <fcntl.h>
#include <netdb.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include "FailingCalls.h"
#include "FailingDatabase.h"
#include "WalkTest.h"

// Makes the program's calls and SQLite's fail, one after the other: of each kind the first, then the second
// and so on, until a run makes no more. Each in a process of its own, once alone and once with all later
// calls of the kind, at a first start and at a later one.
//   failing-calls STRIDE KIND   tries each STRIDE-th call, from a random one on
//   failing-calls --kinds       lists the kinds
namespace varnith::test {

namespace {

struct Kind {
    const char* name;
    Call call;
    int error;
    const char* function = nullptr;  // the only one; null for all of the kind
};

constexpr Kind Kinds[] = {
    {"open", Call::Open, EMFILE},
    {"read", Call::Read, EIO},
    {"list", Call::List, EIO},
    {"stat", Call::Stat, EIO},
    {"write", Call::Write, ENOSPC},
    {"truncate", Call::Truncate, EIO},
    {"rename", Call::Rename, EIO},
    {"sync", Call::Sync, EIO},
    {"remove", Call::Remove, EACCES},
    {"make", Call::Make, ENOSPC},
    {"mode", Call::Mode, EPERM},
    {"lock", Call::Lock, ENOLCK},
    {"map", Call::Map, ENOMEM},
    {"memory", Call::Memory, ENOMEM},
    {"thread", Call::Thread, EAGAIN},
    {"spawn", Call::Spawn, EAGAIN},
    {"pipe", Call::Pipe, EMFILE},
    {"socket", Call::Socket, EMFILE},
    {"connect", Call::Connect, ENETDOWN},
    {"send", Call::Send, EPIPE},
    {"receive", Call::Receive, EIO},
    {"event", Call::Event, EMFILE},
    {"look-up", Call::LookUp, EAI_AGAIN},
    // The result codes of SQLite that its file system layer may return: from any method, then from one.
    {"sqlite error", Call::Database, SQLITE_ERROR},
    {"sqlite nomem", Call::Database, SQLITE_NOMEM},
    {"sqlite interrupt", Call::Database, SQLITE_INTERRUPT},
    {"sqlite ioerr", Call::Database, SQLITE_IOERR},
    {"sqlite cantopen", Call::Database, SQLITE_CANTOPEN, "xOpen"},
    {"sqlite readonly", Call::Database, SQLITE_READONLY, "xOpen"},
    {"sqlite auth", Call::Database, SQLITE_AUTH, "xOpen"},
    {"sqlite busy", Call::Database, SQLITE_BUSY, "xLock"},
    {"sqlite locked", Call::Database, SQLITE_LOCKED, "xLock"},
    {"sqlite perm", Call::Database, SQLITE_PERM, "xLock"},
    {"sqlite protocol", Call::Database, SQLITE_PROTOCOL, "xLock"},
    {"sqlite lock", Call::Database, SQLITE_IOERR_LOCK, "xLock"},
    {"sqlite unlock", Call::Database, SQLITE_IOERR_UNLOCK, "xUnlock"},
    {"sqlite access", Call::Database, SQLITE_IOERR_ACCESS, "xAccess"},
    {"sqlite size", Call::Database, SQLITE_IOERR_FSTAT, "xFileSize"},
    {"sqlite corrupt", Call::Database, SQLITE_CORRUPT, "xRead"},
    {"sqlite notadb", Call::Database, SQLITE_NOTADB, "xRead"},
    {"sqlite read", Call::Database, SQLITE_IOERR_READ, "xRead"},
    {"sqlite short read", Call::Database, SQLITE_IOERR_SHORT_READ, "xRead"},
    {"sqlite full", Call::Database, SQLITE_FULL, "xWrite"},
    {"sqlite nolfs", Call::Database, SQLITE_NOLFS, "xWrite"},
    {"sqlite write", Call::Database, SQLITE_IOERR_WRITE, "xWrite"},
    {"sqlite sync", Call::Database, SQLITE_IOERR_FSYNC, "xSync"},
    {"sqlite delete", Call::Database, SQLITE_IOERR_DELETE, "xDelete"},
};

Fault fault;
bool is_first_start = false;
std::string failed_function;

// Its temporary folder is on another disk, so that an update is copied into its place.
class FailingCallsTest : public WalkTest {
    const TemporaryFolder other_disk_{"/tmp"};
    const Environment temporary_folder_{"TMPDIR", other_disk_.Path()};
};

TEST_F(FailingCallsTest, LeavesAllAsBeforeOrAsAfter) {
    Check(
        is_first_start, [] { BeginFault(fault); }, [] { failed_function = EndFault(); });
}

// The exit status of a run.
constexpr int Passed = 0;
constexpr int NothingFailed = 3;

int RunInChild(const std::string& log) {
    constexpr unsigned Limit = 60;  // seconds
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        const int output = open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(output, STDOUT_FILENO);
        dup2(output, STDERR_FILENO);
        alarm(Limit);
        const int failures = RUN_ALL_TESTS();
        std::exit(failures != 0 ? 1 : failed_function.empty() ? NothingFailed : Passed);
    }
    int status = 0;
    while (waitpid(child, &status, 0) != child) continue;
    return status;
}

// Returns the number of runs with a finding.
int TryAll(const Kind& kind, long stride) {
    int runs = 0;
    int findings = 0;
    const std::string log = std::string(getenv("TMPDIR")) + "/log";
    for (const int variation : {0, 1, 2, 3}) {
        is_first_start = (variation & 1) != 0;
        fault = {kind.call, kind.error, 1 + random() % stride, (variation & 2) != 0, kind.function};
        // So many findings say that the walk itself is broken.
        for (const int most = findings + 20; findings < most; fault.number += stride) {
            const int status = RunInChild(log);
            ++runs;
            if (WIFEXITED(status) && WEXITSTATUS(status) == NothingFailed) break;
            if (WIFEXITED(status) && WEXITSTATUS(status) == Passed) continue;
            ++findings;
            std::printf("%s call %ld%s, %s start: %s\n", kind.name, fault.number,
                        fault.lasts ? " and all later ones" : "", is_first_start ? "first" : "later",
                        WIFEXITED(status)             ? "a check has failed"
                        : WTERMSIG(status) == SIGALRM ? "it hangs"
                                                      : strsignal(WTERMSIG(status)));
            std::printf("%s\n", BytesOf(log).substr(0, 1000).c_str());
        }
    }
    std::printf("%-17s%6d runs%6d findings\n", kind.name, runs, findings);
    std::fflush(stdout);
    return findings;
}

int ListKinds() {
    for (const Kind& kind : Kinds) std::puts(kind.name);
    return 0;
}

int Try(long stride, const std::string& name) {
    const Kind* const kind = std::ranges::find(Kinds, name, &Kind::name);
    if (kind == std::end(Kinds)) {
        std::fprintf(stderr, "There is no kind %s.\n", name.c_str());
        return 2;
    }
    const TemporaryFolder folder("/dev/shm");  // a disk in memory, where a sync takes no time
    setenv("TMPDIR", folder.Path().c_str(), 1);
    srandom(static_cast<unsigned>(getpid()));
    UseFailingDatabase();
    WalkTest::StartServers(folder.Path());
    return TryAll(*kind, stride) == 0 ? 0 : 1;
}

}  // namespace

}  // namespace varnith::test

int main(int argc, char** argv) {
    using namespace varnith::test;
    testing::GTEST_FLAG(brief) = true;
    testing::InitGoogleTest(&argc, argv);
    if (argc == 2 && argv[1] == std::string("--kinds")) return ListKinds();
    if (argc == 3) return Try(std::atol(argv[1]), argv[2]);
    std::fputs("usage: failing-calls STRIDE KIND, or failing-calls --kinds\n", stderr);
    return 2;
}
