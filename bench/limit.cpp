#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <unordered_set>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

// The lower bound ("the limit") for a scan: walks a tree and does for each .tif file the least that counts
// its pages, which is open, pread along the chain of directories, and close. Shows, keeps and saves nothing.
// Uses one thread unless told otherwise.
namespace {

class Pages {
  public:
    explicit Pages(int file) : file_(file) {}

    // TIFF 6.0, section 2: the header has the offset of the first directory, each directory that of the next,
    // the last one 0. BigTIFF has wider counts, entries and offsets. Returns nullopt if there is no such
    // header. If the chain breaks off, counts the pages before the break; if it returns to an earlier page,
    // counts each page once.
    std::optional<std::int64_t> Count() {
        const auto order = Value<std::uint16_t>(0);
        if (order != 0x4949 && order != 0x4d4d) return std::nullopt;
        swapped_ = order == (std::endian::native == std::endian::little ? 0x4d4d : 0x4949);
        const auto version = Value<std::uint16_t>(2);
        if (version != 42 && version != 43) return std::nullopt;
        big_ = version == 43;
        const auto first = big_ ? Value<std::uint64_t>(8) : Value<std::uint32_t>(4);
        if (!first) return std::nullopt;
        const auto pages = CountForward(*first);
        return pages ? *pages : CountOnce(*first);
    }

  private:
    // Counts a chain whose offsets only rise. Such a chain has no loop, so the visited offsets needn't be
    // kept. Returns nullopt if an offset leads back.
    std::optional<std::int64_t> CountForward(std::uint64_t place) {
        std::int64_t pages = 0;
        for (; place != 0; ++pages) {
            const auto next = NextOf(place);
            if (!next) return pages;
            if (*next != 0 && *next <= place) return std::nullopt;
            place = *next;
        }
        return pages;
    }

    std::int64_t CountOnce(std::uint64_t place) {
        std::unordered_set<std::uint64_t> seen;
        while (place != 0 && !seen.contains(place)) {
            const auto next = NextOf(place);
            if (!next) break;
            seen.insert(place);
            place = *next;
        }
        return static_cast<std::int64_t>(seen.size());
    }

    std::optional<std::uint64_t> NextOf(std::uint64_t place) {
        if (big_) {
            const auto entries = Value<std::uint64_t>(place);
            return entries ? Value<std::uint64_t>(place + 8 + 20 * *entries) : std::nullopt;
        }
        const auto entries = Value<std::uint16_t>(place);
        return entries ? Value<std::uint32_t>(place + 2 + std::uint64_t{12} * *entries) : std::nullopt;
    }

    template <class T>
    std::optional<std::uint64_t> Value(std::uint64_t offset) {
        if (!IsInWindow(offset, sizeof(T))) Fill(offset);
        if (!IsInWindow(offset, sizeof(T))) return std::nullopt;
        std::array<unsigned char, sizeof(T)> bytes{};
        std::memcpy(&bytes, &window_[offset - start_], sizeof(T));
        if (swapped_) std::reverse(bytes.begin(), bytes.end());
        return std::bit_cast<T>(bytes);
    }

    bool IsInWindow(std::uint64_t offset, std::size_t size) const {
        return offset >= start_ && filled_ >= size && offset - start_ <= filled_ - size;
    }

    void Fill(std::uint64_t offset) {
        start_ = offset;
        const ssize_t count = pread(file_, window_.data(), window_.size(), static_cast<off_t>(offset));
        filled_ = count < 0 ? 0 : static_cast<std::uint64_t>(count);
    }

    int file_;
    bool swapped_ = false;
    bool big_ = false;
    std::uint64_t start_ = 0;
    std::uint64_t filled_ = 0;
    std::array<unsigned char, 1024> window_;
};

struct Options {
    int threads = 1;
    std::size_t every = 1;  // walk only each Nth folder of the top folder
    bool list = false;      // print the count of each file that can be opened
    std::string folder;
};

struct Totals {
    std::int64_t files = 0;
    std::int64_t pages = 0;
};

void CountFile(const std::string& path, const Options& options, Totals& totals) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return;
    const auto pages = Pages(file).Count();
    totals.pages += pages.value_or(0);
    ++totals.files;
    close(file);
    if (options.list && pages) std::printf("%s\t%jd\n", path.c_str(), static_cast<std::intmax_t>(*pages));
}

// Counts the files of a folder and returns its subfolders.
std::vector<std::string> CountFolder(const std::string& folder, const Options& options, Totals& totals) {
    struct Entry {
        std::string name;
        bool is_folder;
    };
    std::vector<Entry> entries;
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(folder.c_str()), closedir);
    while (const dirent* entry = listing ? readdir(listing.get()) : nullptr)
        if (entry->d_name[0] != '.') entries.push_back({entry->d_name, entry->d_type == DT_DIR});
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.name < b.name; });
    std::vector<std::string> folders;
    for (const Entry& entry : entries) {
        std::string path = folder + "/" + entry.name;
        if (entry.is_folder)
            folders.push_back(std::move(path));
        else if (path.ends_with(".tif"))
            CountFile(path, options, totals);
    }
    return folders;
}

// Walks the waiting folders. All threads take them from one stack.
class Walk {
  public:
    Walk(std::vector<std::string> folders, const Options& options)
        : options_(options), waiting_(std::move(folders)) {}

    Totals Run() {
        std::vector<std::thread> helpers;
        for (int i = 1; i < options_.threads; ++i) helpers.emplace_back([this] { Work(); });
        Work();
        for (std::thread& helper : helpers) helper.join();
        return totals_;
    }

  private:
    void Work() {
        Totals totals;
        std::unique_lock lock(mutex_);
        while (true) {
            changed_.wait(lock, [this] { return !waiting_.empty() || busy_ == 0; });
            if (waiting_.empty()) break;
            const std::string folder = std::move(waiting_.back());
            waiting_.pop_back();
            ++busy_;
            lock.unlock();
            const std::vector<std::string> folders = CountFolder(folder, options_, totals);
            lock.lock();
            waiting_.insert(waiting_.end(), folders.rbegin(), folders.rend());
            --busy_;
            changed_.notify_all();
        }
        totals_.files += totals.files;
        totals_.pages += totals.pages;
    }

    const Options& options_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> waiting_;
    int busy_ = 0;
    Totals totals_;
};

Totals CountTree(const Options& options) {
    Totals totals;
    const std::vector<std::string> folders = CountFolder(options.folder, options, totals);
    std::vector<std::string> taken;
    for (std::size_t i = 0; i < folders.size(); i += options.every) taken.insert(taken.begin(), folders[i]);
    const Totals below = Walk(std::move(taken), options).Run();
    return {totals.files + below.files, totals.pages + below.pages};
}

double Seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

std::optional<Options> OptionsOf(int argc, char** argv) {
    Options options;
    for (int option; (option = getopt(argc, argv, "t:e:l")) != -1;) {
        if (option == 't') options.threads = std::atoi(optarg);
        if (option == 'e') options.every = static_cast<std::size_t>(std::atoi(optarg));
        if (option == 'l') options.list = true;
        if (option == '?') return std::nullopt;
    }
    if (optind != argc - 1 || options.threads < 1 || options.every < 1) return std::nullopt;
    options.folder = argv[optind];
    return options;
}

}  // namespace

int main(int argc, char** argv) {
    const auto options = OptionsOf(argc, argv);
    if (!options) {
        std::fputs("usage: limit [-t THREADS] [-e EVERY-SO-MANYTH-FOLDER] [-l] FOLDER\n", stderr);
        return 2;
    }
    const auto start = std::chrono::steady_clock::now();
    const Totals totals = CountTree(*options);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    if (!options->list)
        std::printf("files %jd pages %jd seconds %.4f processor %.4f\n",
                    static_cast<std::intmax_t>(totals.files), static_cast<std::intmax_t>(totals.pages),
                    taken.count(), Seconds(usage.ru_utime) + Seconds(usage.ru_stime));
    return 0;
}
