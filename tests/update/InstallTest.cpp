#include <filesystem>
#include <utility>

#include <signal.h>

#include "platform/system/Shell.h"
#include "update/UpdateTest.h"
#include "update/UpdateUtilities.h"

namespace varnith::test {

namespace {

const std::string Pack = "tar -czf archive New.app";

// The program as a bundle in its application folder, and a new bundle in a release folder.
class InstallTest : public UpdateTest {
  protected:
    InstallTest() {
        GiveUpPrivileges();
        // A write past the file size limit then fails, as on a full disk.
        signal(SIGXFSZ, SIG_IGN);

        for (const auto& [bundle, name] :
             {std::pair(application / "Varnith.app", "old"), std::pair(release / "New.app", "new")})
            std::filesystem::permissions(WriteFile(bundle + "/Contents/MacOS/Varnith", Program(name)),
                                         std::filesystem::perms(0755));
        disk.executable = application / "Varnith.app/Contents/MacOS/Varnith";
        old_ = TreeOf(application / "Varnith.app");
        new_ = TreeOf(release / "New.app");
    }
    ~InstallTest() override { Run("chmod -R u+w $A $T; prlimit --pid $PPID --fsize=unlimited:"); }

    // A script that runs as long as the test does.
    static std::string Program(const std::string& name) {
        return "#!/bin/sh\nexec tail -f /dev/null --pid=" + std::to_string(getpid()) + " # " + name;
    }

    // Runs a command line in the release folder. $A is the application folder, $T the temporary one.
    void Run(const std::string& command_line) const {
        Shell().Execute("A=" + application.Path() + "; T=" + temporary + "; cd " + release.Path() + " && " +
                        command_line);
    }
    // The bytes of the file "archive" that a command line makes.
    std::string Archive(const std::string& command_line) const {
        Run(command_line);
        return BytesOf(release / "archive");
    }

    // Starts the program, accepts the offer of an archive of that name, and waits until the program quits.
    void Update(const std::string& command_line, const std::string& name = "a.tar.gz") {
        Serve({Newer(name), Page(Archive(command_line))});
        Start([&] {
            ServeUntil([] { return static_cast<bool>(Offer()); });
            Offer()->ActionBtn.Press();
            ServeUntil([&] { return desktop.quit_status == 0; });
        });
        EXPECT_EQ(desktop.messages, Lines());
    }

    void ExpectFailure() {
        EXPECT_EQ(std::exchange(desktop.messages, {}), Lines{"Error installing updated application."});
        EXPECT_EQ(std::exchange(desktop.beeps, 0), 1);
    }

    // The names in a folder. A subfolder's name is followed by "=old" or "=new" if it is that bundle, with
    // the same bytes and permissions, else by "=other". Files that the program keeps beside itself are
    // omitted.
    std::string Holds(const std::string& path) const {
        std::string names;
        for (const auto& [name, _] : TreeOf(path)) {
            if (name.find('/') != name.npos || name == "os-release" || name == "varnth") continue;
            names += (names.empty() ? "" : " ") + name;
            const auto status = std::filesystem::symlink_status(path + "/" + name);
            if (!std::filesystem::is_directory(status)) continue;
            const Tree tree = TreeOf(path + "/" + name);
            names += tree == old_ ? "=old" : tree == new_ ? "=new" : "=other";
        }
        return names;
    }

    // What the application folder and the temporary folder hold at the end, and whether a program was
    // started.
    std::string Left() const {
        return Holds(application.Path()) + " | " + Holds(temporary) +
               (desktop.brought_to_front.empty() ? "" : " | started");
    }

    TemporaryFolder release;

  private:
    Tree old_;
    Tree new_;
};

TEST_F(InstallTest, RefusesWhatHoldsNoApplicationAndInstallsWhatDoes) {
    const std::string cases[] = {
        "echo '<p>' >archive",
        Pack + " && truncate -s 60 archive",
        "tar -czf archive -T /dev/null",
        // Paths that lead out of the folder: through its parent, from the root, and through a link.
        Pack + " -P --transform s,^,../,",
        Pack + " -P --transform s,^,$T-,",
        "mkdir -p link real/up && ln -s .. link/up && touch real/up/New.app && "
        "tar -czf archive -C link up -C ../real up/New.app",
    };
    Serve({Newer("a.tar.gz")});
    Start([&] {
        ServeUntil([] { return static_cast<bool>(Offer()); });
        Run("mkdir -m 700 $T");
        const std::string outside = Holds(home.Path());
        for (const std::string& commands : cases) {
            SCOPED_TRACE(commands);
            const std::string bytes = Archive(commands);
            Serve({Page(bytes)});
            Offer()->ActionBtn.Press();
            ServeUntil([&] { return desktop.quit_status || !desktop.messages.empty(); });
            ExpectFailure();
            EXPECT_EQ(Offer()->ProgressBar1.Value(), 100);
            EXPECT_EQ(Holds(application.Path()), "Varnith.app=old");
            EXPECT_EQ(BytesOf(temporary + "/a.tar.gz"), bytes);
            EXPECT_EQ(Holds(home.Path()), outside);
        }
        for (const auto& [place, file] :
             {std::pair(std::string("/nowhere"), "a.tar.gz"), {home.Path(), ""}}) {
            const Environment temporary_folder("TMPDIR", place);
            Offer()->Init("http://" + MakersServer().At("/new/") + file);
            Offer()->ActionBtn.Press();
            ExpectFailure();
        }
        Offer()->Init("");
        Offer()->ActionBtn.Press();
        EXPECT_EQ(desktop.messages, Lines());
    });
    Run("rm -r $T/*");
    Update(Pack);
    EXPECT_EQ(Left(), "Varnith.app=new | o-Varnith.app=old | started");
}

TEST_F(InstallTest, ABrokenDownloadIsStartedAgainAndNotInstalled) {
    const std::string page = Page(Archive(Pack));
    Serve({Newer("a.tar.gz")});
    Start([&] {
        ServeUntil([] { return static_cast<bool>(Offer()); });
        Serve({Page("<p>", "404 Not Found")});
        Offer()->ActionBtn.Press();
        ServeUntil([&] { return !desktop.messages.empty(); });
        ExpectFailure();
        // A file that counts as the application itself, and an archive.
        for (const std::string name : {"Varnith", "a.tar.gz"}) {
            Offer()->Init("http://" + MakersServer().At("/new/" + name));
            for (std::size_t place = 0; place < page.size(); ++place) {
                Serve({page.substr(0, place)}, place % 3 == 0);
                Offer()->ActionBtn.Press();
                ServeUntil([&] { return HasServed() && !Offer()->Downloader->IsConnected(); });
                ASSERT_EQ(Holds(application.Path()), "Varnith.app=old") << name << " at " << place;
            }
            EXPECT_GT(Offer()->ProgressBar1.Value(), 90);
        }
        EXPECT_EQ(desktop.messages, Lines());
        Run("rm $T/Varnith");
        Serve({page});
        Offer()->ActionBtn.Press();
        ServeUntil([&] { return desktop.quit_status == 0; });
    });
    EXPECT_EQ(Left(), "Varnith.app=new | o-Varnith.app=old | started");
}

TEST_F(InstallTest, AFullDiskKeepsADownloadFromBeingInstalledAndCutsTheNewProgramShort) {
    Serve({Newer("a.tar.gz"), Page(Archive("head -c 100000 /dev/urandom >New.app/last; " + Pack))});
    Start([&] {
        ServeUntil([] { return static_cast<bool>(Offer()); });
        Run("prlimit --pid $PPID --fsize=90000:");
        Offer()->ActionBtn.Press();
        ServeUntil([&] { return desktop.quit_status || !desktop.messages.empty(); });
        ExpectFailure();
    });
    EXPECT_EQ(Left(), "Varnith.app=old | a.tar.gz");
    Update(
        "head -c 3000000 /dev/zero >New.app/last; prlimit --pid $PPID --fsize=1000000:;"
        "tar -czf archive New.app/Contents New.app");
    EXPECT_EQ(Left(), "Varnith.app=other | o-Varnith.app=old | started");
    EXPECT_LE(BytesOf(application / "Varnith.app/last").size(), 1'000'000u);
}

TEST_F(InstallTest, AClosedFolderKeepsTheOldProgram) {
    Update("chmod 555 $A; " + Pack);
    EXPECT_EQ(Left(), "Varnith.app=old | New.app=new");
}

TEST_F(InstallTest, AStaleNewItemTakesThePlaceOfTheProgram) {
    Update("mkdir $A/n-Varnith.app; " + Pack);
    EXPECT_EQ(Left(), "Varnith.app=other | New.app=new o-Varnith.app=old");
}

TEST_F(InstallTest, AStaleOldItemIsDeletedAsFarAsItCanBeAndKeepsTheProgramInItsPlace) {
    UpdateUtilities::DeleteFileOrFolder(nullptr);
    Run("mkdir -p -m 700 $T; for i in 0 1 2 3 4 5 6 7 8 9; do mkdir -p $T/o-Varnith.app/$i/folder; done;"
        "cd $T/o-Varnith.app; ln -s " +
        release / "New.app 0/link; ln -s /nowhere 0/nowhere; chmod 555 3");
    Update(Pack);
    EXPECT_EQ(Left(), "Varnith.app=old n-Varnith.app=new | o-Varnith.app=other | started");
    // The folder that can't be deleted stays the first one, and the passes end.
    EXPECT_TRUE(Holds(temporary + "/o-Varnith.app").starts_with("3=other 4=other"));
    EXPECT_EQ(Holds(release.Path()), "New.app=new archive") << "the target of a link stays";
}

TEST_F(InstallTest, AnExecutableOutsideOfABundleIsTheApplication) {
    // Its folder lacks a part of a bundle.
    disk.executable = application.File("Half.app/Contents/Counter", Program("old"));
    Update("cp New.app/Contents/MacOS/Varnith archive", "Varnith");
    EXPECT_EQ(Left(), "Half.app=other Varnith.app=old | o-Counter | started");
    EXPECT_EQ(BytesOf(disk.executable), Program("new"));
}

TEST_F(InstallTest, WhatDoesNotLookLikeAnArchiveIsTheApplication) {
    const std::pair<const char*, bool> cases[] = {
        {"a.tar", true}, {"it's \"A\"\n.TAR.gz", true}, {"a.tgz", false}, {"a.gz", false}, {"a.app", false}};
    for (const auto& [name, unpacked] : cases) {
        const std::string folder = release.Folder(std::string("it's in ") + name);
        const auto file = FolderItem::FromPath(folder + "/" + name);
        Run("tar -caf " + file->ShellPath() + " New.app");
        const auto extracted = UpdateUtilities::ExtractArchive(file);
        EXPECT_EQ(Holds(folder), unpacked ? "New.app=new" : name);
        EXPECT_EQ(extracted->Name(), unpacked ? "New.app" : name);
    }
}

}  // namespace

}  // namespace varnith::test
