#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/files/FolderItem.h"
#include "support/TemporaryFolder.h"
#include "support/TestFileSystem.h"

namespace varnith::test {

namespace {

namespace fs = std::filesystem;

// A disk of which one of the calls that change it fails, counted from 1.
class FailingDisk : public TestFileSystem {
  public:
    int failing = 0;
    mutable int calls = 0;

    // A full disk takes a part.
    bool Write(const FileHandle& file, std::string_view bytes) const override {
        return Fails() ? FileSystem::Write(file, bytes.substr(0, 1)) && false
                       : FileSystem::Write(file, bytes);
    }
    bool Sync(const FileHandle& file) const override { return !Fails() && FileSystem::Sync(file); }
    bool MakeFolder(const std::string& path) const override {
        return !Fails() && FileSystem::MakeFolder(path);
    }
    bool MakeLink(const std::string& path, const std::string& target) const override {
        return !Fails() && FileSystem::MakeLink(path, target);
    }
    bool SetMode(const std::string& path, std::uint32_t mode) const override {
        return !Fails() && FileSystem::SetMode(path, mode);
    }
    RenameResult Rename(const std::string& from, const std::string& to) const override {
        return Fails() ? RenameResult::Failed : FileSystem::Rename(from, to);
    }

  private:
    bool Fails() const { return ++calls == failing; }
};

Ref<FolderItem> Item(const std::string& path) {
    return FolderItem::FromPath(path);
}

// On one file system, and to one in memory.
class MovingTest : public testing::TestWithParam<const char*> {
  protected:
    MovingTest() {
        fs::permissions(here.File("bundle/Contents/Program", "#!/bin/sh\n"), fs::perms(0755));
        here.File("bundle/it's \"here\"\n\xFF", std::string(700'000, 'x'));
        here.File("bundle/closed/file");
        fs::permissions(here / "bundle/closed", fs::perms(0555));
        fs::create_symlink("Contents", here / "bundle/link");
        fs::create_symlink("/nowhere", here / "bundle/link to nothing");
    }

    TemporaryFolder here;
    TemporaryFolder there{GetParam()};
};

TEST_P(MovingTest, NeverTakesThePlaceOfWhatIsThere) {
    here.File("file", "new");
    there.File("file", "old");
    there.Folder("empty folder");
    fs::create_symlink("/nowhere", there / "link");
    const Tree before_here = TreeOf(here.Path());
    const Tree before_there = TreeOf(there.Path());
    for (const char* source : {"file", "bundle"})
        for (const char* target : {"file", "empty folder", "link", "missing/file"})
            Item(here / source)->MoveFileTo(Item(there / target));
    EXPECT_EQ(TreeOf(here.Path()), before_here);
    EXPECT_EQ(TreeOf(there.Path()), before_there);
}

TEST_P(MovingTest, MovesAllOrNothingWhereverItFails) {
    FailingDisk disk;
    const FileSystem::Replacement in_force(disk);
    const Tree whole = TreeOf(here.Path());
    do {
        EXPECT_EQ(TreeOf(here.Path()), whole) << "call " << disk.failing;
        EXPECT_EQ(TreeOf(there.Path()), Tree()) << "call " << disk.failing;
        ++disk.failing;
        disk.calls = 0;
        Item(here / "bundle")->MoveFileTo(Item(there / "bundle"));
    } while (!fs::exists(there / "bundle"));
    EXPECT_EQ(TreeOf(there.Path()), whole);
    EXPECT_FALSE(fs::exists(here / "bundle"));
    disk.failing = 0;
    Item(there / "bundle")->MoveFileTo(Item(here / "back"));
    EXPECT_EQ(TreeOf(there.Path()), Tree()) << "nothing is left where it was";
}

TEST_P(MovingTest, WhatCannotBeCopiedStays) {
    ASSERT_EQ(mkfifo((here / "bundle/fifo").c_str(), 0600), 0);
    Item(here / "bundle")->MoveFileTo(Item(there / "bundle"));
    EXPECT_NE(fs::exists(here / "bundle/fifo"), fs::exists(there / "bundle/fifo"));
    EXPECT_NE(fs::exists(here / "bundle/link"), fs::exists(there / "bundle/link"));
}

// Only in a bare chroot there is none.
std::vector<const char*> Places() {
    return fs::exists("/dev/shm") ? std::vector{"/tmp", "/dev/shm"} : std::vector{"/tmp"};
}

INSTANTIATE_TEST_SUITE_P(FileSystems, MovingTest, testing::ValuesIn(Places()));

TEST(FolderItemTest, RenamesAndDeletes) {
    const TemporaryFolder folder;
    folder.File("old name", "bytes");
    folder.File("folder/in use");
    fs::create_directory_symlink(folder / "folder", folder / "link");
    fs::create_symlink("/nowhere", folder / "link to nothing");
    const auto parent = Item(folder.Path());

    const auto item = parent->Child("old name");
    for (const char* name : {"", ".", "..", "a/b", "folder", "link to nothing"}) item->SetName(name);
    EXPECT_EQ(item->AbsolutePath(), folder / "old name");
    item->SetName("new 'name'");
    EXPECT_EQ(BytesOf(item->AbsolutePath()), "bytes");

    EXPECT_FALSE(parent->Child("link to nothing")->Exists());
    for (std::int32_t i = 1; i <= parent->Count(); ++i) EXPECT_TRUE(parent->TrueItem(i)->Exists()) << i;
    for (const char* name : {"folder", "link", "link to nothing", "new 'name'", "missing"})
        parent->Child(name)->Delete();
    EXPECT_EQ(TreeOf(folder.Path()), (Tree{{"folder", "755/"}, {"folder/in use", "644 "}}));
}

}  // namespace

}  // namespace varnith::test
