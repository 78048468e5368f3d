#include <filesystem>

#include <sqlite3.h>

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
    for (int start = 0; start < 2; ++start)
        EXPECT_EQ(Start([&] {
                      EXPECT_EQ(Texts(), "Varnith - Testix|||");
                      EXPECT_EQ(Rows(), Lines());
                      EXPECT_EQ(SavedRows(), saved);
                      if (start == 0) Scan(documents.Path(), true);
                      saved = {"a.tif|1|.|tif", "b.tif|1|.|tif", "c.tif|1|.|tif"};
                  }),
                  0);
    EXPECT_EQ(SavedRows(), saved);
}

TEST_F(StartTest, RunsWithoutAWordWhereTheDatabaseIsOfNoUse) {
    const TemporaryFolder elsewhere;
    const std::string path = elsewhere / "varnth";
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"no database", [&] { elsewhere.File("varnth", std::string(3000, 'x')); }},
        {"lacks its table", [&] { std::filesystem::copy_file(application / "varnth", path); }},
        {"a folder", [&] { elsewhere.Folder("varnth"); }},
        {"can't be made", [&] { std::filesystem::create_symlink("/nowhere/varnth", path); }},
        {"not writable, whoever asks", [&] { disk.executable = "/proc/Varnith"; }},
        {"application folder gone", [&] { disk.executable = elsewhere / "gone/Varnith"; }}};
    sqlite3* other = nullptr;
    sqlite3_open((application / "varnth").c_str(), &other);
    sqlite3_exec(other, "create table others (name)", nullptr, nullptr, nullptr);
    sqlite3_close(other);
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
    const auto listed =
        Throwers<FunctionNotFoundException, IllegalCastException, InvalidParentException, KeyChainException,
                 KeyNotFoundException, NilObjectException, NoOpenTransportException, OLEException,
                 OutOfBoundsException, OutOfMemoryException, RegExException, RegExSearchPatternException,
                 RegistryAccessErrorException, DerivedException, std::bad_alloc>();
    std::function<void()> thrower;
    const auto use = [&] {
        Main().AddMenuHandler("FileExport", [&] {
            thrower();
            return true;
        });
        App::Instance().Choose(Main().FileExport());
        EXPECT_EQ(Main().Title(), "Varnith - Testix") << "the window is still there";
    };
    for (std::size_t i = 0; i < listed.size(); ++i) {
        thrower = listed[i];
        EXPECT_EQ(Start(use), 0) << i;
    }
    EXPECT_EQ(desktop.messages, Lines());
    for (const auto& other : Throwers<RuntimeException, std::exception>()) {
        thrower = other;
        EXPECT_EQ(Start(use), 1);
    }
    EXPECT_EQ(desktop.messages, Lines(2, "Unexpected error: std::exception"));
}

TEST_F(StartTest, AnExceptionInAScanEndsTheScanOnly) {
    EXPECT_EQ(Start([&] {
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
              }),
              0);
    EXPECT_EQ(desktop.messages, Lines());
}

}  // namespace varnith::test
