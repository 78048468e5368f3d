#include <filesystem>

#include "helpers/ProgramTest.h"
#include "platform/system/Shell.h"
#include "settings/Prefs.h"

namespace varnith::test {

// Each start is a run of the program. Its settings stay open after its end.
using PrefsTest = ProgramTest;

TEST_F(PrefsTest, KeepsNamedTextsForTheNextRun) {
    const std::tuple<const char*, bool, const char*> written[] = {{"name", true, "prefix"},
                                                                  {"name", false, "no prefix"},
                                                                  {"NAME", true, "another case"},
                                                                  {"it's", true, "O'Brien ''twice''"},
                                                                  {"größe\"; --", false, "\"naïve\"\n\xFF"},
                                                                  {"empty", true, ""}};
    Start([] {});
    for (const auto& [name, prefix_wanted, value] : written) {
        EXPECT_EQ(Prefs::Value(name, prefix_wanted, "default"), "default") << name;
        for (const char* each : {"first", value}) Prefs::SetValue(name, prefix_wanted, each);
    }
    Start([] {});
    for (const auto& [name, prefix_wanted, value] : written)
        EXPECT_EQ(Prefs::Value(name, prefix_wanted, "default"), value) << name;
    Shell other_program;
    other_program.Execute("sqlite3 '" + home / "settings/varnth" +
                          "' \"select sql from sqlite_master;"
                          "select count(*), count(distinct name) from preferences;"
                          "select name from preferences where value = 'prefix'\"");
    EXPECT_EQ(other_program.Result(),
              "CREATE TABLE preferences (name varchar, value varchar)\n7|7\nVRNTH-name\n")
        << "the seventh row is the day of the update check";
}

TEST_F(PrefsTest, TriesAgainAtEachCallAsLongAsThereIsNoFileToUse) {
    const auto expect_value = [](const char* value) {
        Prefs::SetValue("name", true, "kept");
        EXPECT_EQ(Prefs::Value("name", true, "default"), value);
    };
    const std::string no_database = home.File("settings/varnth", std::string(5000, 'x'));
    Start([] {});
    expect_value("default");
    EXPECT_EQ(BytesOf(no_database), std::string(5000, 'x'));
    std::filesystem::remove_all(home / "settings");
    expect_value("default");
    home.Folder("settings");
    expect_value("kept");
}

TEST_F(PrefsTest, WaitsForALockedFileAndLeavesItToWhoKeepsIt) {
    Start([] {});
    Prefs::SetValue("name", false, "old");
    Database other;
    other.SetDatabaseFile(Prefs::file);
    ASSERT_TRUE(other.Connect());

    other.SQLExecute("begin exclusive transaction");
    EXPECT_THROW(Prefs::SetValue("name", false, "lost"), NilObjectException);
    const auto end_of_the_lock = MakeRef<Beside>([&] { other.SQLExecute("rollback"); });
    EXPECT_EQ(Prefs::Value("name", false, "default"), "old");

    other.SQLExecute("begin transaction");
    other.SQLSelect("select * from preferences");
    Prefs::SetValue("name", false, "lost, while the other reads");
    other.SQLExecute("insert into preferences values ('other', 'written')");
    other.Commit();
    for (const auto& [name, value] : {std::pair("name", "old"), {"other", "written"}}) {
        EXPECT_EQ(Prefs::Value(name, false, "default"), value);
        Prefs::SetValue(name, false, "new");
        EXPECT_EQ(Prefs::Value(name, false, "default"), "new");
    }
}

TEST_F(PrefsTest, LieInTheFolderOfTheUsersSettings) {
    const Environment home_folder("HOME", home.Path());
    for (const auto& [value, folder] : {std::pair(home / "some/where", home / "some/where"),
                                        {"", home / ".config"},
                                        {"relative", home / ".config"}}) {
        const Environment configuration("XDG_CONFIG_HOME", value);
        Start([] {});
        EXPECT_TRUE(std::filesystem::exists(folder + "/varnth")) << "the day of the check is saved at once";
        EXPECT_EQ(std::filesystem::status(folder).permissions(), std::filesystem::perms::owner_all);
    }
}

}  // namespace varnith::test
