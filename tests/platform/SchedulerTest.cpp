#include <gtest/gtest.h>

#include "platform/base/Exceptions.h"
#include "platform/base/Guard.h"
#include "platform/threads/Scheduler.h"
#include "platform/threads/Thread.h"
#include "support/ProgramTest.h"

namespace varnith::test {

using std::chrono::milliseconds;

struct Script : Thread {
    explicit Script(std::function<void()> b) : body(std::move(b)) {}
    std::function<void()> body;
    void Event_Run() override { body(); }
};

// A place on a thread's stack that writes a dot when it is left, in whatever way.
struct Dot {
    std::string& log;
    ~Dot() { log += '.'; }
};

struct SchedulerTest : testing::Test {
    SchedulerTest() { scheduler.SetSlice(milliseconds(0)); }
    ~SchedulerTest() override {
        scheduler.KillAll();
        scheduler.SetWakeUp(nullptr);
        SetUnhandledExceptionHandler(nullptr);
    }

    Ref<Script> Run(std::function<void()> body) {
        const auto thread = MakeRef<Script>(std::move(body));
        thread->Run();
        return thread;
    }
    // A started thread that writes its letter that often, with a yield point behind each.
    Ref<Script> Writer(char letter, int steps) {
        return Run([this, letter, steps] {
            const Dot dot{log};
            for (int i = 0; i < steps; ++i) {
                log += letter;
                Yield();
            }
        });
    }
    std::string LogAfter(int turns) {
        while (turns-- > 0) scheduler.Turn();
        return log;
    }

    Scheduler& scheduler = Scheduler::Current();
    std::string log;
};

TEST_F(SchedulerTest, SwitchesAtYieldPointsOnlyAndWhenTheSliceIsUsedUp) {
    const auto a = Writer('a', 3);
    const auto b = Writer('b', 2);
    a->Run();
    EXPECT_EQ(log, "") << "a body starts with the next turn";
    EXPECT_EQ(LogAfter(1), "ab");
    Yield();
    EXPECT_EQ(log, "abab") << "a yield point in an event handler gives the threads a turn";
    EXPECT_EQ(LogAfter(3), "ababa..") << "a thread that runs is not run a second time";
    scheduler.SetSlice(std::chrono::hours(1));
    a->Run();
    EXPECT_EQ(LogAfter(1), "ababa..aaa.");
}

TEST_F(SchedulerTest, KillEndsAThreadWhereItStandsAndUnwindsIt) {
    Writer('u', 1)->Kill();
    const auto a = Writer('a', 9);
    scheduler.Turn();
    for (int i = 0; i < 2; ++i) a->Kill();
    EXPECT_EQ(LogAfter(1), "a.");
    a->Run();
    EXPECT_EQ(LogAfter(1), "a.a") << "a killed thread can be run anew";
    Ref<Script> victim;
    const auto killer = Run([&] {
        Yield();
        victim->Kill();
    });
    victim = Writer('v', 9);
    EXPECT_EQ(LogAfter(2), "a.aava.") << "killed by another thread in front of its turn";
    Writer('w', 9);
    EXPECT_EQ(LogAfter(1), "a.aava.a") << "a thread goes with its last Ref";
}

TEST_F(SchedulerTest, AnExceptionEndsItsThreadAndGoesToTheHandler) {
    SetUnhandledExceptionHandler([&](const std::exception& error) {
        log += dynamic_cast<const OutOfMemoryException*>(&error) ? 'M' : 'N';
        Yield();
    });
    const auto nil = Run([this] {
        const Dot dot{log};
        Yield();
        Ref<Thread>()->Run();
    });
    const auto greedy = Run([] { throw std::bad_alloc(); });
    const auto other = Writer('a', 5);
    EXPECT_EQ(LogAfter(4), "M.Naaaaa.") << "the handler gives way as any event handler, and the others go on";
    EXPECT_FALSE(scheduler.UntilNextTurn());
}

TEST_F(SchedulerTest, AThreadStandsAside) {
    int wake_ups = 0;
    scheduler.SetWakeUp([&] { ++wake_ups; });
    const auto thread = Writer('a', 3);
    EXPECT_EQ(scheduler.UntilNextTurn(), milliseconds(0));
    EXPECT_EQ(LogAfter(1), "a");
    thread->Suspend();
    EXPECT_EQ(LogAfter(1), "a");
    EXPECT_FALSE(scheduler.UntilNextTurn()) << "a suspended thread waits for no turn";
    wake_ups = 0;
    thread->Resume();
    EXPECT_EQ(wake_ups, 1);
    EXPECT_EQ(LogAfter(1), "aa");
    thread->Sleep(30);
    EXPECT_EQ(LogAfter(1), "aa");
    EXPECT_LE(scheduler.UntilNextTurn(), milliseconds(30));
    RunThreadsUntil([&] { return log == "aaa"; });
}

}  // namespace varnith::test
