#include <algorithm>
#include <filesystem>

#include "platform/threads/Scheduler.h"
#include "platform/threads/Thread.h"
#include "support/ProgramTest.h"

namespace varnith::test {

using FilterTest = ProgramTest;

void Pick(const std::string& entry) {
    PopupMenu& popup = MainWindow::Instance()->PopupMenu1;
    const auto& entries = popup.Rows();
    popup.Pick(static_cast<std::int32_t>(std::find(entries.begin(), entries.end(), entry) - entries.begin()));
}

TEST_F(FilterTest, ShowsTheSavedRowsOfTheTypeAsItIsSpelled) {
    const Lines saved = {"a.tif|2|all|tif", "b.TIF|2|all|TIF", "c.tiff|2|all|tiff",
                         "d'\"\n\xFF.tif|2|all|tif"};
    for (const char* name : {"all/a.tif", "all/b.TIF", "all/c.tiff", "all/d'\"\n\xFF.tif", "flat/e.tif"})
        documents.File(name, TiffBytes(2));
    Start([&] {
        Scan(documents / "all", true);
        const std::string texts = Texts();
        EXPECT_TRUE(texts.ends_with("|all|4 file(s)|All,tif,tiff")) << texts;
        for (int pick = 0; pick < 2; ++pick) {
            Main().ContextualMenu1_Action("Select All");
            Pick("tif");
            EXPECT_EQ(Rows(), Lines({saved[0], saved[3]}));
            EXPECT_EQ(Tags(), Lines({"1", "4"}));
        }
        Pick("tiff");
        EXPECT_EQ(Rows(), Lines({saved[2]}));
        EXPECT_EQ(Main().Listbox1.CellType(0, 0), Listbox::TypeCheckBox);
        Pick("All");
        EXPECT_EQ(Rows(), saved);
        EXPECT_EQ(Texts(), texts);
        EXPECT_EQ(SavedRows(), saved);
        // What a flat scan has found is not what is saved.
        for (const auto& [entry, rows] : {std::pair("tif", Lines{saved[0], saved[3]}), {"All", saved}}) {
            Scan(documents / "flat", false);
            Pick(entry);
            EXPECT_EQ(Rows(), rows);
        }
    });
}

TEST_F(FilterTest, RunsAtEachPickAndAtNoRefill) {
    documents.File("a.tif", TiffBytes(2));
    Start([&] {
        Scan(documents.Path(), true);
        for (const char* entry : {"All", "tif", "tif", "All"}) {
            const std::int32_t before = Main().Listbox1.Clearings();
            Pick(entry);
            EXPECT_EQ(Main().PopupMenu1.Text(), entry);
            Main().ReadList();
            EXPECT_EQ(Main().PopupMenu1.Text(), "");
            EXPECT_EQ(Main().Listbox1.Clearings(), before + 1);
        }
    });
}

TEST_F(FilterTest, LeavesTheListWhenThereIsNothingToShow) {
    documents.File("a.tif", TiffBytes(2));
    Start([&] {
        Scan(documents.Path(), true);
        for (const char* entry : {"tif\"", "TIF"}) Main().PopupMenu1.AddRow(entry);
        Main().ContextualMenu1_Action("Select All");
        const auto stays = [&](const char* entry, const char* why) {
            Pick(entry);
            EXPECT_EQ(Tags(), Lines({"1*"})) << why;
        };
        stays("tif\"", "a select that fails");
        stays("TIF", "a type without rows");
        const std::string saved = BytesOf(application / "varnth");
        std::filesystem::remove(application / "varnth");
        stays("All", "no file");
        application.File("varnth", std::string(5000, 'x'));
        stays("All", "no database");
        application.File("varnth", "");
        stays("All", "no table");
        application.File("varnth", saved);
        Pick("All");
        EXPECT_EQ(Tags(), Lines({"1"}));
        EXPECT_TRUE(desktop.messages.empty());
    });
}

// The pick comes between two yields of the scan's thread, once for each place where it can, up to and past
// the scan's end.
TEST_F(FilterTest, TearsNothingAtAnyMomentOfAScan) {
    for (const char* name : {"a.tif", "b.tif", "c.tif", "d.tif", "e.tif"}) documents.File(name, TiffBytes(2));
    Start([&] {
        Scan(documents.Path(), true);
        const Lines whole = Rows();
        bool over = false;
        for (int moment = 0; !over; ++moment) {
            SCOPED_TRACE(moment);
            Locate(documents.Path());
            for (int turn = 0; turn < moment; ++turn) Scheduler::Current().Turn();
            over = !Scheduler::Current().UntilNextTurn();
            Pick("All");
            RunThreads();
            const Lines rows = Rows();
            const Lines saved = SavedRows();
            for (const std::string& row : rows)
                EXPECT_NE(std::find(whole.begin(), whole.end(), row), whole.end()) << row;
            // A pick that is still filling the list when the save comes to its end goes on behind it.
            EXPECT_TRUE(saved.size() >= whole.size() && saved.size() <= rows.size());
            EXPECT_TRUE(std::equal(saved.begin(), saved.end(), rows.begin()));
            EXPECT_TRUE(Main().Title().ends_with(" - Finished"));
        }
    });
}

// So many rows that SQLite writes to the file, and locks it, long before the transaction ends.
TEST_F(FilterTest, FailsNoSaveAtAnyMoment) {
    struct Saver : Thread {
        void Event_Run() override { Main().savetodb(); }
    };
    constexpr std::int32_t rows = 10'000;
    Start([&] {
        Main().PopupMenu1.AddRow("All");
        for (std::int32_t row = 0; row < rows; ++row) {
            Main().Listbox1.AddRow("");
            for (std::int32_t column = 1; column <= 4; ++column)
                Main().Listbox1.SetCell(row, column, std::to_string(row) + std::string(100, 'x'));
        }
        const std::int32_t clearings = Main().Listbox1.Clearings();
        const auto saver = MakeRef<Saver>();
        saver->Run();
        RunThreadsUntil([] {
            Pick("All");
            return !Scheduler::Current().UntilNextTurn();
        });
        EXPECT_EQ(SavedRows(), Rows());
        EXPECT_EQ(std::ssize(SavedRows()), rows);
        EXPECT_EQ(Main().Listbox1.Clearings(), clearings + 1);  // by the pick after the save
    });
}

}  // namespace varnith::test
