#include <filesystem>

#include "app/App.h"
#include "platform/base/Exceptions.h"
#include "platform/threads/Workers.h"
#include "support/ProgramTest.h"

namespace varnith::test {

struct StartTest : ProgramTest {
    StartTest() {
        for (const char* name : {"a.tif", "b.tif", "c.tif"}) documents.File(name, TiffBytes(1));
    }
};

TEST_F(StartTest, TheFirstStartMakesTheDatabaseAndLaterOnesLeaveItAlone) {
    Lines saved;
    for (int start = 0; start < 2; ++start) {
        const auto use = [&] {
            EXPECT_EQ(Texts(), "Varnith - Testix|||");
            EXPECT_EQ(Rows(), Lines());
            EXPECT_EQ(SavedRows(), saved);
            if (start == 0) Scan(documents.Path(), true);
            saved = {"a.tif|1|.|tif", "b.tif|1|.|tif", "c.tif|1|.|tif"};
        };
        EXPECT_EQ(Start(use), 0);
        EXPECT_EQ(SavedRows(), saved);
    }
}

TEST_F(StartTest, RunsWithoutAWordWhereTheDatabaseIsOfNoUse) {
    const TemporaryFolder elsewhere;
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"no database", [&] { elsewhere.File("varnth", std::string(3000, 'x')); }},
        {"lacks its table", [&] { elsewhere.File("varnth", ""); }},
        {"a folder", [&] { elsewhere.Folder("varnth"); }},
        {"can't be made", [&] { std::filesystem::create_symlink("/nowhere/varnth", elsewhere / "varnth"); }},
        {"not writable, whoever asks", [&] { disk.executable = "/proc/Varnith"; }},
        {"application folder gone", [&] { disk.executable = elsewhere / "gone/Varnith"; }}};
    for (const auto& [name, prepare] : cases) {
        SCOPED_TRACE(name);
        std::filesystem::remove_all(elsewhere / "varnth");
        disk.executable = elsewhere / "Varnith";
        prepare();
        const Tree before = TreeOf(elsewhere.Path());
        const auto use = [&] {
            Scan(documents.Path(), true);
            EXPECT_EQ(Texts(), "Varnith - Testix - Finished|.|3 file(s)|All,tif");
        };
        EXPECT_EQ(Start(use), 0);
        EXPECT_EQ(TreeOf(elsewhere.Path()), before);
    }
    EXPECT_EQ(desktop.messages, Lines());
}

using Raiser = std::function<void()>;

template <class... Exceptions>
std::vector<Raiser> Raisers() {
    return {[] { throw Exceptions(); }...};
}

struct RaisingWindow : Window {
    explicit RaisingWindow(const Raiser& r) : raise(r) {}
    Raiser raise;
    void Event_Open() override { raise(); }
    void Event_Close() override { raise(); }
    bool Event_KeyDown(const std::string& /*key*/) override { return raise(), true; }
};

TEST_F(StartTest, LivesOnWithSomeExceptionsAndEndsWithAnyOtherInWhateverEvent) {
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
            EXPECT_EQ(Main().Title(), "Varnith - Testix") << "the window is still there";
        };
        EXPECT_EQ(Start(use), listed ? 0 : 1);
        EXPECT_EQ(desktop.messages, Lines(listed ? 0 : 4, "Unexpected error: std::exception"))
            << "each is handled where it is raised, and none goes on through what raised the event";
    }
}

TEST_F(StartTest, AnExceptionInAScanEndsTheScanOnly) {
    const auto use = [&] {
        disk.fails = [&](const std::string& path) {
            if (path == documents / "b.tif") throw NilObjectException();
            return false;
        };
        for (const bool subfolders : {true, false}) {
            Scan(documents.Path(), subfolders);
            EXPECT_EQ(Rows(), (Lines{"a.tif|1|.|tif"}));
            EXPECT_EQ(Texts(), "Processing Item: b.tif|.||");
        }
        Workers::WaitUntilQuiet();
        disk.fails = nullptr;
        Scan(documents.Path(), true);
        EXPECT_EQ(Texts(), "Varnith - Testix - Finished|.|3 file(s)|All,tif");
    };
    EXPECT_EQ(Start(use), 0);
    EXPECT_EQ(desktop.messages, Lines());
}

}  // namespace varnith::test
