#include "platform/database/Database.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

#include <sqlite3.h>

#include "platform/base/Trace.h"
#include "platform/threads/Scheduler.h"
#include "platform/threads/Waiting.h"
#include "platform/threads/Workers.h"

namespace varnith {

namespace {

std::string Quoted(const std::string& name) {
    std::string quoted = "\"";
    for (const char c : name) quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + '"';
}

std::string_view ColumnText(sqlite3_stmt* statement, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return {text ? text : "", static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

// Runs the statements of all connections, one after the other: if that of a killed Thread could be overtaken,
// its late delete would remove the rows of the next save.
Workers& Worker() {
    static Workers worker(1, 1);
    return worker;
}

// Repeats an attempt while another connection has the file locked, for 2 s at most. SQLite's own busy handler
// would block the program's threads, and a thread can't be killed within SQLite. `tried` and `on` tell the
// attempt in the trace.
template <class Attempt>
int Patiently(sqlite3* handle, std::string_view tried, std::string_view on, const Attempt& attempt) {
    int result = attempt();
    if (result == SQLITE_BUSY) {
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(2);
        while (result == SQLITE_BUSY && std::chrono::steady_clock::now() < limit) {
            WaitBriefly(-1, false);
            Yield();
            result = attempt();
        }
    }
    if (result != SQLITE_OK && result != SQLITE_DONE) TraceFailure(tried, on, sqlite3_errmsg(handle));
    return result;
}

}  // namespace

// The open file. The worker that runs a statement shares it, so that a Thread that is killed meanwhile
// needn't wait for the statement.
struct Database::Connection {
    struct Closer {
        void operator()(sqlite3* opened) const { sqlite3_close(opened); }
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    std::unique_ptr<sqlite3, Closer> handle;
    std::unique_ptr<sqlite3_stmt, Closer> insert;  // after handle, so it is destroyed before it
};

Database::Database() = default;
Database::~Database() = default;

bool Database::Connect() {
    return Open(SQLITE_OPEN_READWRITE);
}

bool Database::CreateDatabaseFile() {
    return Open(SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
}

bool Database::Open(int flags) {
    connection_.reset();
    if (!file_) return false;
    sqlite3* handle = nullptr;
    const std::string path = file_->AbsolutePath();
    // A worker may run a statement (https://sqlite.org/threadsafe.html).
    const int opened = sqlite3_open_v2(path.c_str(), &handle, flags | SQLITE_OPEN_FULLMUTEX, nullptr);
    auto connection = std::make_shared<Connection>();
    connection->handle.reset(handle);
    if (opened != SQLITE_OK) {
        TraceFailure("open the database", path, sqlite3_errmsg(handle));
        return false;
    }
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 1, nullptr);
    // sqlite3_open_v2 doesn't read the file. Only the first statement shows whether it is a database. A
    // locked one counts as a database.
    const int looked = sqlite3_exec(handle, "select count(*) from sqlite_master", nullptr, nullptr, nullptr);
    if (looked != SQLITE_OK && looked != SQLITE_BUSY) {
        TraceFailure("read the database", path, sqlite3_errmsg(handle));
        return false;
    }
    connection_ = std::move(connection);
    is_lost_ = false;
    return true;
}

sqlite3* Database::Handle() const {
    return connection_->handle.get();
}

bool Database::IsInTransaction() const {
    return sqlite3_get_autocommit(Handle()) == 0;
}

// The version of the file's contents when this handle last read it. Each statement that locks the file
// updates it, and this call doesn't. So a change that another handle makes after a statement is never taken
// for seen (https://sqlite.org/c3ref/c_fcntl_begin_atomic_write.html, SQLITE_FCNTL_DATA_VERSION).
std::uint32_t Database::Version() const {
    std::uint32_t version = 0;
    sqlite3_file_control(Handle(), "main", SQLITE_FCNTL_DATA_VERSION, &version);
    return version;
}

template <class Statement>
void Database::Write(std::string_view tried, std::string_view on, const Statement& statement) {
    if (!connection_ || is_lost_) return;
    const bool has_begun = IsInTransaction();
    const int result = Patiently(Handle(), tried, on, statement);
    // After some errors, such as a full disk, SQLite has rolled the transaction back. What follows would be
    // committed row by row.
    const bool is_rolled_back =
        has_begun && !IsInTransaction() && result != SQLITE_OK && result != SQLITE_DONE;
    is_lost_ = result == SQLITE_BUSY || is_rolled_back;
    if (!has_begun) seen_version_ = Version();
    const bool held_lock = std::exchange(holds_lock_, IsInTransaction() && has_begun);
    // The lock that the first change in a transaction takes keeps others from committing until its end.
    if (!IsInTransaction() || (held_lock && !is_lost_)) return;
    if (!is_lost_ && Version() != seen_version_) {
        is_lost_ = true;
        TraceFailure("save to the database", sqlite3_db_filename(Handle(), "main"),
                     "someone else has changed it since it was read");
    }
    // Roll back now and not in Commit, so that a lost transaction keeps no lock.
    if (is_lost_ && sqlite3_exec(Handle(), "rollback", nullptr, nullptr, nullptr) != SQLITE_OK)
        TraceFailure("roll back the changes of", sqlite3_db_filename(Handle(), "main"),
                     sqlite3_errmsg(Handle()));
}

void Database::SQLExecute(const std::string& statement) {
    Write("run the statement", statement, [&] { return Execute(statement); });
}

// In a Thread a worker runs the statement: to delete a million rows, or to write a commit to a slow disk,
// takes long enough to be felt in the window. An event handler can't wait while the window goes on.
int Database::Execute(const std::string& statement) {
    const auto execute = [connection = connection_, statement] {
        return sqlite3_exec(connection->handle.get(), statement.c_str(), nullptr, nullptr, nullptr);
    };
    if (!Scheduler::Current().IsInThread()) return execute();
    // At the end of the scope, also if the Thread is killed, a statement that has not begun is dropped.
    struct Waiting {
        ~Waiting() { answer.Drop(); }
        const Workers::Answer<int> answer;
    } waiting{Worker().Do(execute)};
    return Awaited(Worker(), waiting.answer);
}

Ref<RecordSet> Database::SQLSelect(const std::string& statement) {
    if (!connection_) return nullptr;
    Ref<RecordSet> records;
    Patiently(Handle(), "run the statement", statement, [&] { return Select(statement, records); });
    return records;
}

int Database::Select(const std::string& statement, Ref<RecordSet>& found) {
    sqlite3_stmt* prepared = nullptr;
    const int result = sqlite3_prepare_v2(Handle(), statement.c_str(), -1, &prepared, nullptr);
    const std::unique_ptr<sqlite3_stmt, Connection::Closer> select(prepared);
    const int columns = sqlite3_column_count(prepared);
    if (columns == 0) return result;

    auto records = MakeRef<RecordSet>();
    for (int i = 0; i < columns; ++i) records->AddColumn(sqlite3_column_name(prepared, i));
    int step;
    while ((step = sqlite3_step(prepared)) == SQLITE_ROW) {
        records->AddRow();
        for (int i = 0; i < columns; ++i) records->AddField(ColumnText(prepared, i));
    }
    if (step != SQLITE_DONE) return step;
    records->MoveFirst();
    found = std::move(records);
    return step;
}

void Database::InsertRecord(const std::string& table, const DatabaseRecord& record) {
    Write("insert a record into the table", table, [&] { return Insert(table, record); });
}

int Database::Insert(const std::string& table, const DatabaseRecord& record) {
    const int prepared = IsPreparedFor(table, record) ? SQLITE_OK : PrepareInsert(table, record);
    if (!connection_->insert) return prepared;
    int place = 0;
    for (const auto& [name, value] : record.Columns())
        if (sqlite3_bind_text64(connection_->insert.get(), ++place, value.data(), value.size(), SQLITE_STATIC,
                                SQLITE_UTF8) != SQLITE_OK)
            TraceFailure("store a value in the column", name, sqlite3_errmsg(Handle()));
    const int step = sqlite3_step(connection_->insert.get());
    sqlite3_reset(connection_->insert.get());
    sqlite3_clear_bindings(connection_->insert.get());
    return step;
}

bool Database::IsPreparedFor(const std::string& table, const DatabaseRecord& record) const {
    return connection_->insert && table == insert_table_ &&
           std::equal(insert_columns_.begin(), insert_columns_.end(), record.Columns().begin(),
                      record.Columns().end(),
                      [](const std::string& name, const auto& column) { return name == column.first; });
}

int Database::PrepareInsert(const std::string& table, const DatabaseRecord& record) {
    insert_table_ = table;
    insert_columns_.clear();
    std::string names;
    std::string values;
    for (const auto& [name, value] : record.Columns()) {
        names += (names.empty() ? "" : ",") + Quoted(name);
        values += values.empty() ? "?" : ",?";
        insert_columns_.push_back(name);
    }
    const std::string text = "insert into " + Quoted(table) + " (" + names + ") values (" + values + ")";
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v2(Handle(), text.c_str(), -1, &statement, nullptr);
    connection_->insert.reset(statement);
    return result;
}

void Database::Commit() {
    for (const char* statement : {"commit", "rollback"})
        if (connection_ && IsInTransaction()) SQLExecute(statement);
    is_lost_ = false;
}

}  // namespace varnith
