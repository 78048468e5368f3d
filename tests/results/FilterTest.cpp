#include <algorithm>
#include <filesystem>
#include <set>

#include "helpers/ProgramTest.h"
#include "platform/base/Text.h"
#include "platform/database/Database.h"
#include "platform/threads/Scheduler.h"
#include "results/Item.h"

namespace varnith::test {

using FilterTest = ProgramTest;

void PickType(const std::string& entry) {
    MainWindow::Instance()->PopupMenu1.Pick(entry);
}

TEST_F(FilterTest, OffersTheTypesThatTheScanHasFound) {
    // The folder's files, and the types offered, each with its number of rows and their places.
    const std::pair<Lines, std::string> cases[] = {{{"a.tif", "b.tif", "c.tiff"}, "tif 2 1~2|tiff 1 3|"},
                                                   {{"a.TIF", "b.tif"}, "TIF 2 1~2|"},
                                                   {{"a.tif", "b.tiff", "c.TIF"}, "tif 2 1~3|tiff 1 2|"},
                                                   {{}, ""}};
    Start([&] {
        for (const auto& [files, offered] : cases) {
            const TemporaryFolder folder;
            for (const std::string& file : files) folder.File(file);
            Scan(folder.Path(), true);
            std::string found;
            for (const std::string& entry : Main().PopupMenu1.Rows()) {
                const auto item = Main().words->Lookup(entry, MakeRef<Item>());
                found += entry + " " + Str(item->count) + " " + item->Positions() + "|";
            }
            EXPECT_EQ(found, "All 0 |" + offered);
        }
    });
}

TEST_F(FilterTest, ShowsTheSavedRowsOfTheTypeAsItIsSpelled) {
    const Lines saved = {"a.tif|2|all|tif", "b.TIF|2|all|TIF", "c.tiff|2|all|tiff",
                         "d'\"\n\xFF.tif|2|all|tif"};
    const Lines flat = {"e.tif|2|flat|tif", "f.TIFF|2|flat|TIFF"};
    for (const char* name :
         {"all/a.tif", "all/b.TIF", "all/c.tiff", "all/d'\"\n\xFF.tif", "flat/e.tif", "flat/f.TIFF"})
        documents.File(name, TiffBytes(2));
    using Pick = std::pair<const char*, Lines>;
    Start([&] {
        Scan(documents / "all", true);
        const std::string texts = Texts();
        EXPECT_TRUE(texts.ends_with("|all|4 file(s)|All,tif,tiff")) << texts;
        for (const auto& [entry, rows] :
             {Pick{"tif", {saved[0], saved[3]}}, {"tiff", {saved[2]}}, {"All", saved}, {"All", saved}}) {
            Main().ContextualMenu1_Action("Select All");
            PickType(entry);
            EXPECT_EQ(Rows(), rows);
            EXPECT_EQ(Ticks(), std::string(rows.size(), '-'));
        }
        Main().Listbox1.ToggleCheck(1);
        EXPECT_EQ(Tags(), Lines({"1", "2*", "3", "4"}));
        EXPECT_EQ(Texts(), texts);
        EXPECT_EQ(SavedRows(), saved);
    });
    // A flat scan doesn't change the saved rows, not even in a later run.
    Start([&] {
        for (const auto& [entry, rows] :
             {Pick{"tif", {saved[0], saved[3]}}, {"All", saved}, {"TIFF", flat}}) {
            Scan(documents / "flat", false);
            EXPECT_EQ(Rows(), flat) << "an earlier pick doesn't filter a new scan";
            PickType(entry);
            EXPECT_EQ(Rows(), rows);
        }
    });
}

TEST_F(FilterTest, LeavesTheRowsWhereNoneAreSaved) {
    for (const char* name : {"e.tif", "f.TIFF"}) documents.File(name);
    Start([&] {
        Scan(documents.Path(), false);
        Main().ContextualMenu1_Action("Select All");
        const auto expect_no_change = [&](const char* entry, const char* why) {
            Main().PopupMenu1.AddRow(entry);
            PickType(entry);
            EXPECT_EQ(Tags(), Lines({"1*", "2*"})) << why;
        };
        expect_no_change("tif\"", "a select that fails");
        expect_no_change("All", "no saved rows");
        std::filesystem::remove(application / "varnth");
        expect_no_change("All", "no file");
        application.File("varnth", std::string(5000, 'x'));
        expect_no_change("All", "no database");
        application.File("varnth", "");
        expect_no_change("All", "no table");
        EXPECT_TRUE(desktop.messages.empty());
    });
}

TEST_F(FilterTest, HarmsNoScanAtWhateverMoment) {
    // The rows are so many and so long that SQLite writes to the file, and locks it, long before a save
    // ends.
    std::string folder = "x";
    for (int level = 0; level < 15; ++level) folder += "/" + std::string(250, 'x');
    std::set<std::string> whole;
    for (int i = 0; i < 700; ++i) {
        const std::string name = std::to_string(i) + ".tif";
        documents.File(folder + "/" + name);
        whole.insert(name + "|0|" + folder + "|tif");
    }
    Start([&] {
        Main().PopupMenu1.AddRow("All");
        Main().CheckBox4.SetValue(true);
        for (const char* table : {"empty", "filled"}) {
            SCOPED_TRACE(table);
            Locate(documents.Path());
            RunThreadsUntil([] {
                PickType("All");
                return !Scheduler::Current().UntilNextTurn();
            });
            const Lines rows = Rows();
            const Lines saved = SavedRows();
            EXPECT_TRUE(std::set(rows.begin(), rows.end()) == whole) << "no row is torn or lost";
            // A pick that is still filling the list when the save ends goes on after it.
            EXPECT_GE(saved.size(), whole.size());
            EXPECT_TRUE(std::ranges::mismatch(saved, rows).in1 == saved.end());
            EXPECT_TRUE(Main().Title().ends_with(" - Finished"));
        }
    });
}

TEST_F(FilterTest, WaitsForWhoHasTheFileForAMoment) {
    for (int i = 0; i < 20; ++i) documents.File(std::to_string(i) + ".tif");
    Start([&] {
        Database other;
        other.SetDatabaseFile(FolderItem::FromPath(application / "varnth"));
        ASSERT_TRUE(other.Connect());
        const auto turns = [](int count) {
            for (int turn = 0; turn < count; ++turn) Scheduler::Current().Turn();
        };
        Main().CheckBox4.SetValue(true);
        // How many turns the save gets before another program's read stops it, at its delete or at its end,
        // and whether another press ends it there.
        for (const auto& [before, again] : {std::pair(0, false), {10, false}, {0, true}, {10, true}}) {
            other.SQLExecute("insert into preferences values ('of an earlier scan', '', '', '')");
            Main().PopupMenu1.DeleteAllRows();
            Locate(documents.Path());
            RunThreadsUntil([] { return Main().PopupMenu1.Rows().size() == 2; });
            turns(before);
            other.SQLExecute("begin transaction");
            other.SQLSelect("select * from preferences");
            turns(30);
            EXPECT_FALSE(Main().Title().ends_with("Finished"));
            if (again) Locate(documents.Path());
            other.Commit();
            RunThreads();
            EXPECT_EQ(SavedRows(), Rows());
            EXPECT_EQ(Rows().size(), 20u);
        }
        other.SQLExecute("begin exclusive transaction");
        const auto end_of_the_lock = MakeRef<Beside>([&] {
            for (int turn = 0; turn < 20; ++turn) Yield();
            other.Commit();
        });
        Main().Listbox1.DeleteAllRows();
        PickType("All");
        EXPECT_EQ(Rows().size(), 20u);
    });
}

TEST_F(FilterTest, GivesUpToWhoHasTheFileForLongAndOnAFullDisk) {
    documents.File("a.tif");
    Start([&] {
        Database other;
        other.SetDatabaseFile(FolderItem::FromPath(application / "varnth"));
        ASSERT_TRUE(other.Connect());
        Scan(documents.Path(), true);
        const Lines saved = SavedRows();
        other.SQLExecute("begin exclusive transaction");
        Scan(documents.Folder("empty"), true);
        other.Commit();
        EXPECT_EQ(SavedRows(), saved) << "a save that waits too long is lost";
        // Another program's save is lost, too, if this program's save overtakes it.
        other.SQLExecute("delete from preferences where rowid>0");
        Scan(documents.Path(), true);
        for (const char* statement :
             {"begin transaction", "insert into preferences values ('', '', '', '')", "end transaction"})
            other.SQLExecute(statement);
        other.Commit();
        EXPECT_EQ(SavedRows(), saved);
        // A failure that makes SQLite roll back, as a full disk does, ends the save.
        for (const char* file : {"b.tif", "c.tif"}) documents.File(file);
        other.SQLExecute(
            "create trigger full before insert on preferences when new.name='b.tif' "
            "begin select raise(rollback, 'disk full'); end");
        Scan(documents.Path(), true);
        EXPECT_EQ(SavedRows(), Lines());
        EXPECT_TRUE(desktop.messages.empty());
    });
}

TEST_F(FilterTest, WindowGoesOnWhileAThreadChangesManyRows) {
    Start([&] {
        for (const bool is_killed : {false, true}) {
            SCOPED_TRACE(is_killed);
            const std::size_t saved = SavedRows().size();
            auto thread = MakeRef<Beside>([this] {
                Database database;
                database.SetDatabaseFile(FolderItem::FromPath(application / "varnth"));
                ASSERT_TRUE(database.Connect());
                database.SQLExecute(
                    "with recursive n(i) as (select 1 union all select i+1 from n limit 200000) "
                    "insert into preferences select i, '', '', '' from n");
            });
            int turns = 0;
            for (; Scheduler::Current().UntilNextTurn() && (turns < 2 || !is_killed); ++turns)
                Scheduler::Current().Turn();
            thread->Kill();
            EXPECT_GE(turns, 2);
            WaitForWorkers();
            const std::size_t added = SavedRows().size() - saved;
            EXPECT_TRUE(added == 200'000 || (is_killed && added == 0)) << added << ": all or nothing";
        }
    });
}

}  // namespace varnith::test
