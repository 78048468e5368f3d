#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "RandomTree.h"
#include "SavedTable.h"
#include "app/MainWindow.h"

namespace varnith::test {

// A model of the main window's list. It knows which rows each scan and the filter may add, and in which
// order, and compares the list with that between the turns of the threads. A scan is known by the folder that
// it was given, which no other scan has.
class ShownRows : public WatchedList {
  public:
    explicit ShownRows(SavedTable& table) : table_(table) { table.list = this; }

    // The program is going to scan a folder, which gives these rows.
    void Begin(const std::string& folder, Rows rows, bool on_thread) {
        scans_[folder] = {.rows = std::move(rows), .on_thread = on_thread};
    }
    // The handler of a scan without subfolders has returned.
    void End(const std::string& folder);
    // The scan thread was killed.
    void Kill();

    // The filter is run for a type, empty for all, and has ended. `at_once` means that no thread had a turn
    // meanwhile.
    void BeginFilter(const std::string& type);
    void EndFilter(bool at_once);

    // The user clicks a heading.
    void Sort(std::int32_t column);

    // Whether the scan thread is scanning.
    bool IsRunning() const;

    // Compares the list. REQUIRES: called before each turn of the scan thread and before each user action.
    void Look();

    std::size_t Count() const override;
    std::string TextAt(std::size_t row) const override { return RowAt(row).text; }
    int Order() const override;

    Ref<MainWindow> window;  // nil before it opens
    int finished = 0;        // the scans with subfolders that have come to their end
    int filtered = 0;        // the filters that have found rows

  private:
    struct Scan {
        Rows rows;
        bool on_thread = false;
        std::size_t next = 0;  // the row that it adds next
        std::size_t lost = 0;  // how many rows it may have added that the filter has removed before a look
        bool has_begun = false;
        bool has_ended = false;

        bool Gives(const Row& row);
        bool IsWhole() const { return next + lost >= rows.size(); }
    };
    struct Filter {
        std::string type;
        std::vector<Rows> possible;
        std::size_t next = 0;
        bool has_cleared = false;

        bool Gives(const Row& row);
    };

    static bool IsRunningScan(const std::pair<const std::string, Scan>& scan);
    Row RowAt(std::size_t row) const;
    Rows SavedOf(const std::string& type) const;
    void SeeCleared();
    void SeeOvertaken();
    void SeeFinished();

    SavedTable& table_;
    std::map<std::string, Scan> scans_;
    std::optional<Filter> filter_;
    std::string address_;
    Rows shown_;
    std::int32_t clearings_ = 0;
    std::int32_t refreshes_ = 0;
    int sorts_ = 0;
};

}  // namespace varnith::test
