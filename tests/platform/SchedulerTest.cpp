#include <functional>
#include <memory>

#include <gtest/gtest.h>

#include "platform/threads/Scheduler.h"
#include "platform/threads/Thread.h"

namespace varnith::test {

struct SchedulerTest : testing::Test {
    struct Script : Thread {
        std::function<void()> body;
        void Event_Run() override { body(); }
    };

    SchedulerTest() { scheduler.SetSlice(std::chrono::milliseconds(0)); }
    ~SchedulerTest() override { scheduler.KillAll(); }

    // A started thread that does something that often, with a yield point behind each time, and writes a dot
    // when its stack is left, in whatever way.
    Ref<Script> Run(int steps, const std::function<void()>& step) {
        const auto thread = MakeRef<Script>();
        thread->body = [this, steps, step] {
            const std::shared_ptr<void> dot(nullptr, [this](void*) { log += '.'; });
            for (int i = 0; i < steps; ++i, Yield()) step();
        };
        thread->Run();
        return thread;
    }
    Ref<Script> Writer(char letter, int steps) {
        return Run(steps, [this, letter] { log += letter; });
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
    EXPECT_EQ(LogAfterTurn(), "ababa..") << "a thread that runs is not run a second time";
    scheduler.SetSlice(std::chrono::hours(1));
    a->Run();
    EXPECT_EQ(LogAfterTurn(), "ababa..aaa.");
}

TEST_F(SchedulerTest, KillEndsAThreadWhereItStandsAndUnwindsIt) {
    Writer('u', 1)->Kill();
    const auto a = Writer('a', 9);
    EXPECT_EQ(LogAfterTurn(), "a");
    for (int i = 0; i < 2; ++i) a->Kill();
    EXPECT_EQ(LogAfterTurn(), "a.");
    a->Run();
    EXPECT_EQ(LogAfterTurn(), "a.a") << "a killed thread can be run anew";
    a->Kill();
    const auto killer = Run(1, [&] { a->Kill(); });
    a->Run();
    Writer('w', 9);
    EXPECT_EQ(LogAfterTurn(), "a.a.") << "killed in front of its turn; and another went with its last Ref";
}

}  // namespace varnith::test
