#include <filesystem>

#include "platform/system/AssignedApplication.h"
#include "support/ProgramTest.h"

namespace varnith::test {

class ListTest : public ProgramTest {
  protected:
    static void ClickTwice(std::int32_t row) {
        Main().Listbox1.SetListIndex(row);
        Main().Listbox1.ClickTwice();
    }
    // Presses a mouse button in the list. Returns the ticks that come of it.
    std::string Press(bool right_button) {
        desktop.right_button = right_button;
        EXPECT_FALSE(Main().Listbox1.PressMouse(5, 5)) << "the list goes on with the press";
        return Ticks();
    }

    Environment configuration{"XDG_CONFIG_HOME", home.Path()};
    Environment data{"XDG_DATA_HOME", home.Path()};
    Environment no_desktop{"XDG_CURRENT_DESKTOP", ""};
};

TEST_F(ListTest, ShowsTheFileToItsApplicationWhateverItsName) {
    // A viewer for TIFF files and folders, which leaves in a file how many arguments it was given, and which.
    const std::string given = home / "given";
    const std::string viewer = home.File("viewer", "#!/bin/sh\nprintf '%s|' $# \"$@\" > '" + given + "'\n");
    home.File("applications/viewer.desktop",
              "[Desktop Entry]\nType=Application\nName=Viewer\nExec=" + viewer + " %f\n");
    home.File("mimeapps.list",
              "[Default Applications]\nimage/tiff=viewer.desktop\ninode/directory=viewer.desktop\n");
    desktop.open = [](const std::string& path) { OpenInAssignedApplication(path, ""); };
    for (const char* name :
         {"plain.tif", "two blanks .tif", "it's \"quoted\".tif", "100%41 %f %u %.tif", "two\nlines\t.tif",
          "-rf.tif", "caf\xE9\xFF.tif", "\xE2\x82\xAC$(touch ran)`touch ran`;&|#?*\\.tif", "tif"})
        documents.File(name, TiffBytes(1));
    documents.Folder("folder.tif");
    documents.File("empty.tif");
    const std::string script = documents.File("script.tif", "#!/bin/sh\ntouch '" + home / "ran" + "'\n");
    std::filesystem::copy("/proc/self/exe", documents / "program.tif");
    for (const std::string& executable : {viewer, script, documents / "program.tif"})
        std::filesystem::permissions(executable, std::filesystem::perms::owner_all);
    Start([&] {
        Scan(documents.Path(), false);
        EXPECT_EQ(Main().Listbox1.ListCount(), 13);
        for (std::int32_t row = 0; row < Main().Listbox1.ListCount(); ++row) {
            home.File("given");
            ClickTwice(row);
            RunThreadsUntil([&] { return !BytesOf(given).empty(); });
            EXPECT_EQ(BytesOf(given), "1|" + documents / Main().Listbox1.Cell(row, 1) + "|");
        }
        EXPECT_FALSE(std::filesystem::exists(home / "ran"));
        EXPECT_TRUE(desktop.messages.empty());
    });
}

TEST_F(ListTest, SaysWhenTheFileIsGone) {
    Start([&] {
        // Where even the folder above the file's has gone, the path leads to no item at all.
        for (const auto& [gone, messages] :
             {std::pair("outer/inner/file.tif", 1u), {"outer/inner", 1u}, {"outer", 0u}}) {
            documents.File("outer/inner/file.tif", TiffBytes(1));
            Scan(documents / "outer/inner", false);
            std::filesystem::remove_all(documents / gone);
            desktop.messages.clear();
            ClickTwice(0);
            EXPECT_EQ(desktop.messages, Lines(messages, "File not found")) << gone;
            EXPECT_EQ(Main().Listbox1.ListCount(), 1);
        }
        ClickTwice(-1);
        EXPECT_TRUE(desktop.messages.empty() && desktop.opened.empty() && !desktop.quit_status);
    });
}

TEST_F(ListTest, TicksByItsMenuTheRowsThatAreThere) {
    for (const char* name : {"a.tif", "b.tif", "c.tif"}) documents.File(name, TiffBytes(1));
    std::optional<std::size_t> choice = 0;
    desktop.choose_entry = [&](const Lines& entries) {
        EXPECT_EQ(entries, Lines({"Select All", "Unselect All", "-", "Invert Selection"}));
        return choice;
    };
    Start([&] {
        EXPECT_EQ(Press(true), "") << "no rows";
        Scan(documents.Path(), true);
        EXPECT_EQ(Press(false), "---") << "no menu";
        Main().Listbox1.ToggleCheck(1);
        const std::pair<std::optional<std::size_t>, const char*> choices[] = {
            {std::nullopt, "-x-"}, {3, "x-x"}, {0, "xxx"}, {1, "---"}};
        for (const auto& [entry, ticks] : choices) {
            choice = entry;
            EXPECT_EQ(Press(true), ticks);
        }

        // Rows that a scan adds meanwhile are ticked too; the next scan's are not.
        choice = 0;
        Locate(documents.Path());
        RunThreadsUntil([] { return Main().Listbox1.ListCount() == 1; });
        EXPECT_EQ(Press(true), "xxx");
        RunThreads();
        EXPECT_EQ(Ticks(), "xxx");
        EXPECT_EQ(SavedRows().size(), 3u);
        Scan(documents.Path(), true);
        EXPECT_EQ(Ticks(), "---");
    });
}

}  // namespace varnith::test
