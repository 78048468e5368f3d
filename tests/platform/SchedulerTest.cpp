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

    static Ref<Script> Run(const std::function<void()>& body) {
        const auto thread = MakeRef<Script>();
        thread->body = body;
        thread->Run();
        return thread;
    }
    // It writes its letter that often, with a yield point behind each time, and a dot when its stack is left,
    // in whatever way.
    Ref<Script> Writer(char letter, int times) {
        return Run([this, letter, times] {
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
    EXPECT_EQ(LogAfterTurn(), "ababa..") << "a thread that runs is not run a second time";
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
    EXPECT_EQ(LogAfterTurn(), "a.a") << "a killed thread can be run anew";
    a->Kill();
    const auto killer = Run([&] { a->Kill(); });
    a->Run();
    Writer('w', 9);
    EXPECT_EQ(LogAfterTurn(), "a.a.") << "killed in front of its turn; and another went with its last Ref";
}

}  // namespace varnith::test
