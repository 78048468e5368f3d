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
    // Keeps whoever asks waiting until Answer, or for that long.
    bool Wait(std::chrono::milliseconds time) {
        std::unique_lock lock(mutex_);
        most_ = std::max(most_, ++waiting_);
        if (!answer_.wait_for(lock, time, [this] { return answers_; })) ++given_up_;
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
    std::int32_t GivenUp() {
        const std::lock_guard lock(mutex_);
        return given_up_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable answer_;
    std::int32_t waiting_ = 0;
    std::int32_t most_ = 0;
    std::int32_t given_up_ = 0;
    bool answers_ = false;
};

TEST_F(ReadAheadTest, ManyFilesAreOnTheirWayAtOnceAndTheRowsStayInOrder) {
    const std::string tiff[] = {TiffBytes(1), TiffBytes(2), TiffBytes(3)};
    for (const int files_for_a_folder : {1, 50}) {
        SCOPED_TRACE(files_for_a_folder);
        const std::string root = std::to_string(files_for_a_folder);
        for (const char* hidden : {"/.1.tif", "/.1/1.tif"}) documents.File(root + hidden);
        Lines rows;
        Lines taken;
        for (int i = 100; i < 500; ++i) {
            const std::string name = std::to_string(i);
            const std::string folder = root + (i % files_for_a_folder == 0 ? "/" + name : "");
            taken.push_back(documents.File(folder + "/" + name + ".tif", tiff[i % 3]));
            rows.push_back(name + ".tif|" + std::to_string(i % 3 + 1) + "|" + folder + "|tif");
        }
        Share share;
        disk.fails = [&](const std::string& path) {
            return path.ends_with(".tif") && share.Wait(std::chrono::milliseconds(20));
        };
        Start([&] {
            Main().CheckBox4.SetValue(true);
            disk.opened.clear();
            Locate(documents / root);
            RunThreadsUntil([&] { return Main().Listbox1.ListCount() == 200; });
            EXPECT_GE(share.MostAtOnce(), 32);
            RunThreads();
            EXPECT_EQ(Rows(), rows);
        });
        std::erase_if(disk.opened, [](const std::string& path) { return !path.ends_with(".tif"); });
        std::sort(disk.opened.begin(), disk.opened.end());
        std::sort(taken.begin(), taken.end());
        EXPECT_EQ(disk.opened, taken) << "only what is taken is opened, and once";
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
            EXPECT_EQ(share.GivenUp(), 0) << "neither waited for the share";
        });
        share.Answer();
        Workers::WaitUntilQuiet();
    }
}

}  // namespace varnith::test
