#include "SavedTable.h"

#include <memory>
#include <utility>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "platform/threads/Scheduler.h"

namespace varnith::test {

namespace {
SavedTable* watching = nullptr;
}

struct SavedTable::Hooks {
    // Called by SQLite for each connection that is opened.
    static int Opened(sqlite3* connection, const char** /*error*/, const void* /*functions*/) {
        const char* const path = sqlite3_db_filename(connection, "main");
        const bool is_save = path && watching->path_ == path && Scheduler::Current().IsInThread();
        if (!is_save || watching->is_reading_) return SQLITE_OK;
        Save& save = watching->saves_.emplace_back();
        save.order = watching->list->Order();
        sqlite3_trace_v2(connection, SQLITE_TRACE_STMT, Begins, nullptr);
        sqlite3_update_hook(connection, Changes, &save);
        sqlite3_commit_hook(connection, Commits, &save);
        return SQLITE_OK;
    }
    static int Begins(unsigned /*kind*/, void* /*unused*/, void* /*statement*/, void* /*text*/) {
        watching->delay_();
        return 0;
    }
    static void Changes(void* to, int change, const char* /*database*/, const char* /*table*/,
                        sqlite3_int64 row_id) {
        if (change != SQLITE_INSERT) return;
        auto& rows = static_cast<Save*>(to)->rows;
        rows.push_back(watching->list->TextAt(rows.size()));
        EXPECT_EQ(row_id, std::ssize(rows)) << "the table was not empty";
    }
    // SQLite holds the exclusive lock by now, so the commit will not be refused.
    static int Commits(void* to) {
        ++static_cast<Save*>(to)->commits;
        return 0;
    }
};

SavedTable::SavedTable(std::string path, std::function<void()> delay)
    : path_(std::move(path)), delay_(std::move(delay)) {
    watching = this;
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(Hooks::Opened));
}

SavedTable::~SavedTable() {
    sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(Hooks::Opened));
    watching = nullptr;
}

Rows SavedTable::Read() const {
    sqlite3* opened = nullptr;
    is_reading_ = true;
    sqlite3_open_v2(path_.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    is_reading_ = false;
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> connection(opened, sqlite3_close);
    sqlite3_busy_timeout(opened, 60'000);
    Rows rows;
    const auto add = [](void* to, int /*columns*/, char** texts, char** /*names*/) {
        static_cast<Rows*>(to)->push_back({texts[0], texts[1]});
        return 0;
    };
    const int result = sqlite3_exec(
        opened,
        "select name||'|'||pagecount||'|'||filepath||'|'||filetype, rowid from preferences order by rowid",
        add, &rows, nullptr);
    EXPECT_EQ(result, SQLITE_OK) << sqlite3_errmsg(opened);
    return rows;
}

std::vector<std::string> SavedTable::Expected() const {
    std::vector<std::string> expected;
    for (const Save& save : saves_) {
        EXPECT_LE(save.commits, save.cut_short ? 1 : 2);
        if (save.commits == 1) expected.clear();
        if (save.commits == 2) expected = save.rows;
    }
    return expected;
}

// If the list was emptied or sorted since, the save may have ended with any number of rows.
void SavedTable::Kill() {
    for (Save& save : saves_)
        if (!save.finished && save.order == list->Order() && save.rows.size() < list->Count())
            save.cut_short = true;
}

std::pair<int, int> SavedTable::CutShort() const {
    std::pair<int, int> many;
    for (const Save& save : saves_) {
        many.first += save.cut_short;
        many.second += save.cut_short && save.commits > 0;
    }
    return many;
}

}  // namespace varnith::test
