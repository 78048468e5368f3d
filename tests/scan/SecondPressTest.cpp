#include <filesystem>

#include "platform/threads/Scheduler.h"
#include "support/ProgramTest.h"

namespace varnith::test {

// "Locate" is pressed in each state of a scan, after another one has been finished and saved.
struct SecondPressTest : ProgramTest {
    SecondPressTest() {
        documents.File("first/f.tiff", TiffBytes(1));
        for (const auto& [name, pages] : {std::pair("old/a.tif", 10), {"old/b.tif", 9}, {"old/c.tif", 100}})
            documents.File(name, TiffBytes(pages));
        for (const char* name : {"new/n.tif", "new/sub/s.tif"}) documents.File(name, TiffBytes(3));
    }

    void ScanOldUntil(const std::function<bool()>& condition) {
        Main().CheckBox4.SetValue(true);
        Locate(documents / "old");
        RunThreadsUntil(condition);
    }
    bool Saving() const { return std::filesystem::exists(application / "varnth-journal"); }
};

TEST_F(SecondPressTest, EndsTheScanInWhateverState) {
    const Lines first = {"f.tiff|1|first|tiff"};
    const Lines two = {"a.tif|10|old|tif", "b.tif|9|old|tif"};
    const Lines three = {"a.tif|10|old|tif", "b.tif|9|old|tif", "c.tif|100|old|tif"};
    const auto walk = [&] { ScanOldUntil([&] { return Rows() == two; }); };
    const auto kill = [&] { walk(), Locate(std::nullopt); };
    const auto index = [&] { ScanOldUntil([before = Main().words] { return Main().words != before; }); };
    const auto save = [&] { ScanOldUntil([&] { return Saving(); }); };
    // What stands after the press: the rows, the title, the other texts, the saved rows.
    using State = std::tuple<std::string, std::function<void()>, Lines, std::string, std::string, Lines>;
    const State states[] = {
        {"Idle", [] {}, first, "Varnith - Testix - Finished", "|first|1 file(s)|All,tiff", first},
        {"Walking", walk, two, "Processing Item: b.tif", "|old|1 file(s)|All,tiff", first},
        {"Dialog open", walk, two, "Processing Item: b.tif", "|old|1 file(s)|All,tiff", first},
        {"Killed", kill, two, "Processing Item: b.tif", "|old|1 file(s)|All,tiff", first},
        {"Finishing: types", index, three, "Processing Item: c.tif", "|old|1 file(s)|All,tiff", first},
        {"Finishing: save", save, three, "Processing Item: c.tif", "|old|1 file(s)|All,tif", {}}};
    for (const auto& [name, reach, rows, title, texts, saved] : states)
        for (const bool cancel : {true, false})
            for (const bool subfolders : {true, false})
                Start([&] {
                    SCOPED_TRACE(name + (cancel ? ", cancel" : "") + (subfolders ? "" : ", unticked"));
                    const auto ended = [&] {
                        EXPECT_FALSE(Scheduler::Current().UntilNextTurn());
                        EXPECT_EQ(Rows(), rows);
                        EXPECT_EQ(Texts(), title + texts);
                        EXPECT_EQ(SavedRows(), saved);
                        EXPECT_FALSE(Saving());
                        return cancel ? std::nullopt : std::optional(documents / "new");
                    };
                    const auto press = [&] {
                        Main().CheckBox4.SetValue(subfolders);
                        desktop.choose = ended;
                        Main().PushButton2.Press();
                        RunThreads();
                        return std::nullopt;
                    };
                    Scan(documents / "first", true);
                    reach();
                    desktop.choose = press;
                    name == "Dialog open" ? Main().PushButton2.Press() : static_cast<void>(press());
                    if (cancel) return static_cast<void>(ended());
                    const Lines tree = {"n.tif|3|new|tif", "s.tif|3|new/sub|tif"};
                    EXPECT_EQ(Rows(), subfolders ? tree : Lines{tree[0]});
                    EXPECT_EQ(SavedRows(), subfolders ? tree : saved);
                    EXPECT_EQ(Texts(), subfolders ? "Varnith - Testix - Finished|new|2 file(s)|All,tif"
                                                  : title + "|new|1 file(s)|All,tif");
                });
    EXPECT_EQ(desktop.messages, Lines());
}

TEST_F(SecondPressTest, TheListIsSortedByClicksAndSavedAsItThenIs) {
    Start([&] {
        Listbox& list = Main().Listbox1;
        ScanOldUntil([&] { return list.ListCount() == 2; });
        list.ToggleCheck(1);
        list.SetListIndex(1);
        for (int press = 0; press < 2; ++press) list.PressHeading(1);
        RunThreadsUntil([&] { return Saving(); });
        EXPECT_EQ(Tags(), (Lines{"2*", "1", "3"})) << "rows that a scan adds go behind those sorted before";
        EXPECT_EQ(list.HeadingIndex(), -1);
        for (const auto& [heading, tags] : {std::pair(2, Lines{"2*", "1", "3"}),
                                            {2, {"3", "1", "2*"}},
                                            {0, {"3", "1", "2*"}},
                                            {0, {"2*", "3", "1"}},
                                            {7, {"2*", "3", "1"}}}) {
            list.PressHeading(heading);
            EXPECT_EQ(Tags(), tags) << heading;
            EXPECT_EQ(list.CellTag(list.ListIndex(), 0), "2") << "the highlight goes with its row";
        }
        list.DeleteAllRows();
        RunThreads();
        EXPECT_EQ(SavedRows(), (Lines{"b.tif|9|old|tif"})) << "emptied when one row was written";
        EXPECT_EQ(Texts(), "Varnith - Testix - Finished|old|0 file(s)|All,tif");
        std::filesystem::remove(application / "varnth");
        Scan(documents / "first", true);
        EXPECT_FALSE(std::filesystem::exists(application / "varnth")) << "made at start-up only";
        EXPECT_EQ(Texts(), "Varnith - Testix - Finished|first|1 file(s)|All,tiff");
    });
}

}  // namespace varnith::test
