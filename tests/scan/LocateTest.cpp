#include <filesystem>

#include "helpers/ProgramTest.h"
#include "platform/base/Text.h"
#include "platform/threads/Scheduler.h"
#include "platform/threads/Thread.h"

namespace varnith::test {

// What a press of "Locate" leads to. The two kinds of scan differ in many details, all of them intended.
struct LocateTest : ProgramTest {
    LocateTest() {
        for (const char* name : {"mixed/.a.tif", "mixed/b.tif", "mixed/none/a.txt", "mixed/sub/in.tif",
                                 "mixed/sub/on.tif", "mixed/tif", "mixed/tiff", "mixed/unlisted/c.tif",
                                 "first/f.tiff", "new/n.tif", "new/sub/s.TIF"})
            documents.File(name, TiffBytes(1));
        documents.Folder("mixed/empty");
        for (const auto& [name, pages] : {std::pair("old/a.tif", 10), {"old/b.tif", 9}, {"old/c.tif", 100}})
            documents.File(name, TiffBytes(pages));
        disk.fails = [](const std::string& path) { return path.ends_with("/unlisted"); };
    }

    // The texts, the number of saved rows and the number of redraws, taken at each yield point of a scan
    // where one of them has changed.
    Lines MomentsOf(bool subfolders) {
        Lines moments;
        const auto look = [&] {
            const std::string moment =
                Texts() + "|" + Str(std::ssize(SavedRows())) + "|" + Str(Main().Refreshes());
            if (moments.empty() || moments.back() != moment) moments.push_back(moment);
        };
        const auto watcher = MakeRef<Beside>([&] {
            for (;; Yield()) look();
        });
        ScanUntil("mixed", subfolders, [] { return Main().Title().ends_with(" - Finished"); });
        look();
        // On a busy machine the rows are in the file before the scan hears of it.
        std::erase(moments, "Processing Item: tiff|mixed||All,tif,tiff|4|0");
        return moments;
    }
    void ScanUntil(const std::string& folder, bool subfolders, const std::function<bool()>& condition) {
        Main().CheckBox4.SetValue(subfolders);
        Locate(documents / folder);
        RunThreadsUntil(condition);
    }
    bool Saving() const { return std::filesystem::exists(application / "varnth-journal"); }
};

TEST_F(LocateTest, DiffersFromScanToScanAtEachMoment) {
    Start([&] {
        EXPECT_EQ(MomentsOf(true),
                  (Lines{"Varnith - Testix||||0|0", "Varnith - Testix|mixed|||0|0",
                         "Processing Item: b.tif|mixed|||0|0", "Processing Item: a.txt|mixed|||0|0",
                         "Processing Item: in.tif|mixed|||0|0", "Processing Item: on.tif|mixed|||0|0",
                         "Processing Item: tif|mixed|||0|0", "Processing Item: tiff|mixed|||0|0",
                         "Processing Item: tiff|mixed||All,tif|0|0",
                         "Processing Item: tiff|mixed||All,tif,tiff|0|0",
                         "Varnith - Testix - Finished|mixed|4 file(s)|All,tif,tiff|4|1"}));
        EXPECT_EQ(Tags(), (Lines{"1", "1", "2", "3"}));
        EXPECT_EQ(MomentsOf(false), (Lines{"Varnith - Testix - Finished|mixed|4 file(s)|All,tif,tiff|4|1",
                                           "Varnith - Testix - Finished|mixed|3 file(s)|All,tif,tiff|4|1",
                                           "Varnith - Testix - Finished|mixed|3 file(s)|All,tif|4|1"}));
        EXPECT_EQ(Tags(), (Lines{"1", "2", "3"}));
        EXPECT_EQ(desktop.dialogs, 2) << "one dialog for each scan";
    });
}

TEST_F(LocateTest, TakesAFolderThatIsMissingOrGivesNothing) {
    // The texts after the title, for each kind of scan. The rows stay if the address does.
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"gone", "new|2 file(s)|All,tif", "gone|2 file(s)|All,tif"},
        {"mixed/empty", "mixed/empty|0 file(s)|All", "mixed/empty|2 file(s)|All,tif"},
        {"mixed/unlisted", "mixed/unlisted|0 file(s)|All", "mixed/unlisted|2 file(s)|All,tif"},
        {"mixed/none", "mixed/none|0 file(s)|All", "mixed/none|0 file(s)|All"}};
    Start([&] {
        for (const auto& [folder, recursive, flat] : cases)
            for (const bool subfolders : {true, false}) {
                Scan(documents / "new", true);
                Scan(documents / folder, subfolders);
                const std::string texts = subfolders ? recursive : flat;
                EXPECT_EQ(Texts(), "Varnith - Testix - Finished|" + texts);
                EXPECT_EQ(Rows().empty(), !texts.starts_with("new"));
            }
    });
}

// Presses the button in each state of a scan, after another scan has finished and been saved.
TEST_F(LocateTest, EndsTheScanInWhateverState) {
    const Lines first = {"f.tiff|1|first|tiff"};
    const Lines two = {"a.tif|10|old|tif", "b.tif|9|old|tif"};
    const Lines three = {"a.tif|10|old|tif", "b.tif|9|old|tif", "c.tif|100|old|tif"};
    const auto walk = [&] { ScanUntil("old", true, [&] { return Rows() == two; }); };
    const auto kill = [&] { walk(), Locate(std::nullopt); };
    const auto index = [&] { ScanUntil("old", true, [old = Main().words] { return Main().words != old; }); };
    const auto save = [&] { ScanUntil("old", true, [&] { return Saving(); }); };
    // What the press leaves: the rows, the title, the other texts, the saved rows.
    using State = std::tuple<std::string, std::function<void()>, Lines, std::string, std::string, Lines>;
    const State states[] = {
        {"Idle", [] {}, first, "Varnith - Testix - Finished", "|first|1 file(s)|All,tiff", first},
        {"Walking", walk, two, "Processing Item: b.tif", "|old|1 file(s)|All,tiff", first},
        {"Dialog open", walk, two, "Processing Item: b.tif", "|old|1 file(s)|All,tiff", first},
        {"Killed", kill, two, "Processing Item: b.tif", "|old|1 file(s)|All,tiff", first},
        {"Finishing: types", index, three, "Processing Item: c.tif", "|old|1 file(s)|All,tiff", first},
        {"Finishing: save", save, three, "Processing Item: c.tif", "|old|1 file(s)|All,tif", {}}};
    const auto press_in = [&](const State& state, bool cancel, bool subfolders) {
        const auto& [name, reach, rows, title, texts, saved] = state;
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
        const Lines tree = {"n.tif|1|new|tif", "s.TIF|1|new/sub|TIF"};
        EXPECT_EQ(Rows(), subfolders ? tree : Lines{tree[0]});
        EXPECT_EQ(SavedRows(), subfolders ? tree : saved);
        EXPECT_EQ(Texts(), subfolders ? "Varnith - Testix - Finished|new|2 file(s)|All,tif"
                                      : title + "|new|1 file(s)|All,tif");
    };
    for (const State& state : states)
        for (const bool cancel : {true, false})
            for (const bool subfolders : {true, false}) Start([&] { press_in(state, cancel, subfolders); });
    EXPECT_EQ(desktop.messages, Lines());
}

TEST_F(LocateTest, RowsAreSortedByClicksAndSavedAsTheyThenAre) {
    Start([&] {
        Listbox& list = Main().Listbox1;
        ScanUntil("old", true, [&] { return list.ListCount() == 2; });
        list.ToggleCheck(1);
        list.SetListIndex(1);
        for (int press = 0; press < 2; ++press) list.PressHeading(1);
        RunThreadsUntil([&] { return Saving(); });
        EXPECT_EQ(Tags(), (Lines{"2*", "1", "3"})) << "a scan adds its rows after those already sorted";
        EXPECT_EQ(list.HeadingIndex(), -1);
        for (const auto& [heading, tags] : {std::pair(2, Lines{"2*", "1", "3"}),
                                            {2, {"3", "1", "2*"}},
                                            {0, {"3", "1", "2*"}},
                                            {0, {"2*", "3", "1"}}}) {
            list.PressHeading(heading);
            EXPECT_EQ(Tags(), tags) << heading;
            EXPECT_EQ(list.CellTag(list.ListIndex(), 0), "2") << "the highlight moves with its row";
        }
        list.DeleteAllRows();
        RunThreads();
        EXPECT_EQ(SavedRows(), (Lines{"b.tif|9|old|tif"})) << "the list was emptied after one row was saved";
        EXPECT_EQ(Texts(), "Varnith - Testix - Finished|old|0 file(s)|All,tif");
    });
}

}  // namespace varnith::test
