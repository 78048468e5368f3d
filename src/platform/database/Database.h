#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/base/Ref.h"
#include "platform/database/RecordSet.h"
#include "platform/files/FolderItem.h"

struct sqlite3;

namespace varnith {

// A record to insert: the names of its columns and a text for each, which may contain any bytes.
class DatabaseRecord {
  public:
    DatabaseRecord() { columns_.reserve(UsualColumns); }

    void SetColumn(const std::string& name, std::string value) {
        columns_.emplace_back(name, std::move(value));
    }
    const std::vector<std::pair<std::string, std::string>>& Columns() const { return columns_; }

  private:
    static constexpr std::size_t UsualColumns = 4;

    std::vector<std::pair<std::string, std::string>> columns_;
};

// A connection to a SQLite file. First bind it to a file, then connect. The destructor closes the file and
// rolls back an open transaction. A statement that fails has no effect and is not reported.
//
// A statement that finds the file locked waits for up to 2 s, while the program's threads run. A transaction
// is lost, and nothing of it is written, if one of its statements has waited in vain, if SQLite rolls it back
// (https://sqlite.org/lang_transaction.html, section 3), or if another handle has changed the file since this
// handle read it before the transaction. So if two programs clear a table and then fill it in a transaction,
// their rows don't mix.
//
// Text in double quotes that is no column's name is a text value, whatever SQLite was built with
// (https://sqlite.org/quirks.html, section 8).
class Database {
  public:
    Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    ~Database();

    // Binds this to a file, which need not exist, for the next Connect or CreateDatabaseFile. Nil unbinds it.
    void SetDatabaseFile(const Ref<FolderItem>& file) { file_ = file; }

    // Opens the file. False if none is bound, or if it is missing, can't be opened or is no database.
    bool Connect();

    // Opens the file and creates an empty one if it is missing. False as above.
    bool CreateDatabaseFile();

    // Runs one statement. Outside of a transaction it is committed at once. If it has waited for the lock in
    // vain, it and all further changes up to the next Commit have no effect.
    // In a Thread it is a yield point: while the statement runs, the program goes on. If the Thread is killed
    // meanwhile, a statement that has begun still comes to its end, and the file is closed after it. The
    // statements of other Threads begin after that.
    void SQLExecute(const std::string& statement);

    // Runs a select and returns all its rows. Nil if it fails or if there is no connection.
    Ref<RecordSet> SQLSelect(const std::string& statement);

    // Inserts a record. A row of records with the same table and columns shares one prepared statement.
    void InsertRecord(const std::string& table, const DatabaseRecord& record);

    // Commits the open transaction, if there is one. If that fails it is rolled back, so that it keeps no
    // lock.
    void Commit();

  private:
    struct Connection;

    bool Open(int flags);
    sqlite3* Handle() const;
    bool IsInTransaction() const;
    std::uint32_t Version() const;
    // `statement`, Execute, Select and Insert run a statement and return SQLite's result code. `tried` and
    // `on` tell the statement in the trace.
    template <class Statement>
    void Write(std::string_view tried, std::string_view on, const Statement& statement);
    int Execute(const std::string& statement);
    int Select(const std::string& statement, Ref<RecordSet>& found);
    int Insert(const std::string& table, const DatabaseRecord& record);
    bool IsPreparedFor(const std::string& table, const DatabaseRecord& record) const;
    int PrepareInsert(const std::string& table, const DatabaseRecord& record);

    Ref<FolderItem> file_;
    std::shared_ptr<Connection> connection_;  // null if there is none
    std::string insert_table_;
    std::vector<std::string> insert_columns_;
    std::uint32_t seen_version_ = 0;
    bool holds_lock_ = false;  // for writing, since a statement of the open transaction
    bool is_lost_ = false;
};

}  // namespace varnith
