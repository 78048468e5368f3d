#include <functional>

#include <gtest/gtest.h>

#include "platform/threads/Scheduler.h"
#include "platform/threads/Thread.h"

namespace varnith::test {

struct Script : Thread {
    explicit Script(std::function<void()> b) : body(std::move(b)) {}
    std::function<void()> body;
    void Event_Run() override { body(); }
};

struct SchedulerTest : testing::Test {
    SchedulerTest() { scheduler.SetSlice(std::chrono::milliseconds(0)); }
    ~SchedulerTest() override { scheduler.KillAll(); }

    static Ref<Script> Run(std::function<void()> body) {
        const auto thread = MakeRef<Script>(std::move(body));
        thread->Run();
        return thread;
    }
    // A started thread that writes its letter that often, with a yield point behind each, and a dot when its
    // stack is left, in whatever way.
    Ref<Script> Writer(char letter, int steps) {
        return Run([this, letter, steps] {
            const auto write_dot = [this](const char*) { log += '.'; };
            const std::unique_ptr<const char, decltype(write_dot)> dot(".", write_dot);
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

}  // namespace varnith::test
