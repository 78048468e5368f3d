#pragma once

#include <atomic>
#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "RandomTree.h"

namespace varnith::test {

// What the scan thread has done with the table of saved rows over one connection.
struct Save {
    std::vector<std::string> rows;  // as the list had them when they were inserted
    std::atomic<int> commits = 0;   // the first is that of the delete, the second that of the rows
    int order = 0;                  // of the list, at the start
    bool cut_short = false;         // killed before the last row
    bool finished = false;
};

// The list whose rows are saved.
class WatchedList {
  public:
    virtual ~WatchedList() = default;
    virtual std::size_t Count() const = 0;
    virtual std::string TextAt(std::size_t row) const = 0;
    // Changes when the list is emptied or sorted.
    virtual int Order() const = 0;
};

// Watches the saves by SQLite's own hooks. SQLite calls them in the thread that runs the statement, which is
// a worker for all but the inserts.
class SavedTable {
  public:
    // `delay` is called before each statement of a save.
    SavedTable(std::string path, std::function<void()> delay);
    SavedTable(const SavedTable&) = delete;
    SavedTable& operator=(const SavedTable&) = delete;
    ~SavedTable();

    // What the table has now.
    Rows Read() const;
    // What it must have once all statements have ended: the rows of the last save that has committed any, or
    // none if a later one has committed its delete only.
    std::vector<std::string> Expected() const;

    std::size_t Saves() const { return saves_.size(); }
    // The newest save. REQUIRES: there is one.
    Save& Last() { return saves_.back(); }
    // To be called when the thread that saves is going to be killed.
    void Kill();
    // How many saves were killed before their last row, and how many of these had committed their delete.
    std::pair<int, int> CutShort() const;

    const WatchedList* list = nullptr;

  private:
    struct Hooks;

    const std::string path_;
    const std::function<void()> delay_;
    std::deque<Save> saves_;  // in the order of their connections
    mutable bool is_reading_ = false;
};

}  // namespace varnith::test
