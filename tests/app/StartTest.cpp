#include <filesystem>

#include "app/App.h"
#include "platform/base/Exceptions.h"
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
    const std::string path = elsewhere / "varnth";
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"no database", [&] { elsewhere.File("varnth", std::string(3000, 'x')); }},
        {"lacks its table", [&] { elsewhere.File("varnth", ""); }},
        {"a folder", [&] { elsewhere.Folder("varnth"); }},
        {"can't be made", [&] { std::filesystem::create_symlink("/nowhere/varnth", path); }},
        {"not writable, whoever asks", [&] { disk.executable = "/proc/Varnith"; }},
        {"application folder gone", [&] { disk.executable = elsewhere / "gone/Varnith"; }}};
    for (const auto& [name, prepare] : cases) {
        SCOPED_TRACE(name);
        std::filesystem::remove_all(path);
        disk.executable = elsewhere / "Varnith";
        prepare();
        const bool is_file = std::filesystem::is_regular_file(path);
        const std::string before = is_file ? BytesOf(path) : "";
        const auto use = [&] {
            Scan(documents.Path(), true);
            EXPECT_EQ(Texts(), "Varnith - Testix - Finished|.|3 file(s)|All,tif");
        };
        EXPECT_EQ(Start(use), 0);
        EXPECT_EQ(is_file ? BytesOf(path) : "", before);
    }
    EXPECT_EQ(desktop.messages, Lines());
}

template <class... Exceptions>
std::vector<std::function<void()>> Throwers() {
    return {[] { throw Exceptions(); }...};
}

TEST_F(StartTest, LivesOnWithSomeExceptionsAndEndsWithAnyOther) {
    struct DerivedException : NilObjectException {};
    auto throwers =
        Throwers<FunctionNotFoundException, IllegalCastException, InvalidParentException, KeyChainException,
                 KeyNotFoundException, NilObjectException, NoOpenTransportException, OLEException,
                 OutOfBoundsException, OutOfMemoryException, RegExException, RegExSearchPatternException,
                 RegistryAccessErrorException, DerivedException, std::bad_alloc, RuntimeException,
                 std::exception>();
    for (std::size_t i = 0; i < throwers.size(); ++i) {
        const bool listed = i < throwers.size() - 2;
        const auto use = [&] {
            Main().AddMenuHandler("FileExport", [&] {
                throwers[i]();
                return true;
            });
            App::Instance().Choose(Main().FileExport());
            EXPECT_EQ(Main().Title(), "Varnith - Testix") << "the window is still there";
        };
        EXPECT_EQ(Start(use), listed ? 0 : 1) << i;
        EXPECT_EQ(desktop.messages.empty(), listed) << i;
    }
    EXPECT_EQ(desktop.messages, Lines(2, "Unexpected error: std::exception"));
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
        disk.fails = nullptr;
        Scan(documents.Path(), true);
        EXPECT_EQ(Texts(), "Varnith - Testix - Finished|.|3 file(s)|All,tif");
    };
    EXPECT_EQ(Start(use), 0);
    EXPECT_EQ(desktop.messages, Lines());
}

}  // namespace varnith::test
