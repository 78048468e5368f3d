#include "settings/Prefs.h"

#include "platform/base/Text.h"

namespace varnith {

namespace {

// Escapes a text for use between single quotes in a statement.
std::string Quotable(const std::string& text) {
    return ReplaceAll(text, "'", "''");
}

std::string StoredName(const std::string& name, bool prefix_wanted) {
    return Quotable(prefix_wanted ? "VRNTH-" + name : name);
}

}  // namespace

Ref<FolderItem> Prefs::file;
std::unique_ptr<Database> Prefs::db;

void Prefs::OpenPreferences() {
    if (db || !file) return;
    db = std::make_unique<Database>();
    db->SetDatabaseFile(file);
    const bool exists = file->Exists();
    if (!(exists ? db->Connect() : db->CreateDatabaseFile()))
        db = nullptr;
    else if (!exists)
        db->SQLExecute("create table preferences (name varchar, value varchar)");
}

std::string Prefs::Value(const std::string& name, bool prefix_wanted, const std::string& missing) {
    OpenPreferences();
    if (!db) return missing;
    const Ref<RecordSet> found = db->SQLSelect("select name, value from preferences where name = '" +
                                               StoredName(name, prefix_wanted) + "'");
    const std::string found_name = found->Field("name");
    const std::string value = found->Field("value");
    found->Close();
    // The name is empty where no row was found. So a setting with an empty name always has its default.
    return found_name.empty() ? missing : value;
}

void Prefs::SetValue(const std::string& name, bool prefix_wanted, const std::string& value) {
    OpenPreferences();
    if (!db) return;
    const std::string stored_name = StoredName(name, prefix_wanted);
    const std::string stored_value = Quotable(value);
    const Ref<RecordSet> found =
        db->SQLSelect("select count(*) from preferences where name = '" + stored_name + "'");
    const std::string statement =
        WholeNumber(Val(found->IdxField(1))) == 0
            ? "insert into preferences (name, value) values ('" + stored_name + "','" + stored_value + "')"
            : "update preferences set value = '" + stored_value + "' where name = '" + stored_name + "'";
    found->Close();
    db->SQLExecute("begin transaction");
    db->SQLExecute(statement);
    db->Commit();
}

}  // namespace varnith
