#include <cstdlib>
#include <filesystem>

#include "platform/system/AssignedApplication.h"
#include "support/ProgramTest.h"

namespace varnith::test {

// A desktop with a viewer for TIFF files and folders, which leaves what it was given in a file.
class OpeningTest : public ProgramTest {
  protected:
    OpeningTest() {
        for (const char* folder : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
            setenv(folder, home.Path().c_str(), 1);
        unsetenv("XDG_CURRENT_DESKTOP");
        const std::string viewer =
            home.File("viewer", "#!/bin/sh\nprintf '%s|' $# \"$@\" > '" + home / "written" + "'\nmv '" +
                                    home / "written" + "' '" + home / "given" + "'\n");
        std::filesystem::permissions(viewer, std::filesystem::perms::owner_all);
        home.File("applications/viewer.desktop",
                  "[Desktop Entry]\nType=Application\nName=Viewer\nExec=" + viewer + " %f\n");
        home.File("mimeapps.list",
                  "[Default Applications]\nimage/tiff=viewer.desktop\ninode/directory=viewer.desktop\n");
        desktop.open = [](const std::string& path) { OpenInAssignedApplication(path, ""); };
    }

    std::string GivenToViewer() {
        RunThreadsUntil([&] { return std::filesystem::exists(home / "given"); });
        std::string given = BytesOf(home / "given");
        std::filesystem::remove(home / "given");
        return given;
    }

    TemporaryFolder home;
};

TEST_F(OpeningTest, ShowsTheFileToItsApplicationWhateverItsName) {
    for (const char* name :
         {"plain.tif", "two blanks .tif", "it's \"quoted\".tif", "100%41 %f %u %.tif", "two\nlines\t.tif",
          "-rf.tif", "caf\xE9\xFF.tif", "\xE2\x82\xAC$(touch ran)`touch ran`;&|#?*\\.tif", "tif"})
        documents.File(name, TiffBytes(1));
    documents.Folder("folder.tif");
    documents.File("empty.tif");
    documents.File("script.tif", "#!/bin/sh\ntouch '" + home / "ran" + "'\n");
    std::filesystem::copy("/proc/self/exe", documents / "program.tif");
    for (const char* name : {"script.tif", "program.tif"})
        std::filesystem::permissions(documents / name, std::filesystem::perms::owner_all);
    Start([&] {
        Scan(documents.Path(), false);
        ASSERT_EQ(Main().Listbox1.ListCount(), 13);
        for (std::int32_t row = 0; row < 13; ++row) {
            Main().Listbox1.SetListIndex(row);
            Main().Listbox1.ClickTwice();
            EXPECT_EQ(GivenToViewer(), "1|" + documents / Main().Listbox1.Cell(row, 1) + "|");
        }
        EXPECT_FALSE(std::filesystem::exists(home / "ran"));
        EXPECT_TRUE(desktop.messages.empty());
    });
}

TEST_F(OpeningTest, SaysWhenTheFileIsGone) {
    Start([&] {
        // Where even the folder above the file's has gone, the path leads to no item at all.
        for (const auto& [gone, messages] :
             {std::pair("outer/inner/file.tif", 1u), {"outer/inner", 1u}, {"outer", 0u}}) {
            documents.File("outer/inner/file.tif", TiffBytes(1));
            Scan(documents / "outer/inner", false);
            Main().Listbox1.SetListIndex(0);
            std::filesystem::remove_all(documents / gone);
            desktop.messages.clear();
            Main().Listbox1.ClickTwice();
            EXPECT_EQ(desktop.messages, Lines(messages, "File not found")) << gone;
            EXPECT_EQ(Main().Listbox1.ListCount(), 1);
        }
        Main().Listbox1.SetListIndex(-1);
        Main().Listbox1.ClickTwice();
        EXPECT_TRUE(desktop.messages.empty());
        EXPECT_TRUE(desktop.opened.empty());
        EXPECT_FALSE(desktop.quit_status);
    });
}

}  // namespace varnith::test
