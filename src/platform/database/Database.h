#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/base/Ref.h"
#include "platform/database/RecordSet.h"
#include "platform/files/FolderItem.h"

struct sqlite3;
struct sqlite3_stmt;

namespace varnith {

// A record to insert: column names and the text for each. Any text may go in.
class DatabaseRecord {
  public:
    void SetColumn(const std::string& name, const std::string& value) { columns_.emplace_back(name, value); }
    const std::vector<std::pair<std::string, std::string>>& Columns() const { return columns_; }

  private:
    std::vector<std::pair<std::string, std::string>> columns_;
};

// A handle of a SQLite file. It is bound to a file, then connected; dropping it closes the file and rolls
// back what was not committed. Statements report nothing: one that fails has no effect.
//
// A statement that finds the file locked waits up to 2 s for it, while the program's threads run on. A
// transaction rests on what the handle has seen of the file before it: if another handle has changed the file
// since, or if one of its statements has waited in vain, nothing of it is written. So programs that first
// clear a table and then fill it in a transaction don't mix their rows.
// Text between double quotes is a text value where no column has that name (https://sqlite.org/quirks.html,
// section 8), however the library was built.
class Database {
  public:
    Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    ~Database();

    // Binds the handle to a file, which need not exist. Nil leaves it unbound.
    void SetDatabaseFile(const Ref<FolderItem>& file) { file_ = file; }

    // Opens the file that the handle is bound to. False if it is missing, can't be opened or is no database.
    bool Connect();

    // Creates the file, empty, and connects. False if it can't be made.
    bool CreateDatabaseFile();

    // Runs one statement. Outside of a transaction it is committed at once. One that changes the file and has
    // waited in vain takes with it all that follows up to the next Commit.
    void SQLExecute(const std::string& statement);

    // Runs a select and returns all of its rows; nil if it fails.
    Ref<RecordSet> SQLSelect(const std::string& statement);

    // Inserts a record. Records with the same columns run on one prepared statement.
    void InsertRecord(const std::string& table, const DatabaseRecord& record);

    // Ends the transaction that is open; without one it does nothing. One that can't be committed is rolled
    // back, so it doesn't keep the file locked.
    void Commit();

  private:
    bool Open(int flags);
    bool IsInTransaction() const;
    std::uint32_t Version() const;
    // Each of these three runs a statement, whose result as SQLite gives it they take or return.
    void Write(const std::function<int()>& statement);
    int Select(const std::string& statement, Ref<RecordSet>& found);
    int Insert(const std::string& table, const DatabaseRecord& record);
    bool IsPreparedFor(const std::string& table, const DatabaseRecord& record) const;
    int PrepareInsert(const std::string& table, const DatabaseRecord& record);

    struct Closer {
        void operator()(sqlite3* handle) const;
        void operator()(sqlite3_stmt* statement) const;
    };

    Ref<FolderItem> file_;
    std::unique_ptr<sqlite3, Closer> handle_;
    std::unique_ptr<sqlite3_stmt, Closer> insert_;  // declared behind the handle, so it goes first
    std::string insert_table_;
    std::vector<std::string> insert_columns_;
    std::uint32_t seen_version_ = 0;
    bool is_lost_ = false;
};

}  // namespace varnith
