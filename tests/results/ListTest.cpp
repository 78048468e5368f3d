#include <filesystem>

#include "helpers/ProgramTest.h"
#include "platform/system/AssignedApplication.h"

namespace varnith::test {

using ListTest = ProgramTest;

TEST_F(ListTest, ShowsTheFileToItsApplicationWhateverItsNameUnlessItIsGone) {
    const Environment configuration("XDG_CONFIG_HOME", home.Path());
    const Environment data("XDG_DATA_HOME", home.Path());
    const Environment no_desktop("XDG_CURRENT_DESKTOP", "");
    // A viewer for TIFF files and folders that writes its argument count and its arguments to a file.
    const std::string given = home / "given";
    const std::string viewer = home.File("viewer", "#!/bin/sh\nprintf '%s|' $# \"$@\" > '" + given + "'\n");
    home.File("applications/viewer.desktop",
              "[Desktop Entry]\nType=Application\nName=Viewer\nExec=" + viewer + " %f\n");
    home.File("mimeapps.list",
              "[Default Applications]\nimage/tiff=viewer.desktop\ninode/directory=viewer.desktop\n");
    desktop.open = [](const std::string& path) { OpenInAssignedApplication(path, ""); };
    const TemporaryFolder folder(documents.Folder("outer/inner"));
    folder.File("-rf it's \"100%41\" %f %u.tif", TiffBytes(1));
    folder.File("a\nb\t\xFF$(touch ran)`touch ran`;&|#?*\\ .tif");
    folder.Folder("c.tif");
    const std::string script = folder.File("d.tif", "#!/bin/sh\ntouch '" + home / "ran" + "'\n");
    for (const std::string& executable : {viewer, script})
        std::filesystem::permissions(executable, std::filesystem::perms::owner_all);
    Start([&] {
        Listbox& list = Main().Listbox1;
        const auto click_twice = [&](std::int32_t row) {
            list.SetListIndex(row);
            list.ClickTwice();
        };
        Scan(folder.Path(), false);
        for (std::int32_t row = 0; row < list.ListCount(); ++row) {
            home.File("given");
            click_twice(row);
            RunThreadsUntil([&] { return !BytesOf(given).empty(); });
            EXPECT_EQ(BytesOf(given), "1|" + folder / list.Cell(row, 1) + "|");
        }
        EXPECT_FALSE(std::filesystem::exists(home / "ran"));

        // If even the parent of the file's folder is gone, the path gives no item at all.
        for (const auto& [gone, messages] :
             {std::pair(script, 1u), {folder.Path(), 2u}, {documents / "outer", 2u}}) {
            std::filesystem::remove_all(gone);
            click_twice(3);
            EXPECT_EQ(desktop.messages, Lines(messages, "File not found")) << gone;
        }
        click_twice(-1);
        EXPECT_EQ(desktop.messages.size(), 2u);
        EXPECT_EQ(desktop.opened.size(), 4u);
        EXPECT_EQ(list.ListCount(), 4);
        EXPECT_FALSE(desktop.quit_status);
    });
}

TEST_F(ListTest, TicksByItsMenuTheRowsThatAreThere) {
    for (const char* name : {"a.tif", "b.tif", "c.tif"}) documents.File(name, TiffBytes(1));
    std::optional<std::size_t> choice = 0;
    desktop.choose_entry = [&](const Lines& entries) {
        EXPECT_EQ(entries, Lines({"Select All", "Unselect All", "-", "Invert Selection"}));
        return choice;
    };
    const auto press = [&](bool right_button) {
        desktop.right_button = right_button;
        EXPECT_FALSE(Main().Listbox1.PressMouse(5, 5)) << "the list goes on to handle the press";
        return Ticks();
    };
    Start([&] {
        EXPECT_EQ(press(true), "") << "no rows";
        Scan(documents.Path(), true);
        EXPECT_EQ(press(false), "---") << "no menu";
        Main().Listbox1.ToggleCheck(1);
        const std::pair<std::optional<std::size_t>, const char*> choices[] = {
            {std::nullopt, "-x-"}, {3, "x-x"}, {1, "---"}, {0, "xxx"}};
        for (const auto& [entry, ticks] : choices) {
            choice = entry;
            EXPECT_EQ(press(true), ticks);
        }
        // Rows that a scan adds while the menu is open are ticked, too; those of the next scan are not.
        Locate(documents.Path());
        RunThreadsUntil([] { return Main().Listbox1.ListCount() == 1; });
        EXPECT_EQ(press(true), "xxx");
        RunThreads();
        EXPECT_EQ(Ticks(), "xxx");
        Scan(documents.Path(), true);
        EXPECT_EQ(Ticks(), "---");
    });
}

}  // namespace varnith::test
