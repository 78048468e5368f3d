#pragma once

#include <memory>
#include <string>

#include "platform/base/Ref.h"
#include "platform/database/Database.h"
#include "platform/files/FolderItem.h"

namespace varnith {

// Named text values that are kept between runs, in a SQLite file. Names are exact: those that differ only in
// case are two. With `prefix_wanted` the name is stored with the program's prefix in front, so callers give
// the bare name. Nothing is reported: without a file that can be used, reads give the default and what is
// written is lost, and each call tries to open the file anew. A table that can't be read raises
// NilObjectException.
class Prefs {
  public:
    // The settings file, which need not exist. Nil until the application has opened.
    static Ref<FolderItem> file;
    // The open connection. Nil until the first read or write that succeeds in opening it; then it stays.
    static std::unique_ptr<Database> db;

    // Opens the file, and makes it with its table if it is missing. One that exists is taken as it stands.
    static void OpenPreferences();

    // The value of a name; the default if it was never written or is empty. An empty value is a value.
    // Names and values are any texts without a NUL.
    static std::string Value(const std::string& name, bool prefix_wanted, const std::string& missing);

    // Writes the value of a name over the one it had.
    static void SetValue(const std::string& name, bool prefix_wanted, const std::string& value);
};

}  // namespace varnith
