#include "platform/database/Database.h"

#include <algorithm>
#include <string_view>

#include <sqlite3.h>

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

}  // namespace

void Database::Closer::operator()(sqlite3* handle) const {
    sqlite3_close(handle);
}

void Database::Closer::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

Database::Database() = default;
Database::~Database() = default;

bool Database::Connect() {
    return Open(SQLITE_OPEN_READWRITE);
}

bool Database::CreateDatabaseFile() {
    return Open(SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
}

bool Database::Open(int flags) {
    insert_.reset();
    handle_.reset();
    if (!file_) return false;
    sqlite3* handle = nullptr;
    const int opened = sqlite3_open_v2(file_->AbsolutePath().c_str(), &handle, flags, nullptr);
    std::unique_ptr<sqlite3, Closer> opened_handle(handle);
    if (opened != SQLITE_OK) return false;
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 1, nullptr);
    // SQLite opens any file and reads it at the first statement, so whether it is a database shows only now.
    // One that someone else has locked is a database all the same.
    const int looked = sqlite3_exec(handle, "select count(*) from sqlite_master", nullptr, nullptr, nullptr);
    if (looked != SQLITE_OK && looked != SQLITE_BUSY) return false;
    handle_ = std::move(opened_handle);
    return true;
}

void Database::SQLExecute(const std::string& statement) {
    if (handle_) sqlite3_exec(handle_.get(), statement.c_str(), nullptr, nullptr, nullptr);
}

Ref<RecordSet> Database::SQLSelect(const std::string& statement) {
    if (!handle_) return nullptr;
    sqlite3_stmt* prepared = nullptr;
    sqlite3_prepare_v2(handle_.get(), statement.c_str(), -1, &prepared, nullptr);
    const std::unique_ptr<sqlite3_stmt, Closer> select(prepared);
    const int columns = sqlite3_column_count(prepared);
    if (columns == 0) return nullptr;

    auto records = MakeRef<RecordSet>();
    for (int i = 0; i < columns; ++i) records->AddColumn(sqlite3_column_name(prepared, i));
    int step;
    while ((step = sqlite3_step(prepared)) == SQLITE_ROW) {
        records->AddRow();
        for (int i = 0; i < columns; ++i) records->AddField(ColumnText(prepared, i));
    }
    if (step != SQLITE_DONE) return nullptr;
    records->MoveFirst();
    return records;
}

void Database::InsertRecord(const std::string& table, const DatabaseRecord& record) {
    if (!handle_) return;
    if (!IsPreparedFor(table, record)) PrepareInsert(table, record);
    if (!insert_) return;
    int place = 0;
    for (const auto& [name, value] : record.Columns())
        sqlite3_bind_text64(insert_.get(), ++place, value.data(), value.size(), SQLITE_STATIC, SQLITE_UTF8);
    sqlite3_step(insert_.get());
    sqlite3_reset(insert_.get());
    sqlite3_clear_bindings(insert_.get());
}

bool Database::IsPreparedFor(const std::string& table, const DatabaseRecord& record) const {
    return insert_ && table == insert_table_ &&
           std::equal(insert_columns_.begin(), insert_columns_.end(), record.Columns().begin(),
                      record.Columns().end(),
                      [](const std::string& name, const auto& column) { return name == column.first; });
}

void Database::PrepareInsert(const std::string& table, const DatabaseRecord& record) {
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
    sqlite3_prepare_v2(handle_.get(), text.c_str(), -1, &statement, nullptr);
    insert_.reset(statement);
}

void Database::Commit() {
    for (const char* statement : {"commit", "rollback"})
        if (handle_ && !sqlite3_get_autocommit(handle_.get())) SQLExecute(statement);
}

}  // namespace varnith
