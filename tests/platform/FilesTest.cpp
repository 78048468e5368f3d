#include <filesystem>

#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/files/SpecialFolders.h"
#include "support/ProgramTest.h"

namespace varnith::test {

namespace fs = std::filesystem;

// A disk of which one of the calls that change it fails, and on which all may be somebody else's.
class FailingDisk : public TestFileSystem {
  public:
    mutable int calls_to_failure = 0;
    bool others = false;

    std::optional<FileStatus> EntryStatus(const std::string& path) const override {
        auto status = FileSystem::EntryStatus(path);
        if (status && others) ++status->owner;
        return status;
    }

    bool Write(const FileHandle& file, std::string_view bytes) const override {
        return Ok() && FileSystem::Write(file, bytes);
    }
    bool Sync(const FileHandle& file) const override { return Ok() && FileSystem::Sync(file); }
    bool MakeFolder(const std::string& path) const override { return Ok() && FileSystem::MakeFolder(path); }
    bool SetMode(const std::string& path, std::uint32_t mode) const override {
        return Ok() && FileSystem::SetMode(path, mode);
    }
    RenameResult Rename(const std::string& from, const std::string& to) const override {
        return Ok() ? FileSystem::Rename(from, to) : RenameResult::Failed;
    }

  private:
    bool Ok() const { return --calls_to_failure != 0; }
};

struct FilesTest : testing::Test {
    static Ref<FolderItem> Item(const std::string& path) { return FolderItem::FromPath(path); }

    TemporaryFolder folder;
    FailingDisk disk;
    FileSystem::Replacement disk_in_force{disk};
};

TEST_F(FilesTest, AnItemIsAPathThatNeedNotExist) {
    const auto item = Item(folder.Path() + "//./");
    EXPECT_EQ(item->Parent()->Child(item->Name())->AbsolutePath(), folder.Path());
    for (const char* name : {"", ".", "..", "a/b", "/"}) EXPECT_FALSE(item->Child(name)) << name;
    const auto odd = item->Child("line\nbreak\xFF");
    EXPECT_FALSE(odd->Exists());
    EXPECT_EQ(odd->AbsolutePath(), folder.File("line\nbreak\xFF"));
    EXPECT_TRUE(odd->Exists());
    EXPECT_FALSE(Item("/")->Parent());
    // What lies beyond a folder that can't be reached is not looked for from the current folder instead.
    const std::string up = "/../../../../../../../../../../../../../../../..";
    EXPECT_FALSE(Item("/" + std::string(PATH_MAX - 3, 'x') + up + odd->AbsolutePath())->Exists());

    folder.Folder("Some.app");
    disk.executable = folder / "Some.app/Contents/MacOS/Varnith";
    EXPECT_EQ(ApplicationItem()->AbsolutePath(), folder / "Some.app");
    EXPECT_EQ(GetFolderItem("varnth")->AbsolutePath(), folder / "varnth");
    disk.executable = folder / "Some.app/Varnith";
    EXPECT_EQ(GetFolderItem("varnth")->AbsolutePath(), folder / "Some.app/varnth");
    EXPECT_EQ(GetFolderItem(folder / "new")->AbsolutePath(), folder / "new");
    for (const std::string& path : {folder / "missing/new", std::string("a\0b", 3)})
        EXPECT_FALSE(GetFolderItem(path)) << path;
}

TEST_F(FilesTest, RenamesAndDeletesWhatIsNamed) {
    const auto item = Item(folder.File("old name", "bytes"));
    folder.File("folder/in use");
    fs::create_directory_symlink(folder / "folder", folder / "link");
    fs::create_symlink("/nowhere", folder / "link to nothing");
    for (const char* name : {"", ".", "..", "a/b", "folder", "link to nothing"}) item->SetName(name);
    EXPECT_EQ(item->AbsolutePath(), folder / "old name");
    item->SetName("new 'name'");
    EXPECT_EQ(BytesOf(item->AbsolutePath()), "bytes");

    const auto parent = Item(folder.Path());
    for (std::int32_t i = parent->Count(); i >= 1; --i) {
        EXPECT_TRUE(parent->TrueItem(i)->Exists()) << i;
        parent->TrueItem(i)->Delete();
    }
    EXPECT_EQ(TreeOf(folder.Path()), (Tree{{"folder", "755/"}, {"folder/in use", "644 "}}));
}

// On one file system, and to one in memory, which only a bare chroot lacks.
TEST_F(FilesTest, MovesAllOrNothingWhereverItFailsAndNeverInThePlaceOfSomething) {
    for (const char* place : {"/tmp", "/dev/shm"}) {
        if (!fs::exists(place)) continue;
        SCOPED_TRACE(place);
        const TemporaryFolder here;
        const TemporaryFolder there(place);
        fs::permissions(here.File("bundle/Contents/Program", "#!/bin/sh\n"), fs::perms(0755));
        here.File("bundle/it's \"here\"\n\xFF", std::string(700'000, 'x'));
        here.File("bundle/closed/file");
        fs::permissions(here / "bundle/closed", fs::perms(0555));
        fs::create_symlink("Contents", here / "bundle/link");
        fs::create_symlink("/nowhere", here / "bundle/link to nothing");
        here.File("file", "new");
        there.File("old file", "old");
        there.Folder("empty folder");
        fs::create_symlink("/nowhere", there / "link");
        const auto trees = [&] { return std::pair(TreeOf(here.Path()), TreeOf(there.Path())); };
        const auto before = trees();
        for (const char* source : {"file", "bundle"})
            for (const char* target : {"old file", "empty folder", "link", "missing/file"})
                Item(here / source)->MoveFileTo(Item(there / target));
        for (int call = 1; !fs::exists(there / "bundle"); ++call) {
            EXPECT_EQ(trees(), before) << "in front of call " << call;
            disk.calls_to_failure = call;
            Item(here / "bundle")->MoveFileTo(Item(there / "bundle"));
        }
        EXPECT_FALSE(fs::exists(here / "bundle"));
        disk.calls_to_failure = 0;
        Item(there / "bundle")->MoveFileTo(Item(here / "bundle"));
        EXPECT_EQ(trees(), before) << "nothing is left where it was";

        ASSERT_EQ(mkfifo((here / "bundle/fifo").c_str(), 0600), 0);
        Item(here / "bundle")->MoveFileTo(Item(there / "bundle"));
        EXPECT_NE(fs::exists(here / "bundle/fifo"), fs::exists(there / "bundle/fifo"));
        EXPECT_NE(fs::exists(here / "bundle/link"), fs::exists(there / "bundle/link"))
            << "what can't be copied stays as a whole";
    }
}

TEST_F(FilesTest, TheTemporaryFolderIsTheUsersAlone) {
    const Environment where("TMPDIR", folder.Path());
    const std::string name = "varnith-" + std::to_string(geteuid());
    const std::string place = folder / name;
    const auto is_taken = [] { return static_cast<bool>(varnith::TemporaryFolder()); };

    fs::create_directory_symlink(folder.Folder("elsewhere"), place);
    EXPECT_FALSE(is_taken()) << "a link";
    fs::remove(place);
    folder.File(name);
    EXPECT_FALSE(is_taken()) << "a file";
    fs::remove(place);
    EXPECT_EQ(varnith::TemporaryFolder()->AbsolutePath(), place);
    for (const auto& [mode, taken] : {std::pair(0777, false), {0720, false}, {0702, false}, {0755, true}}) {
        fs::permissions(place, fs::perms(mode));
        EXPECT_EQ(is_taken(), taken) << std::oct << mode;
    }
    EXPECT_EQ(TreeOf(folder.Path()).at(name), "700/");
    disk.others = true;
    EXPECT_FALSE(is_taken()) << "someone else's";
}

}  // namespace varnith::test
