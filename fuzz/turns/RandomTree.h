#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Random.h"

namespace varnith::test {

// A row of the list: the texts of columns 1 to 4 with "|" between them, and the tag of column 0.
struct Row {
    std::string text;
    std::string tag;

    bool operator==(const Row&) const = default;
};
using Rows = std::vector<Row>;

// A random folder on the disk with TIFF files and others, and the rows that a scan of it gives. The rows
// follow from what was written and not from the program's code.
class RandomTree {
  public:
    // Writes the tree. A folder whose name ends in "unreadable" has files, but counts as empty here.
    RandomTree(Random& random, const std::filesystem::path& root);

    // The rows of a scan that reaches the tree by that path.
    Rows Recursive(const std::string& path) const;
    Rows Flat(const std::string& path) const;

  private:
    struct Entry {
        std::string name;
        bool is_folder;
        int pages;  // 0 if they can't be counted
        std::vector<Entry> below;
    };
    using Entries = std::vector<Entry>;

    static Entries Write(Random& random, const std::filesystem::path& folder, int depth);
    static Entry WriteEntry(Random& random, const std::filesystem::path& folder, int number, int depth);
    static void AddRows(const Entries& entries, const std::string& path, int& number, Rows& rows);

    Entries entries_;
};

}  // namespace varnith::test
