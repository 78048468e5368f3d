#include <filesystem>
#include <memory>

#include <gtest/gtest.h>
#include <stdio.h>
#include <sys/fsuid.h>
#include <sys/stat.h>

#include "settings/Prefs.h"
#include "support/ProgramTest.h"

namespace varnith::test {

// What the sqlite3 shell, as another program, reads from a file.
std::string Shell(const std::string& path, const std::string& statement) {
    const std::string command = "sqlite3 '" + path + "' \"" + statement + "\"";
    const std::unique_ptr<FILE, int (*)(FILE*)> output(popen(command.c_str(), "r"), pclose);
    std::string text;
    for (int c; (c = fgetc(output.get())) != EOF;) text += static_cast<char>(c);
    return text;
}

constexpr auto AllRows = "select name, value from preferences order by name";

class PrefsTest : public testing::Test {
  protected:
    PrefsTest() { StartAnew(path); }
    ~PrefsTest() override { StartAnew(""); }

    // A new run of the program.
    static void StartAnew(const std::string& settings_path) {
        Prefs::db = nullptr;
        Prefs::file = settings_path.empty() ? nullptr : FolderItem::FromPath(settings_path);
    }

    TemporaryFolder folder;
    const std::string path = folder / "varnth";
};

TEST_F(PrefsTest, KeepsNamedTextsForTheNextRun) {
    const std::tuple<const char*, bool, const char*> written[] = {
        {"lastupdatecheck", true, "2008-06-24"},
        {"lastupdatecheck", false, "no prefix"},
        {"LastUpdateCheck", true, "another case"},
        {"it's", true, "O'Brien ''twice''"},
        {"\"; drop table preferences; --", true, "\"x\"\n\tx"},
        {"größe", false, "naïve \xFF"},
        {"empty", true, ""}};
    for (const auto& [name, prefix_wanted, value] : written) {
        EXPECT_EQ(Prefs::Value(name, prefix_wanted, "default"), "default") << name;
        for (const char* each : {"first", value}) Prefs::SetValue(name, prefix_wanted, each);
    }
    for (int run = 0; run < 2; ++run) {
        for (const auto& [name, prefix_wanted, value] : written)
            EXPECT_EQ(Prefs::Value(name, prefix_wanted, "default"), value) << name;
        StartAnew(path);
    }
    EXPECT_EQ(Shell(path, "select sql from sqlite_master"),
              "CREATE TABLE preferences (name varchar, value varchar)\n");
    EXPECT_EQ(Shell(path, "select count(*), count(distinct name) from preferences"), "7|7\n");
    EXPECT_EQ(Shell(path, "select name, value from preferences where value = '2008-06-24'"),
              "VRNTH-lastupdatecheck|2008-06-24\n");
}

TEST_F(PrefsTest, TakesAnExistingFileAsItStands) {
    Shell(path, "create table preferences (name, value); insert into preferences values ('', 'x'), ('n', 7)");
    EXPECT_EQ(Prefs::Value("n", false, "default"), "7");
    EXPECT_EQ(Prefs::Value("", false, "default"), "default") << "a row without a name counts as none";

    StartAnew(folder / "without table");
    Shell(folder / "without table", "create table other (x)");
    EXPECT_THROW(Prefs::Value("n", false, "default"), NilObjectException);
    EXPECT_THROW(Prefs::SetValue("n", false, "x"), NilObjectException);
}

TEST_F(PrefsTest, TriesAgainAtEachCallAsLongAsThereIsNoFileToUse) {
    // A value can't be kept: reads give the default, writes are lost.
    const auto expect_nothing_kept = [] {
        Prefs::SetValue("name", true, "value");
        EXPECT_EQ(Prefs::Value("name", true, "default"), "default");
    };
    StartAnew("");
    expect_nothing_kept();
    StartAnew(folder.File("garbage", std::string(5000, 'x')));
    expect_nothing_kept();
    EXPECT_EQ(BytesOf(folder / "garbage"), std::string(5000, 'x'));

    const std::string unwritable = folder.Folder("unwritable");
    ASSERT_EQ(chmod(folder.Path().c_str(), 0755) | chmod(unwritable.c_str(), 0555), 0);
    StartAnew(unwritable + "/varnth");
    const auto self = static_cast<uid_t>(setfsuid(65534));  // the permissions don't hold for root
    expect_nothing_kept();
    setfsuid(self);
    ASSERT_EQ(chmod(unwritable.c_str(), 0755), 0);
    Prefs::SetValue("name", true, "value");
    EXPECT_EQ(Prefs::Value("name", true, "default"), "value");
}

TEST_F(PrefsTest, LeavesALockedFileToWhoHasIt) {
    Prefs::SetValue("name", false, "old");
    Database other;
    other.SetDatabaseFile(Prefs::file);
    ASSERT_TRUE(other.Connect());

    other.SQLExecute("begin exclusive transaction");
    EXPECT_THROW(Prefs::Value("name", false, "default"), NilObjectException);
    EXPECT_THROW(Prefs::SetValue("name", false, "lost"), NilObjectException);
    other.SQLExecute("rollback");

    other.SQLExecute("begin transaction");
    other.SQLSelect(AllRows);
    Prefs::SetValue("name", false, "lost, while the other reads");
    other.SQLExecute("insert into preferences values ('other', 'written')");
    other.Commit();
    EXPECT_EQ(Shell(path, AllRows), "name|old\nother|written\n");
    Prefs::SetValue("name", false, "new");
    EXPECT_EQ(Shell(path, AllRows), "name|new\nother|written\n");
}

TEST_F(ProgramTest, NamesTheSettingsFileWhenItStarts) {
    ASSERT_EQ(setenv("HOME", home.Path().c_str(), 1), 0);
    const std::string configured = home / "some/where";
    const std::pair<std::string, std::string> cases[] = {
        {configured, configured}, {"", home / ".config"}, {"relative", home / ".config"}};
    for (const auto& [value, expected] : cases) {
        ASSERT_EQ(setenv("XDG_CONFIG_HOME", value.c_str(), 1), 0);
        Prefs::file = nullptr;
        Start([] {});
        EXPECT_EQ(Prefs::file->AbsolutePath(), expected + "/varnth");
        EXPECT_EQ(std::filesystem::status(expected).permissions(), std::filesystem::perms::owner_all);
        EXPECT_TRUE(Prefs::file->Exists()) << "the day of the check is noted down at once";
    }
}

}  // namespace varnith::test
