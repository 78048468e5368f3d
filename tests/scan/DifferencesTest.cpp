#include "platform/base/Text.h"
#include "platform/threads/Scheduler.h"
#include "platform/threads/Thread.h"
#include "support/ProgramTest.h"

namespace varnith::test {

// What the two scans do differently, all of it on purpose.
struct DifferencesTest : ProgramTest {
    DifferencesTest() {
        for (const char* name :
             {".a.tif", "b.tif", "sub/in.tif", "sub/on.tif", "tif", "tiff", "unlisted/c.tif"})
            documents.File(name, TiffBytes(1));
        documents.Folder("empty");
        documents.File("none/a.txt");
        disk.fails = [](const std::string& path) { return path.ends_with("/unlisted"); };
    }

    // The texts, the number of saved rows and that of redraws, each time that one of them is another at a
    // yield point of a scan.
    Lines MomentsOf(bool subfolders) {
        struct Watcher : Thread {
            std::function<void()> look;
            void Event_Run() override {
                for (;; Yield()) look();
            }
        };
        Lines moments;
        const auto watcher = MakeRef<Watcher>();
        watcher->look = [&] {
            const std::string moment =
                Texts() + "|" + Str(std::ssize(SavedRows())) + "|" + Str(Main().Refreshes());
            if (moments.empty() || moments.back() != moment) moments.push_back(moment);
        };
        watcher->Run();
        Main().CheckBox4.SetValue(subfolders);
        Locate(documents.Path());
        RunThreadsUntil([] { return Main().Title().ends_with(" - Finished"); });
        watcher->look();
        return moments;
    }
};

TEST_F(DifferencesTest, AreSeenAtEachMoment) {
    Start([&] {
        EXPECT_EQ(MomentsOf(true),
                  (Lines{"Varnith - Testix||||0|0", "Varnith - Testix|.|||0|0",
                         "Processing Item: b.tif|.|||0|0", "Processing Item: a.txt|.|||0|0",
                         "Processing Item: in.tif|.|||0|0", "Processing Item: on.tif|.|||0|0",
                         "Processing Item: tif|.|||0|0", "Processing Item: tiff|.|||0|0",
                         "Processing Item: tiff|.||All,tif|0|0", "Processing Item: tiff|.||All,tif,tiff|0|0",
                         "Varnith - Testix - Finished|.|4 file(s)|All,tif,tiff|4|1"}));
        EXPECT_EQ(Tags(), (Lines{"1", "1", "2", "3"}));
        EXPECT_EQ(MomentsOf(false), (Lines{"Varnith - Testix - Finished|.|4 file(s)|All,tif,tiff|4|1",
                                           "Varnith - Testix - Finished|.|3 file(s)|All,tif,tiff|4|1",
                                           "Varnith - Testix - Finished|.|3 file(s)|All,tif|4|1"}));
        EXPECT_EQ(Tags(), (Lines{"1", "2", "3"}));
        EXPECT_EQ(desktop.dialogs, 2) << "one a scan";
    });
}

TEST_F(DifferencesTest, AreSeenInAFolderThatIsMissingOrGivesNothing) {
    // What the texts behind the title are then; the rows stay where the address does.
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"gone", "sub|2 file(s)|All,tif", "gone|2 file(s)|All,tif"},
        {"empty", "empty|0 file(s)|All", "empty|2 file(s)|All,tif"},
        {"unlisted", "unlisted|0 file(s)|All", "unlisted|2 file(s)|All,tif"},
        {"none", "none|0 file(s)|All", "none|0 file(s)|All"}};
    Start([&] {
        for (const auto& [folder, recursive, flat] : cases)
            for (const bool subfolders : {true, false}) {
                Scan(documents / "sub", true);
                Main().k = 9;
                Scan(documents / folder, subfolders);
                const std::string texts = subfolders ? recursive : flat;
                EXPECT_EQ(Texts(), "Varnith - Testix - Finished|" + texts);
                EXPECT_EQ(Rows().empty(), !texts.starts_with("sub"));
                EXPECT_EQ(Main().k, subfolders && folder != "gone" ? 1 : 9);
            }
    });
    EXPECT_EQ(desktop.messages, Lines());
}

}  // namespace varnith::test
