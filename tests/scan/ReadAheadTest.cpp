#include <algorithm>
#include <condition_variable>
#include <mutex>

#include "platform/threads/Workers.h"
#include "support/ProgramTest.h"

namespace varnith::test {

using ReadAheadTest = ProgramTest;

// A share on which a question takes its time.
class Share {
  public:
    // Keeps whoever asks waiting for that long, or until Answer.
    bool Wait(std::chrono::milliseconds time) {
        std::unique_lock lock(mutex_);
        most_ = std::max(most_, ++waiting_);
        answer_.wait_for(lock, time, [this] { return answers_; });
        --waiting_;
        return false;
    }
    void Answer() {
        const std::lock_guard lock(mutex_);
        answers_ = true;
        answer_.notify_all();
    }
    std::int32_t MostAtOnce() {
        const std::lock_guard lock(mutex_);
        return most_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable answer_;
    std::int32_t waiting_ = 0;
    std::int32_t most_ = 0;
    bool answers_ = false;
};

TEST_F(ReadAheadTest, ManyQuestionsAreOnTheirWayAtOnceAndTheRowsStayInOrder) {
    for (const bool folder_each : {false, true}) {
        SCOPED_TRACE(folder_each);
        const TemporaryFolder tree;
        Lines rows;
        for (int i = 100; i < 300; ++i) {
            const std::string folder = folder_each ? "folder " + std::to_string(i) : ".";
            const std::string name = std::to_string(i) + ".tif";
            tree.File(folder + "/" + name, TiffBytes(i % 3 + 1));
            rows.push_back(name + "|" + std::to_string(i % 3 + 1) + "|" +
                           (folder_each ? tree / folder : tree.Path()) + "|tif");
        }
        Share share;
        disk.fails = [&](const std::string&) { return share.Wait(std::chrono::milliseconds(20)); };
        Start([&] {
            Scan(tree.Path(), true);
            EXPECT_EQ(Rows(), rows);
        });
        EXPECT_GE(share.MostAtOnce(), 32);
    }
}

TEST_F(ReadAheadTest, AScanThatGetsNoAnswerCanBeEndedAndAnotherDone) {
    for (const char* name : {"share/a.tif", "share/b.tif", "here/c.tif"}) documents.File(name, TiffBytes(1));
    for (const char* silent : {"share", "share/b.tif"}) {
        SCOPED_TRACE(silent);
        Share share;
        disk.fails = [&](const std::string& path) {
            return path == documents / silent && share.Wait(std::chrono::seconds(20));
        };
        Start([&] {
            Main().CheckBox4.SetValue(true);
            Locate(documents / "share");
            RunThreadsUntil([&] { return share.MostAtOnce() == 1; });
            Scan(documents / "here", true);
            EXPECT_EQ(Texts(), "Varnith - Testix - Finished|here|1 file(s)|All,tif");
            EXPECT_EQ(Rows(), Lines{"c.tif|1|here|tif"});
        });
        share.Answer();
        Workers::WaitUntilQuiet();
    }
}

}  // namespace varnith::test
