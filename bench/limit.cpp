#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

// The limit that the program is measured against: one thread that walks a tree in order and of each .tif file
// does the least that counts its pages, which is open, pread along the chain of directories, and close.
// It trusts the files; nothing is drawn, kept or saved.
namespace {

class Pages {
  public:
    explicit Pages(int file) : file_(file) {}

    // TIFF 6.0, section 2: the header leads to the first directory, each directory to the next, the last to
    // 0. BigTIFF has wider counts, entries and links.
    std::int64_t Count() {
        const auto order = Value<std::uint16_t>(0);
        swapped_ = order == (std::endian::native == std::endian::little ? 0x4d4d : 0x4949);
        const bool big = Value<std::uint16_t>(2) == 43;
        std::int64_t pages = 0;
        for (std::uint64_t place = big ? Value<std::uint64_t>(8) : Value<std::uint32_t>(4); place != 0;
             ++pages)
            place = big ? Value<std::uint64_t>(place + 8 + 20 * Value<std::uint64_t>(place))
                        : Value<std::uint32_t>(place + 2 + 12 * Value<std::uint16_t>(place));
        return pages;
    }

  private:
    template <class T>
    T Value(std::uint64_t offset) {
        if (offset < start_ || offset + sizeof(T) > start_ + filled_) Fill(offset);
        std::array<unsigned char, sizeof(T)> bytes{};
        if (offset + sizeof(T) <= start_ + filled_) std::memcpy(&bytes, &window_[offset - start_], sizeof(T));
        if (swapped_) std::reverse(bytes.begin(), bytes.end());
        return std::bit_cast<T>(bytes);
    }

    void Fill(std::uint64_t offset) {
        start_ = offset;
        const ssize_t count = pread(file_, window_.data(), window_.size(), static_cast<off_t>(offset));
        filled_ = count < 0 ? 0 : static_cast<std::uint64_t>(count);
    }

    int file_;
    bool swapped_ = false;
    std::uint64_t start_ = 0;
    std::uint64_t filled_ = 0;
    std::array<unsigned char, 1024> window_;
};

struct Totals {
    std::int64_t files = 0;
    std::int64_t pages = 0;
};

void CountFile(const std::string& path, Totals& totals) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return;
    totals.pages += Pages(file).Count();
    ++totals.files;
    close(file);
}

void Walk(const std::string& folder, Totals& totals) {
    struct Entry {
        std::string name;
        bool is_folder;
    };
    std::vector<Entry> entries;
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(folder.c_str()), closedir);
    while (const dirent* entry = listing ? readdir(listing.get()) : nullptr)
        if (entry->d_name[0] != '.') entries.push_back({entry->d_name, entry->d_type == DT_DIR});
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.name < b.name; });
    for (const Entry& entry : entries) {
        const std::string path = folder + "/" + entry.name;
        if (entry.is_folder)
            Walk(path, totals);
        else if (path.ends_with(".tif"))
            CountFile(path, totals);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: limit FOLDER\n", stderr);
        return 2;
    }
    const auto start = std::chrono::steady_clock::now();
    Totals totals;
    Walk(argv[1], totals);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    std::printf("files %jd pages %jd seconds %.3f\n", static_cast<std::intmax_t>(totals.files),
                static_cast<std::intmax_t>(totals.pages), taken.count());
    return 0;
}
