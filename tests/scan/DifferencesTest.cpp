#include "platform/base/Text.h"
#include "platform/threads/Thread.h"
#include "support/ProgramTest.h"

namespace varnith::test {

// What the two scans do differently, all of it on purpose.
struct DifferencesTest : ProgramTest {
    DifferencesTest() {
        for (const char* name : {".a.tif", "b.tif", "sub/in.tif", "tif", "tiff"})
            documents.File(name, TiffBytes(1));
        documents.Folder("empty");
        documents.File("none/a.txt");
    }
};

TEST_F(DifferencesTest, OneRunsBesideTheWindowAndSavesAndTheOtherInTheHandler) {
    Start([&] {
        Main().CheckBox4.SetValue(true);
        Locate(documents.Path());
        EXPECT_EQ(Texts(), "Varnith - Testix|||") << "nothing but the start of the thread";
        RunThreads();
        const Lines saved = {"b.tif|1|.|tif", "in.tif|1|sub|tif", "tiff|1|.|tiff"};
        EXPECT_EQ(Rows(), saved);
        EXPECT_EQ(Tags(), (Lines{"1", "1", "2"}));
        Main().CheckBox4.SetValue(false);
        Locate(documents.Path());
        EXPECT_EQ(Rows(), (Lines{".a.tif|1|.|tif", "b.tif|1|.|tif", "tif|1|.|tif"}));
        EXPECT_EQ(Tags(), (Lines{"1", "2", "3"}));
        EXPECT_EQ(Texts(), "Varnith - Testix - Finished|.|3 file(s)|All,tif") << "the title is left alone";
        EXPECT_EQ(SavedRows(), saved);
        EXPECT_EQ(desktop.dialogs, 2) << "one dialog a scan";
    });
}

TEST_F(DifferencesTest, OneIsGivenItsFolderAndTheOtherAsksForIt) {
    Start([&] {
        Scan(documents / "sub", false);
        Main().loadfolder(FolderItem::FromPath(documents / "sub"));
        EXPECT_EQ(Rows(), Lines(2, "in.tif|1|sub|tif")) << "the walk clears no list";
        EXPECT_EQ(Texts(), "Processing Item: in.tif|sub|1 file(s)|All,tif") << "and finishes nothing";
        EXPECT_EQ(desktop.dialogs, 1);
        desktop.choose = [&] { return documents / "none"; };
        Main().Singlefolder();
        EXPECT_EQ(Texts(), "Processing Item: in.tif|none|0 file(s)|All");
    });
}

TEST_F(DifferencesTest, AFolderThatIsMissingOrEmptyOrHoldsNothing) {
    // What the texts behind the title are then; the rows stay where the address does.
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"gone", "sub|1 file(s)|All,tif", "gone|1 file(s)|All,tif"},
        {"empty", "empty|0 file(s)|All", "empty|1 file(s)|All,tif"},
        {"none", "none|0 file(s)|All", "none|0 file(s)|All"}};
    Start([&] {
        for (const auto& [folder, recursive, flat] : cases)
            for (const bool subfolders : {true, false}) {
                Scan(documents / "sub", true);
                Scan(documents / folder, subfolders);
                const std::string texts = subfolders ? recursive : flat;
                EXPECT_EQ(Texts(), "Varnith - Testix - Finished|" + texts);
                EXPECT_EQ(Rows().empty(), !texts.starts_with("sub"));
            }
    });
    EXPECT_EQ(desktop.messages, Lines());
}

TEST_F(DifferencesTest, OneCountsTheFilesLastAndTheOtherBeforeItsTypes) {
    struct : Observed::Observer {
        std::function<void()> changed;
        void Changed() override { changed(); }
    } label;
    struct Other : Thread {
        std::function<void()> look;
        void Event_Run() override { look(); }
    };
    Start([&] {
        Lines seen;
        label.changed = [&] {
            seen.push_back(Texts() + "|" + Str(Main().Refreshes()) + "|" + Str(std::ssize(SavedRows())));
        };
        Main().StaticText2.SetObserver(&label);
        Scan(documents.Path(), true);
        const auto other = MakeRef<Other>();
        other->look = [&] { seen.push_back(Texts()); };
        other->Run();
        Main().CheckBox4.SetValue(false);
        Locate(documents / "sub");
        const std::string title = "Varnith - Testix - Finished|";
        EXPECT_EQ(seen, (Lines{title + ".|3 file(s)|All,tif,tiff|1|3", title + "sub|3 file(s)|All,tif,tiff",
                               title + "sub|1 file(s)|All,tif,tiff|1|3"}))
            << "the flat scan lets other threads run";
        Main().StaticText2.SetObserver(nullptr);
    });
}

}  // namespace varnith::test
