#include <filesystem>

#include <gtest/gtest.h>
#include <limits.h>

#include "platform/files/FileListMBS.h"
#include "platform/files/FolderItem.h"
#include "platform/files/TiffPictureMBS.h"
#include "platform/system/SystemInformationMBS.h"
#include "support/TemporaryFolder.h"
#include "support/TestFileSystem.h"
#include "support/TiffFile.h"

namespace varnith::test {

struct FilesTest : testing::Test {
    TemporaryFolder folder;
    TestFileSystem disk;
    FileSystem::Replacement disk_in_force{disk};
};

TEST_F(FilesTest, AnItemIsAPathThatNeedNotExist) {
    const auto item = FolderItem::FromPath(folder.Path() + "//./");
    EXPECT_EQ(item->Parent()->Child(item->Name())->AbsolutePath(), folder.Path());
    for (const char* name : {"", ".", "..", "a/b", "/"}) EXPECT_FALSE(item->Child(name)) << name;
    const auto odd = item->Child("line\nbreak\xFF");
    EXPECT_FALSE(odd->Exists());
    EXPECT_EQ(odd->AbsolutePath(), folder.File("line\nbreak\xFF"));
    EXPECT_TRUE(odd->Exists());
    EXPECT_EQ(odd->Count(), 0);
    EXPECT_EQ(FolderItem::FromPath("/")->AbsolutePath(), "/");
    EXPECT_FALSE(FolderItem::FromPath("/")->Parent());
}

TEST_F(FilesTest, ABareNameLiesBesideTheApplication) {
    folder.Folder("Some.app");
    disk.executable = folder / "Some.app/Contents/MacOS/Varnith";
    EXPECT_EQ(ApplicationItem()->AbsolutePath(), folder / "Some.app");
    EXPECT_EQ(GetFolderItem("varnth")->AbsolutePath(), folder / "varnth");
    disk.executable = folder / "Some.app/Varnith";
    EXPECT_EQ(ApplicationItem()->AbsolutePath(), disk.executable);
    EXPECT_EQ(GetFolderItem("varnth")->AbsolutePath(), folder / "Some.app/varnth");
    EXPECT_EQ(GetFolderItem(folder / "new")->AbsolutePath(), folder / "new");
    for (const std::string& path : {folder / "missing/new", std::string("a\0b", 3)})
        EXPECT_FALSE(GetFolderItem(path)) << path;
}

TEST_F(FilesTest, BothListingsAreInNaturalOrderAndTellWhatIsVisible) {
    for (const char* name : {"b10", "B2", ".dot", "listed", "b2"}) folder.File(name);
    for (const char* name : {"sub", "a", ".folder"}) folder.Folder(name);
    folder.File(".hidden", "listed\nsub\n");
    std::filesystem::create_directory_symlink(folder / "a", folder / "c");
    const auto item = FolderItem::FromPath(folder.Path());
    const FileListMBS list(item);
    std::string listed;
    ASSERT_EQ(item->Count(), list.Count());
    for (std::int32_t i = 0; i < list.Count(); ++i) {
        listed += list.Item(i)->Name() + (list.Directory(i) ? "/" : "") + (list.Visible(i) ? " " : "- ");
        EXPECT_EQ(item->Item(i + 1)->Name(), list.Item(i)->Name());
        EXPECT_EQ(item->Item(i + 1)->Visible(), list.Visible(i)) << list.Item(i)->Name();
    }
    EXPECT_EQ(listed, ".dot- .folder/- .hidden- a/ B2 b2 b10 c listed- sub/- ");
    for (const std::int32_t i : {-1, list.Count()}) {
        EXPECT_FALSE(item->Item(i + 1));
        EXPECT_THROW(list.Item(i), OutOfBoundsException);
    }
}

// What lies beyond a folder that can't be reached is not looked for from the current folder instead.
TEST_F(FilesTest, APathTooLongForTheSystemFailsAsAWhole) {
    const std::string up = "/../../../../../../../../../../../../../../../..";
    const std::string path = "/" + std::string(PATH_MAX - 3, 'x') + up + folder.File("there");
    EXPECT_FALSE(FolderItem::FromPath(path)->Exists());
    EXPECT_FALSE(disk.OpenForReading(path));
}

TEST_F(FilesTest, APictureHasTheDirectoriesOfTheMainChain) {
    const auto count = [&](const std::string& bytes) {
        const auto picture = OpenAsTiffMBS(FolderItem::FromPath(folder.File("x.tif", bytes)), true);
        return picture ? picture->ImageCount() : -1;
    };
    for (const std::string mode : {"wl", "wb", "wl8", "wb8"}) {
        EXPECT_EQ(count(TiffBytes(500, mode)), 500) << mode;
        const std::string bytes = TiffBytes(3, mode);
        const std::size_t header = mode.size() > 2 ? 16 : 8;
        const std::pair<std::size_t, int> cuts[] = {
            {0, -1}, {header - 1, -1}, {header, 0}, {bytes.size() / 2, 1}, {bytes.size() - 1, 2}};
        for (const auto& [size, pages] : cuts) EXPECT_EQ(count(bytes.substr(0, size)), pages) << mode << size;
    }
    for (const int pages : {1, 2, 7}) EXPECT_EQ(count(LoopingTiffBytes(pages)), pages);
}

TEST_F(FilesTest, TheNameOfTheSystem) {
    for (const auto& [contents, name] : {std::pair("ID=a\nNAME=\"a \\\"b\\\" c\"\nNAMES=d\n", "a \"b\" c"),
                                         {"NAME='\\a'", "\\a"},
                                         {"NAME=\n", "Linux"}}) {
        disk.elsewhere["/etc/os-release"] = folder.File("os-release", contents);
        EXPECT_EQ(SystemInformationMBS::OSName(), name);
    }
}

}  // namespace varnith::test
