#include <thread>

#include "update/UpdateTest.h"
#include "update/UpdateUtilities.h"

namespace varnith::test {

namespace {

Ref<FolderItem> Item(const std::string& path) {
    return FolderItem::FromPath(path);
}

class InstallTest : public UpdateTest {
  protected:
    ~InstallTest() override {
        for (const std::string& folder : {temporary, old_item, application.Path(), undeletable})
            umount2(folder.c_str(), MNT_DETACH);
    }

    // The program starts, is offered a download of that name, and its user accepts. Returns what the user was
    // told until then, from the signal to the window that stays or the end of the program.
    std::string Update(const std::string& name, const std::string& page) {
        Serve({Newer(name), page});
        std::string seen;
        Start([&] {
            AwaitOfferAndPress();
            PumpUntil([&] { return desktop.quit_status || !desktop.messages.empty(); });
            seen = std::string(desktop.beeps, '\a');
            for (const std::string& message : desktop.messages) seen += message + "|";
            seen += desktop.quit_status ? "quit " + std::to_string(*desktop.quit_status)
                    : Offer()           ? "offer"
                                        : "";
        });
        return seen;
    }

    // Whether a command could not mount what it was told to, as on a machine that lets nobody do it.
    static bool IsRefused(const std::string& result) { return result.find("mount:") != result.npos; }

    const std::string old_item = temporary + "/o-Varnith.app";
    const std::string undeletable = release / "folder/3";
};

struct Case {
    std::string what;
    // What the download is named, and how the file "archive", of which it is made, comes to be, in a folder
    // with New.app. Before that the disk may be prepared, $A and $T being the two folders below.
    std::string name;
    std::string commands;
    std::string seen;
    // What the folder of the application and the temporary one hold then, and what has been started.
    std::string application;
    std::string temporary;
    std::string launched;
};

[[maybe_unused]] void PrintTo(const Case& c, std::ostream* out) {
    *out << c.what;
}

const std::string Pack = "tar -czf archive New.app";
const std::string PackLarge =
    "head -c 3000000 $SOURCE >New.app/last && tar -czf archive New.app/Contents New.app";
const std::string Refused = "\aError installing updated application.|offer";
const std::string New = "new Varnith.app/Contents/MacOS/Varnith";
const std::string NewBeside = "new n-Varnith.app/Contents/MacOS/Varnith";

const Case Cases[] = {
    {"bundle", "a.tar.gz", Pack, "quit 0", "Varnith.app=new", "o-Varnith.app=old", New},
    {"opens_the_folder", "a.tar.gz", "chmod 755 . && " + Pack + " --no-recursion ./", "quit 0",
     "Varnith.app=new", "o-Varnith.app=old", New},
    {"nothing", "a.tar.gz", "touch archive", Refused, "Varnith.app=old", "a.tar.gz", ""},
    {"page", "a.tar.gz", "echo '<p>' >archive", Refused, "Varnith.app=old", "a.tar.gz", ""},
    {"early_end", "a.tar.gz", Pack + " && truncate -s 60 archive", Refused, "Varnith.app=old", "a.tar.gz",
     ""},
    {"empty_archive", "a.tar.gz", Pack + " -X '*'", Refused, "Varnith.app=old", "a.tar.gz", ""},
    {"path_above", "a.tar.gz", Pack + " -P --transform s,^,../,", Refused, "Varnith.app=old", "a.tar.gz", ""},
    {"path_from_root", "a.tar.gz", Pack + " -P --transform s,^,/tmp/outside-,", Refused, "Varnith.app=old",
     "a.tar.gz tmp=other", ""},
    {"path_through_link", "a.tar.gz",
     "mkdir -p link real/up && ln -s .. link/up && touch real/up/New.app && "
     "tar -czf archive -C link up -C ../real up/New.app",
     Refused, "Varnith.app=old", "a.tar.gz up", ""},
    // As soon as there is what an archive has listed first it counts as unpacked.
    {"late_end", "a.tar.gz", "SOURCE=/dev/urandom; " + PackLarge + " && truncate -s 1000000 archive",
     "quit 0", "Varnith.app=other", "o-Varnith.app=old", New},
    {"full_disk", "a.tar.gz",
     "mkdir $T && mount -t tmpfs -o size=1m,mode=700 none $T && SOURCE=/dev/zero; " + PackLarge, "quit 0",
     "Varnith.app=other", "o-Varnith.app=old", New},
    // What has no ".tar" in its name is the application, whatever it is.
    {"page_of_plain_name", "a", "echo '<p>' >archive", "quit 0", "Varnith.app", "o-Varnith.app=old", ""},
    {"read_only_folder", "a.tar.gz", "mount --bind $A $A && mount -o remount,bind,ro $A; " + Pack, "quit 0",
     "Varnith.app=old", "New.app=new", ""},
    {"stale_new_item", "a.tar.gz", "mkdir $A/n-Varnith.app; " + Pack, "quit 0", "Varnith.app=other",
     "New.app=new o-Varnith.app=old", ""},
    // One that the start could not remove.
    {"stale_old_item", "a.tar.gz",
     "mkdir -p -m 700 $T $T/o-Varnith.app && mount -t tmpfs none $T/o-Varnith.app; " + Pack, "quit 0",
     "Varnith.app=old n-Varnith.app=new", "o-Varnith.app=other", NewBeside},
};

class DownloadTest : public InstallTest, public testing::WithParamInterface<Case> {};

TEST_P(DownloadTest, LeavesTheDiskAndTellsTheUser) {
    const Case& c = GetParam();
    application.File("varnth", "kept");
    if (IsRefused(Run(c.commands))) GTEST_SKIP() << "nothing can be mounted here";
    const std::string bytes = BytesOf(release / "archive");
    // Where the connection ends too early, more has been announced.
    const std::string page = Page(bytes + (c.what.ends_with("_end") ? "more" : ""));
    EXPECT_EQ(Update(c.name, page.substr(0, page.find("\r\n\r\n") + 4) + bytes), c.seen);
    EXPECT_EQ(Holds(application.Path()), c.application + " varnth");
    EXPECT_EQ(BytesOf(application / "varnth"), "kept");
    EXPECT_EQ(Holds(temporary), c.temporary);
    EXPECT_FALSE(fs::exists(home / "New.app") || fs::exists("/tmp/outside-New.app"));
    EXPECT_EQ(Launched(!c.launched.empty()), c.launched);
}

INSTANTIATE_TEST_SUITE_P(Of, DownloadTest, testing::ValuesIn(Cases),
                         [](const auto& test) { return test.param.what; });

TEST_F(InstallTest, TheBarFollowsAPressStartsAnewAndTheNextStartCleansUp) {
    Run(Pack);
    const std::string page = Page(BytesOf(release / "archive"));
    const std::size_t body = page.find("\r\n\r\n") + 4;
    std::thread serving([&] {
        const std::size_t half = body + (page.size() - body) / 2;
        for (const std::string& piece : {Newer(), page.substr(0, half), page}) {
            Server().TakeRequest();
            Server().Send(piece);
            if (piece.size() != half) Server().Close();
        }
    });
    Start([&] {
        AwaitOfferAndPress();
        PumpUntil([] { return Offer()->ProgressBar1.Value() >= 49; });
        EXPECT_LE(Offer()->ProgressBar1.Value(), 50);
        Offer()->ActionBtn.Press();
        PumpUntil([&] { return desktop.quit_status.has_value(); });
        EXPECT_EQ(Offer()->ProgressBar1.Value(), 100);
    });
    serving.join();
    EXPECT_EQ(Launched(true), New);
    EXPECT_FALSE(desktop.brought_to_front.empty());

    fs::create_directory(temporary + "/o-Other.app");
    EXPECT_EQ(Holds(temporary), "o-Other.app=other o-Varnith.app=old");
    Start([] {});
    EXPECT_EQ(Holds(temporary), "o-Other.app=other");
    EXPECT_EQ(Holds(application.Path()), "Varnith.app=new varnth");
}

TEST_F(InstallTest, AnExecutableOutsideOfABundleIsTheApplication) {
    // Its folder lacks what makes it a bundle's.
    disk.executable = application.File("Half.app/Contents/My \"count'er\"", Program("old"));
    // A server that tells no length leaves the bar empty.
    EXPECT_EQ(Update("Varnith", "HTTP/1.1 200 OK\r\n\r\n" + Program("new")), "quit 0");
    EXPECT_EQ(BytesOf(disk.executable), Program("new"));
    EXPECT_EQ(Holds(temporary), "o-My \"count'er\"");
    EXPECT_NE(Launched(true), "");
}

TEST_F(InstallTest, WithoutATemporaryFolderNothingIsDownloaded) {
    home.File(fs::path(temporary).filename(), "someone was here first");
    Serve({Newer()});
    Start([&] {
        AwaitOfferAndPress();
        EXPECT_TRUE(Offer());
        EXPECT_FALSE(Offer()->Downloader->IsConnected());
    });
}

TEST_F(InstallTest, WhatDoesNotLookLikeAnArchiveIsTheApplication) {
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"a.tar.gz", "-cz", true}, {"a.tar", "-c", true},   {"it's \"A\"\n.TAR .GZ", "-cz", true},
        {"a.tar-1", "-c", true},   {"a.tgz", "-cz", false}, {"a.gz", "-cz", false},
        {"a.app", "-c", false},    {"atar", "-c", false}};
    for (const auto& [name, options, unpacked] : cases) {
        const TemporaryFolder folder;
        Run(std::string("tar ") + options + "f archive New.app");
        const std::string file = folder.File(name, BytesOf(release / "archive"));
        const auto extracted = UpdateUtilities::ExtractArchive(Item(file));
        ASSERT_TRUE(extracted) << name;
        EXPECT_EQ(Holds(folder.Path()), unpacked ? "New.app=new" : name);
        EXPECT_EQ(extracted->AbsolutePath(), folder / (unpacked ? "New.app" : name));
    }
}

TEST_F(InstallTest, NothingIsUnpackedBesideTheApplication) {
    Start([&] {
        EXPECT_FALSE(UpdateUtilities::SwapFiles(nullptr));
        EXPECT_FALSE(UpdateUtilities::SwapFiles(Item(application / "missing.tar")));
        EXPECT_FALSE(UpdateUtilities::SwapFiles(Item(application.File("a.tar", "no archive"))));
    });
    EXPECT_EQ(Holds(temporary), "a.tar");
    EXPECT_EQ(Holds(application.Path()), "Varnith.app=old varnth");
}

TEST_F(InstallTest, DeletesAsFarAsItCan) {
    UpdateUtilities::DeleteFileOrFolder(nullptr);
    const std::string made = Run(
        "for i in 0 1 2 3 4 5 6 7 8 9; do mkdir -p folder/$i && touch folder/$i/file; done;"
        "ln -s ../../New.app folder/0/link; ln -s /nowhere folder/0/nowhere; mount -t tmpfs none folder/3");
    if (IsRefused(made)) GTEST_SKIP() << "nothing can be mounted here";
    UpdateUtilities::DeleteFileOrFolder(Item(release / "folder"));
    // The one that can't be deleted stays the first, and the passes end.
    EXPECT_EQ(Run("ls folder | xargs"), "3 4 5 6 7 8 9\n");
    EXPECT_EQ(Holds(release.Path()), "New.app=new folder=other");
}

}  // namespace

}  // namespace varnith::test
