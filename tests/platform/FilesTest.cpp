#include <filesystem>

#include <errno.h>
#include <limits.h>
#include <linux/posix_acl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "helpers/ProgramTest.h"
#include "platform/files/SpecialFolders.h"

namespace varnith::test {

namespace fs = std::filesystem;

// A disk on which one of the modifying calls or a listing fails, and on which every file can belong to
// another user.
class FailingDisk : public TestFileSystem {
  public:
    mutable int calls_to_failure = 0;
    bool others = false;

    std::optional<FileStatus> EntryStatus(const std::string& path) const override {
        auto status = FileSystem::EntryStatus(path);
        if (status && others) ++status->owner;
        return status;
    }

    bool Write(const FileDescriptor& file, std::string_view bytes) const override {
        return Ok() && FileSystem::Write(file, bytes);
    }
    bool List(const OpenFolder& listed, std::vector<DirectoryEntry>& entries) const override {
        return Ok() && FileSystem::List(listed, entries);
    }
    bool Sync(const FileDescriptor& file) const override { return Ok() && FileSystem::Sync(file); }
    FileDescriptor MakeFile(const std::string& path, std::uint32_t mode) const override {
        return Ok() ? FileSystem::MakeFile(path, mode) : FileDescriptor();
    }
    bool Replace(const std::string& from, const std::string& to) const override {
        return Ok() && FileSystem::Replace(from, to);
    }
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
    DiskInForce disk_in_force{disk};
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
    // A path through an unreachable folder isn't resolved from the current folder instead.
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

// Moves within a file system, and to one in memory, which only a bare chroot lacks.
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
            EXPECT_EQ(trees(), before) << "before call " << call;
            disk.calls_to_failure = call;
            Item(here / "bundle")->MoveFileTo(Item(there / "bundle"));
        }
        EXPECT_FALSE(fs::exists(here / "bundle"));
        disk.calls_to_failure = 0;
        Item(there / "bundle")->MoveFileTo(Item(here / "bundle"));
        EXPECT_EQ(trees(), before) << "the move leaves nothing at the old place";

        ASSERT_EQ(mkfifo((here / "bundle/fifo").c_str(), 0600), 0);
        Item(here / "bundle")->MoveFileTo(Item(there / "bundle"));
        EXPECT_NE(fs::exists(here / "bundle/fifo"), fs::exists(there / "bundle/fifo"));
        EXPECT_NE(fs::exists(here / "bundle/link"), fs::exists(there / "bundle/link"))
            << "a tree that can't be copied stays whole";
    }
}

TEST_F(FilesTest, AFileMadeAnewTakesItsPlaceAsAWholeOrNotAtAll) {
    GiveUpPrivileges();
    const std::string longest(NAME_MAX, 'n');
    const std::string odd = "a\nb\xFF";
    for (const auto& [name, mode] : {std::pair(longest, 0600),
                                     {"folder/old", 0755},
                                     {"open/old", 0644},
                                     {"read only", 0444},
                                     {"closed/old", 0666}})
        fs::permissions(folder.File(name, "before"), fs::perms(mode));
    fs::create_symlink("folder/old", folder / "link");
    fs::create_symlink(folder / "folder/new", folder / "link to nothing");
    fs::create_symlink("circle", folder / "circle");
    fs::permissions(folder / "open", fs::perms::all | fs::perms::sticky_bit);
    fs::permissions(folder / "closed", fs::perms(0555));

    const std::string text(100'000, 'x');
    const auto begin = [&](const std::string& name) {
        const auto stream = Item(folder / name)->CreateTextFile();
        if (stream) stream->WriteLine(text);
        return stream;
    };
    Tree wanted = TreeOf(folder.Path());
    const auto is_as_wanted = [&] { return TreeOf(folder.Path()) == wanted; };
    for (const char* name : {"folder", "missing/new", "read only", "circle", "closed/new"})
        EXPECT_FALSE(begin(name)) << name;
    const std::tuple<std::string, std::string, std::string> files[] = {
        {odd, odd, "644 "},
        {longest, longest, "600 "},
        {"link", "folder/old", "755 "},
        {"link to nothing", "folder/new", "644 "},
        {"open/old", "open/old", "644 "}};
    for (const auto& [name, file, mode] : files) {
        EXPECT_TRUE(begin(name));
        EXPECT_TRUE(is_as_wanted()) << name << ", dropped before it is closed";
        for (int call = 1; is_as_wanted() && call < 10; ++call) {
            disk.calls_to_failure = call;
            if (const auto stream = begin(name)) stream->Close();
        }
        disk.calls_to_failure = 0;
        wanted[file] = mode + text + "\n";
        EXPECT_TRUE(is_as_wanted()) << name;
    }
    begin("closed/old")->Close();
    wanted["closed/old"] = "666 " + text + "\n";
    EXPECT_TRUE(is_as_wanted()) << "a file that can't be replaced is written in place";
    fs::permissions(folder / "closed", fs::perms(0755));
}

// On a file system in memory, because others take short lists only.
TEST_F(FilesTest, AFileMadeAnewGrantsNobodyMoreThanTheOldOneDid) {
    if (!fs::exists("/dev/shm")) GTEST_SKIP();
    const TemporaryFolder here("/dev/shm");
    constexpr const char* Name = "system.posix_acl_access";
    for (const std::uint32_t users : {1, 1000}) {
        // The list (acl(5)) as the system stores it: a version, then tag, permissions and id of each entry.
        // The group of the file may do nothing; the mask says that some others may read and write.
        std::u16string list = {2, 0};
        const auto add = [&](char16_t tag, char16_t may, std::uint32_t id = UINT32_MAX) {
            for (const auto word : {std::uint32_t{tag}, std::uint32_t{may}, id & 0xFFFF, id >> 16})
                list += static_cast<char16_t>(word);
        };
        add(ACL_USER_OBJ, 6);
        for (std::uint32_t user = 1; user <= users; ++user) add(ACL_USER, 6, user);
        add(ACL_GROUP_OBJ, 0), add(ACL_MASK, 6), add(ACL_OTHER, 0);
        const std::string path = here.File(std::to_string(users), "before");
        const std::size_t size = list.size() * sizeof list[0];
        const bool is_set = setxattr(path.c_str(), Name, list.data(), size, 0) == 0;
        if (!is_set && errno == EOPNOTSUPP) GTEST_SKIP() << "no access lists here";
        ASSERT_TRUE(is_set);
        Item(path)->CreateTextFile()->Close();
        EXPECT_EQ(BytesOf(path), "");
        std::u16string kept(list.size(), 0);
        EXPECT_EQ(getxattr(path.c_str(), Name, kept.data(), size), static_cast<ssize_t>(size)) << users;
        EXPECT_TRUE(kept == list) << users;
    }
}

TEST_F(FilesTest, TheTemporaryFolderIsTheUsersAlone) {
    const Environment where("TMPDIR", folder.Path());
    const std::string name = "varnith-" + std::to_string(geteuid());
    const std::string place = folder / name;
    const auto is_taken = [] {
        return static_cast<bool>(varnith::TemporaryFolder()) && varnith::ExistingTemporaryFolder();
    };

    EXPECT_FALSE(varnith::ExistingTemporaryFolder());
    EXPECT_EQ(TreeOf(folder.Path()), Tree()) << "the look-up doesn't create the folder";
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
    EXPECT_FALSE(is_taken()) << "another user's folder";
}

}  // namespace varnith::test
