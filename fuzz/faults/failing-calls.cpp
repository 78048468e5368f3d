#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <netdb.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "FailingCalls.h"
#include "WalkTest.h"

// Makes the program's calls fail, one after the other: of each kind the first, then the second and so on,
// until a run makes no more. Each in a process of its own, once alone and once with all later calls of the
// kind, at a first start and at a later one.
//   failing-calls STRIDE [KIND]   tries each STRIDE-th call, from a random one on
namespace varnith::test {

namespace {

struct Kind {
    const char* name;
    Call call;
    int error;
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
        fault = {kind.call, kind.error, 1 + random() % stride, (variation & 2) != 0};
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
    std::printf("%-10s%6d runs%6d findings\n", kind.name, runs, findings);
    std::fflush(stdout);
    return findings;
}

int Main(int argc, char** argv) {
    testing::GTEST_FLAG(brief) = true;
    testing::InitGoogleTest(&argc, argv);
    if (argc < 2) {
        std::fputs("usage: failing-calls STRIDE [KIND]\n", stderr);
        return 2;
    }
    const TemporaryFolder folder("/dev/shm");  // a disk in memory, where a sync takes no time
    setenv("TMPDIR", folder.Path().c_str(), 1);
    srandom(static_cast<unsigned>(getpid()));
    WalkTest::StartServers(folder.Path());
    int findings = 0;
    for (const Kind& kind : Kinds)
        if (argc < 3 || std::string(argv[2]) == kind.name) findings += TryAll(kind, std::atol(argv[1]));
    return findings == 0 ? 0 : 1;
}

}  // namespace

}  // namespace varnith::test

int main(int argc, char** argv) {
    return varnith::test::Main(argc, argv);
}
