#include <atomic>
#include <filesystem>
#include <future>
#include <mutex>
#include <random>
#include <thread>

#include "helpers/ProgramTest.h"

namespace varnith::test {

using ReadAheadTest = ProgramTest;

TEST_F(ReadAheadTest, ManyFilesAreOnTheirWayAtOnce) {
    for (const int files_for_a_folder : {1, 50}) {
        SCOPED_TRACE(files_for_a_folder);
        const TemporaryFolder root;
        for (int i = 0; i < 400; ++i) {
            const std::string name = std::to_string(i);
            root.File((i % files_for_a_folder == 0 ? name + "/" : "") + name + ".tif");
        }
        std::atomic<int> waiting = 0;
        std::atomic<bool> many = false;
        disk.fails = [&](const std::string& path) {
            if (!path.ends_with(".tif")) return false;
            if (++waiting >= 32) many = true;
            // The share's round trip, which no test waits for.
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            --waiting;
            return false;
        };
        Start([&] {
            Scan(root.Path(), true);
            EXPECT_EQ(Rows().size(), 400u);
            EXPECT_TRUE(many);
        });
    }
}

// The scan stops at its first row, as it does while a dialog is open, until the answers read ahead have
// expired.
TEST_F(ReadAheadTest, WhatHasChangedMeanwhileShowsAsItIsNow) {
    const auto old = std::chrono::milliseconds(300);
    const auto rows_of = [](const std::string& folder, const Lines& files) {
        Lines rows;
        for (const std::string& file : files) rows.push_back(file + "|" + folder + "|tif");
        return rows;
    };
    for (const char* name : {"a.tif", "b/1.tif", "b/2.tif", "b/sub/1.tif", "c.tif", "d.tif", "e/1.tif"})
        documents.File(name, TiffBytes(1));
    Start([&] {
        Main().CheckBox4.SetValue(true);
        Locate(documents.Path());
        RunThreadsUntil([] { return Main().Listbox1.ListCount() == 1; });
        WaitForWorkers();
        documents.File("b/new.tif", TiffBytes(2));
        documents.File("e/new/1.tif", TiffBytes(2));
        documents.File("c.tif", TiffBytes(3));
        std::filesystem::remove_all(documents / "b/sub");
        std::filesystem::remove(documents / "d.tif");
        const auto then = std::chrono::steady_clock::now();
        while (std::chrono::steady_clock::now() - then < old) continue;
        RunThreads();
        Lines rows = rows_of(".", {"a.tif|1"});
        for (const Lines& more :
             {rows_of("b", {"1.tif|1", "2.tif|1", "new.tif|2"}), rows_of(".", {"c.tif|3", "d.tif|3"}),
              rows_of("e", {"1.tif|1"}), rows_of("e/new", {"1.tif|2"})})
            rows.insert(rows.end(), more.begin(), more.end());
        EXPECT_EQ(Rows(), rows) << "the scan keeps the listing of the folder it is in";
    });
}

// Both sources walk random trees on a disk with random delays. Some walks are ended half-way.
TEST_F(ReadAheadTest, GivesTheRowsOfAPlainWalk) {
    std::mt19937 random(20);
    std::mutex mutex;
    std::mt19937 delays(20);
    disk.fails = [&](const std::string& path) {
        const auto delay = [&] {
            const std::lock_guard lock(mutex);
            return std::chrono::microseconds(delays() % 4 == 0 ? delays() % 2000 : 0);
        }();
        const auto then = std::chrono::steady_clock::now();
        while (std::chrono::steady_clock::now() - then < delay) continue;
        return path.ends_with("unreadable");
    };
    const char* const names[] = {"a.tif", "b.TIFF", "damaged.tif", "c.txt", ".hidden.tif", "tif", "tiff"};
    for (int tree = 0; tree < 30; ++tree) {
        const TemporaryFolder root;
        std::vector<std::string> folders = {""};
        for (int i = 0; i < 60; ++i) {
            const std::string folder = folders[random() % folders.size()];
            const char* const name = names[random() % std::size(names)];
            if (random() % 3 == 0)
                folders.push_back(folder + (random() % 9 == 0 ? "unreadable" : "f") + std::to_string(i) +
                                  "/");
            else
                root.File(folder + std::to_string(i) + name, TiffBytes(static_cast<int>(random() % 3)));
        }
        Start([&] {
            MainWindow& w = Main();
            w.loadfolder(FolderItem::FromPath(root.Path()));
            const Lines plain = Rows();
            const bool ended = random() % 3 == 0;
            w.CheckBox4.SetValue(true);
            Locate(root.Path());
            RunThreadsUntil([&] {
                return ended ? std::ssize(Rows()) >= std::ssize(plain) / 2
                             : w.Title().ends_with(" - Finished");
            });
            Locate(std::nullopt);
            const Lines ahead = Rows();
            EXPECT_EQ(ahead, Lines(plain.begin(), plain.begin() + std::ssize(ahead))) << tree;
            EXPECT_TRUE(ended || ahead == plain) << tree;
        });
    }
}

TEST_F(ReadAheadTest, AScanThatGetsNoAnswerCanBeEndedAndAnotherDone) {
    for (const char* name : {"share/a.tif", "share/b.tif", "here/c.tif"}) documents.File(name, TiffBytes(1));
    for (const char* silent : {"share", "share/b.tif"}) {
        SCOPED_TRACE(silent);
        std::promise<void> answer;
        std::atomic<bool> asked = false;
        disk.fails = [&, told = answer.get_future().share()](const std::string& path) {
            if (path != documents / silent) return false;
            asked = true;
            return told.wait(), false;
        };
        Start([&] {
            Main().CheckBox4.SetValue(true);
            Locate(documents / "share");
            RunThreadsUntil([&] { return asked.load(); });
            Scan(documents / "here", true);
            EXPECT_EQ(Texts(), "Varnith - Testix - Finished|here|1 file(s)|All,tif");
            EXPECT_EQ(Rows(), Lines{"c.tif|1|here|tif"});
        });
        answer.set_value();
        WaitForWorkers();
    }
}

}  // namespace varnith::test
