#pragma once

#include <memory>
#include <string>

#include "platform/base/Ref.h"
#include "platform/database/Database.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// Named text values that are kept between runs, in an SQLite file. Names are case-sensitive. With
// `prefix_wanted` the program's prefix is put before the name. Names and values are texts without a NUL. If
// the file can't be opened, reads return the default and writes are lost, without an error; the next call
// tries to open it again. A table that can't be read raises NilObjectException.
class Prefs {
  public:
    // The settings file, which need not exist. Nil until App::Event_Open has set it.
    static Ref<FolderItem> file;
    // The open database. Nil until a read or a write has opened it; then it stays open.
    static std::unique_ptr<Database> db;

    // Opens the database if it isn't open. Creates the file and its table if the file is missing, and leaves
    // an existing file alone.
    static void OpenPreferences();

    // The value of a setting, or `missing` if it was never written. An empty value counts as written.
    static std::string Value(const std::string& name, bool prefix_wanted, const std::string& missing);

    // Sets the value of a setting.
    static void SetValue(const std::string& name, bool prefix_wanted, const std::string& value);
};

}  // namespace varnith
