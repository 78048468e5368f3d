#include "RandomTree.h"

#include <map>

#include "helpers/TemporaryFolder.h"

namespace varnith::test {

namespace {

bool EndsIn(const std::string& name, const char* lower, const char* upper) {
    return name.ends_with(lower) || name.ends_with(upper);
}

bool IsHidden(const std::string& name) {
    return name.starts_with('.');
}

bool IsTif(const std::string& name) {
    return EndsIn(name, ".tif", ".TIF");
}

bool IsTiff(const std::string& name) {
    return EndsIn(name, ".tiff", ".TIFF");
}

Row RowOf(const std::string& name, int pages, const std::string& path, int number) {
    const std::string type = name.substr(name.rfind('.') + 1);
    return {name + "|" + std::to_string(pages) + "|" + path + "|" + type, std::to_string(number)};
}

const std::string& Tiff(int pages) {
    static std::map<int, std::string> all;
    std::string& bytes = all[pages];
    if (bytes.empty()) bytes = TiffBytes(pages);
    return bytes;
}

}  // namespace

RandomTree::RandomTree(Random& random, const std::filesystem::path& root)
    : entries_(Write(random, root, 0)) {}

// The names begin with rising numbers, so the order of writing is that of a listing. A dot sorts before them.
RandomTree::Entries RandomTree::Write(Random& random, const std::filesystem::path& folder, int depth) {
    std::filesystem::create_directories(folder);
    Entries entries;
    for (const char* hidden : {".a.tif", ".b.tiff"})
        if (random.OneIn(4)) {
            WriteFile(folder / hidden, Tiff(3));
            entries.push_back({hidden, false, 3, {}});
        }
    const int count = random.Below(depth == 0 ? 7 : 5);
    for (int number = 1; number <= count; ++number)
        entries.push_back(WriteEntry(random, folder, number, depth));
    return entries;
}

RandomTree::Entry RandomTree::WriteEntry(Random& random, const std::filesystem::path& folder, int number,
                                         int depth) {
    const std::string start = std::to_string(number);
    if (depth < 3 && random.OneIn(3)) {
        const char* const names[] = {"f", "f.tif", "f.tiff", " unreadable"};
        const std::string name = start + random.Of(names);
        Entries below = Write(random, folder / name, depth + 1);
        if (name.ends_with("unreadable")) below.clear();
        return {name, true, 0, below};
    }
    const char* const names[] = {".tif", ".tif", ".TIFF", ".TIF", " damaged.tif", ".txt"};
    const std::string name = start + random.Of(names);
    const int pages = IsTif(name) || IsTiff(name) ? random.Between(1, 3) : 0;
    const bool is_damaged = name.find("damaged") != name.npos;
    WriteFile(folder / name, pages == 0 || is_damaged ? "This was a page once." : Tiff(pages));
    return {name, false, is_damaged ? 0 : pages, {}};
}

Rows RandomTree::Recursive(const std::string& path) const {
    int number = 1;
    Rows rows;
    AddRows(entries_, path, number, rows);
    return rows;
}

void RandomTree::AddRows(const Entries& entries, const std::string& path, int& number, Rows& rows) {
    number = 1;
    int pages = 0;
    for (const Entry& entry : entries) {
        if (IsHidden(entry.name)) continue;
        if (entry.is_folder) AddRows(entry.below, path + "/" + entry.name, number, rows);
        if (entry.is_folder || !(IsTif(entry.name) || IsTiff(entry.name))) continue;
        if (entry.pages > 0) pages = entry.pages;
        rows.push_back(RowOf(entry.name, pages, path, number++));
    }
}

Rows RandomTree::Flat(const std::string& path) const {
    int number = 1;
    int pages = 0;
    Rows rows;
    for (const Entry& entry : entries_) {
        if (!IsTif(entry.name) && !(IsTiff(entry.name) && !IsHidden(entry.name))) continue;
        if (entry.pages > 0) pages = entry.pages;
        rows.push_back(RowOf(entry.name, pages, path, number++));
    }
    return rows;
}

}  // namespace varnith::test
