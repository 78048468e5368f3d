#include <filesystem>

#include "platform/system/Shell.h"
#include "settings/Prefs.h"
#include "support/ProgramTest.h"

namespace varnith::test {

// What another program reads from a file.
std::string Read(const std::string& path, const std::string& statement) {
    Shell shell;
    shell.Execute("sqlite3 '" + path + "' \"" + statement + "\"");
    return shell.Result();
}

class PrefsTest : public ProgramTest {
  protected:
    PrefsTest() { StartAnew(path); }
    ~PrefsTest() override { StartAnew(""); }

    // A new run of the program.
    static void StartAnew(const std::string& settings_path) {
        Prefs::db = nullptr;
        Prefs::file = settings_path.empty() ? nullptr : FolderItem::FromPath(settings_path);
    }
    // Reads give the default, writes are lost.
    static void ExpectNothingKept() {
        Prefs::SetValue("name", true, "value");
        EXPECT_EQ(Prefs::Value("name", true, "default"), "default");
    }

    const std::string path = home / "varnth";
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
    StartAnew(path);
    for (const auto& [name, prefix_wanted, value] : written)
        EXPECT_EQ(Prefs::Value(name, prefix_wanted, "default"), value) << name;
    EXPECT_EQ(Read(path,
                   "select sql from sqlite_master;"
                   "select count(*), count(distinct name) from preferences;"
                   "select name from preferences where value = '2008-06-24'"),
              "CREATE TABLE preferences (name varchar, value varchar)\n7|7\nVRNTH-lastupdatecheck\n");
}

TEST_F(PrefsTest, TakesAnExistingFileAsItStands) {
    Read(path, "create table preferences (name, value); insert into preferences values ('', 'x'), ('n', 7)");
    EXPECT_EQ(Prefs::Value("n", false, "default"), "7");
    EXPECT_EQ(Prefs::Value("", false, "default"), "default") << "a row without a name counts as none";
}

TEST_F(PrefsTest, TriesAgainAtEachCallAsLongAsThereIsNoFileToUse) {
    StartAnew("");
    ExpectNothingKept();
    StartAnew(home.File("garbage", std::string(5000, 'x')));
    ExpectNothingKept();
    EXPECT_EQ(BytesOf(home / "garbage"), std::string(5000, 'x'));
    StartAnew(home / "later/varnth");
    ExpectNothingKept();
    home.Folder("later");
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
    other.SQLSelect("select * from preferences");
    Prefs::SetValue("name", false, "lost, while the other reads");
    other.SQLExecute("insert into preferences values ('other', 'written')");
    other.Commit();
    EXPECT_EQ(Prefs::Value("name", false, "default"), "old");
    EXPECT_EQ(Prefs::Value("other", false, "default"), "written");
    Prefs::SetValue("name", false, "new");
    EXPECT_EQ(Prefs::Value("name", false, "default"), "new");
}

TEST_F(PrefsTest, LieInTheFolderOfTheUsersSettings) {
    const Environment home_folder("HOME", home.Path());
    const std::pair<std::string, std::string> cases[] = {
        {home / "some/where", home / "some/where"}, {"", home / ".config"}, {"relative", home / ".config"}};
    for (const auto& [value, expected] : cases) {
        const Environment configuration("XDG_CONFIG_HOME", value);
        Start([] {});
        EXPECT_EQ(Prefs::file->AbsolutePath(), expected + "/varnth");
        EXPECT_EQ(std::filesystem::status(expected).permissions(), std::filesystem::perms::owner_all);
        EXPECT_TRUE(Prefs::file->Exists()) << "the day of the check is noted down at once";
    }
}

}  // namespace varnith::test
