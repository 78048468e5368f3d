#include <filesystem>

#include <unistd.h>

#include "app/App.h"
#include "helpers/ProgramTest.h"
#include "platform/base/Exceptions.h"
#include "platform/base/Text.h"

namespace varnith::test {

struct StartTest : ProgramTest {
    StartTest() {
        for (const char* name : {"a.tif", "b.tif", "c.tif"}) documents.File(name, TiffBytes(1));
    }
};

TEST_F(StartTest, TheWindowOpensInTheMiddleAndControlsFollowItByTheirLocks) {
    desktop.screen = {773, 769};
    Start([&] {
        MainWindow& w = Main();
        EXPECT_EQ(std::pair(w.Left(), w.Top()), std::pair(0, 49))
            << "the position is rounded towards 0, as the last step";
        const auto size = [&](std::int32_t width, std::int32_t height) {
            w.SetSize(width, height);
            return Str(w.Width()) + "x" + Str(w.Height());
        };
        EXPECT_EQ(size(10, 10), "774x670") << "the window doesn't shrink below its design size";
        EXPECT_EQ(size(40000, 40000), "32000x32000");
        EXPECT_EQ(size(874, 720), "874x720");
        Lines controls;
        for (const Control* control : w.Controls()) {
            const Bounds& b = control->CurrentBounds();
            controls.push_back(Str(control->TabIndex()) + ": " + Str(b.Left) + "," + Str(b.Top) + " " +
                               Str(b.Width) + "x" + Str(b.Height) + " " + Str(control->TextSize()));
        }
        EXPECT_EQ(controls, (Lines{"0: 7,38 854x651 13", "2: 9,8 56x20 13", "3: 72,7 538x22 13",
                                   "4: 786,6 80x20 13", "5: 724,693 132x20 0", "8: 10,695 147x20 13",
                                   "12: 660,7 114x20 13", "13: 615,7 40x20 13"}));
        EXPECT_TRUE(w.EditField1.ReadOnly() && !w.CheckBox4.Value());
    });
}

TEST_F(StartTest, MakesTheDatabaseOnceAndShowsNothingOfIt) {
    for (const Lines& saved : {Lines(), Lines{"a.tif|1|.|tif", "b.tif|1|.|tif", "c.tif|1|.|tif"}})
        Start([&] {
            EXPECT_EQ(Texts(), "Varnith - Testix|||");
            EXPECT_EQ(Rows(), Lines());
            EXPECT_EQ(SavedRows(), saved);
            Scan(documents.Path(), true);
        });
    EXPECT_EQ(TreeOf(home.Path()).count("varnith-" + Str(geteuid())), 0u);
}

TEST_F(StartTest, RunsWithoutAMessageWhereTheDatabaseIsOfNoUse) {
    const TemporaryFolder places;
    places.File("no database/varnth", std::string(3000, 'x'));
    places.File("without its table/varnth");
    places.Folder("a folder/varnth");
    std::filesystem::create_symlink("/nowhere/varnth", places.Folder("can't be made") + "/varnth");
    const Tree before = TreeOf(places.Path());
    for (const std::string& place :
         {places / "no database", places / "without its table", places / "a folder", places / "can't be made",
          places / "gone", std::string("/proc")}) {
        SCOPED_TRACE(place);
        disk.executable = place + "/Varnith";
        const auto use = [&] {
            Scan(documents.Path(), true);
            EXPECT_EQ(Texts(), "Varnith - Testix - Finished|.|3 file(s)|All,tif");
        };
        EXPECT_EQ(Start(use), 0);
        EXPECT_EQ(TreeOf(places.Path()), before);
    }
    EXPECT_EQ(desktop.messages, Lines());
}

TEST_F(StartTest, TellsOnceWhichFolderCannotBeWrittenAndWhatFollows) {
    GiveUpPrivileges();
    const std::string bundle = application / "Varnith.app";
    disk.executable = application.File("Varnith.app/Contents/MacOS/Varnith");
    const std::pair<std::string, std::string> cases[] = {
        {application / "Varnith.app/Contents", ""},
        {bundle, "Varnith: can't write to " + bundle + ": updates can't be installed\n"},
        {application.Path(), "Varnith: can't write to " + application.Path() +
                                 ": results are not kept, the filter shows nothing new, and updates can't be "
                                 "installed\n"}};
    for (const auto& [closed, line] : cases) {
        std::filesystem::permissions(closed, std::filesystem::perms(0555));
        testing::internal::CaptureStderr();
        EXPECT_EQ(Start([] {}), 0);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), line);
        std::filesystem::permissions(closed, std::filesystem::perms(0755));
    }
    EXPECT_EQ(desktop.messages, Lines());
}

struct RaisingWindow : Window {
    explicit RaisingWindow(const std::function<void()>& r) : raise(r) {}
    void Event_Open() override { raise(); }
    void Event_Close() override { raise(); }
    bool Event_KeyDown(const std::string& /*key*/) override { return raise(), true; }

    std::function<void()> raise;
};

template <class... Exceptions>
std::vector<std::function<void()>> Raisers() {
    return {[] { throw Exceptions(); }...};
}

TEST_F(StartTest, LivesOnWithSomeExceptionsAndEndsWithAnyOtherWhereverRaised) {
    struct DerivedException : NilObjectException {};
    const auto raisers =
        Raisers<FunctionNotFoundException, IllegalCastException, InvalidParentException, KeyChainException,
                KeyNotFoundException, NilObjectException, NoOpenTransportException, OLEException,
                OutOfBoundsException, OutOfMemoryException, RegExException, RegExSearchPatternException,
                RegistryAccessErrorException, DerivedException, std::bad_alloc, RuntimeException,
                std::exception>();
    for (std::size_t i = 0; i < raisers.size(); ++i) {
        SCOPED_TRACE(i);
        const bool listed = i < raisers.size() - 2;
        desktop.messages.clear();
        const auto use = [&] {
            const auto window = MakeRef<RaisingWindow>(raisers[i]);
            window->Show();
            window->PressKey("k");
            window->Close();
            Main().AddMenuHandler("FileExport", [&] { return raisers[i](), true; });
            App::Instance().Choose(Main().FileExport());
            disk.fails = [&](const std::string& path) {
                if (path == documents / "b.tif") raisers[i]();
                return false;
            };
            for (const bool subfolders : {true, false}) {
                Scan(documents.Path(), subfolders);
                EXPECT_EQ(Rows(), (Lines{"a.tif|1|.|tif"}));
                EXPECT_EQ(Texts(), "Processing Item: b.tif|.||") << "the scan ends at the file that raised";
            }
            WaitForWorkers();
            disk.fails = nullptr;
            Scan(documents.Path(), true);
            EXPECT_EQ(Texts(), "Varnith - Testix - Finished|.|3 file(s)|All,tif");
        };
        EXPECT_EQ(Start(use), listed ? 0 : 1);
        EXPECT_EQ(desktop.messages, Lines(listed ? 0 : 6, "Unexpected error: std::exception"))
            << "each is handled in its event and never reaches the code that raised the event";
    }
}

}  // namespace varnith::test
