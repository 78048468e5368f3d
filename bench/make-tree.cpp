#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// Makes the files that the benchmarks count: small bilevel pages, eight pixels wide and one high, in both
// byte orders. Writes them byte by byte instead of by libtiff, since some tables need a million.
namespace {

namespace fs = std::filesystem;

constexpr int MostPages = 8;

enum class Order { LittleEndian, BigEndian };

template <class T>
void Append(std::string& bytes, T value, Order order) {
    auto raw = std::bit_cast<std::array<char, sizeof(T)>>(value);
    const bool little = std::endian::native == std::endian::little;
    if (little != (order == Order::LittleEndian)) std::reverse(raw.begin(), raw.end());
    bytes.append(raw.data(), raw.size());
}

// The tags of a bilevel image (TIFF 6.0, section 3) that is marked as one page of several.
struct Tag {
    std::uint16_t number;
    std::uint16_t type;
    std::uint32_t value;
};
constexpr std::uint16_t Short = 3;
constexpr std::uint16_t Long = 4;
constexpr std::uint16_t StripOffsets = 273;
constexpr Tag Tags[] = {
    {254, Long, 2},  {256, Short, 8},         {257, Short, 1}, {258, Short, 1}, {259, Short, 1},
    {262, Short, 1}, {StripOffsets, Long, 0}, {278, Short, 1}, {279, Long, 1},
};
constexpr std::uint32_t FirstDirectory = 10;

void AppendTag(std::string& bytes, const Tag& tag, std::uint32_t value, Order order) {
    Append(bytes, tag.number, order);
    Append(bytes, tag.type, order);
    Append<std::uint32_t>(bytes, 1, order);
    if (tag.type == Long) {
        Append(bytes, value, order);
    } else {
        Append(bytes, static_cast<std::uint16_t>(value), order);
        Append<std::uint16_t>(bytes, 0, order);
    }
}

// Each page is one byte of image data, a padding byte, its directory and the offset of the next page's
// directory. In an intact file the last offset is 0.
std::string TiffBytes(int pages, Order order, std::uint32_t last_link = 0) {
    std::string bytes = order == Order::LittleEndian ? "II" : "MM";
    Append<std::uint16_t>(bytes, 42, order);
    for (int page = 0; page < pages; ++page) {
        const auto data = static_cast<std::uint32_t>(bytes.size()) + 4;
        Append<std::uint32_t>(bytes, data + 2, order);
        bytes.append({'\x55', '\0'});
        Append<std::uint16_t>(bytes, std::size(Tags), order);
        for (const Tag& tag : Tags)
            AppendTag(bytes, tag, tag.number == StripOffsets ? data : tag.value, order);
    }
    Append<std::uint32_t>(bytes, last_link, order);
    return bytes;
}

// A damaged file. `way` selects the damage.
std::string DamagedBytes(int way, int pages, Order order) {
    switch (way % 5) {
        case 0: {  // cut off in the last directory
            std::string bytes = TiffBytes(pages, order);
            bytes.resize(bytes.size() - 10);
            return bytes;
        }
        case 1:  // the chain leads past the end of the file
            return TiffBytes(pages, order, 1 << 30);
        case 2:  // the chain leads back to its start
            return TiffBytes(pages, order, FirstDirectory);
        case 3:  // no TIFF file at all
            return std::string(512, '\x7f');
        default:
            return "";
    }
}

void Write(const fs::path& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.exceptions(std::ios::badbit | std::ios::failbit);
    file << bytes << std::flush;
}

fs::path BoxIn(const fs::path& tree, int number) {
    fs::path box = tree / ("box " + std::to_string(number));
    fs::create_directories(box);
    return box;
}

fs::path ScanIn(const fs::path& box, int number) {
    return box / ("scan " + std::to_string(number) + ".tif");
}

// Makes files of 1 to 8 pages in folders of `each` files. One in `one_in` files is damaged; none if that is
// 0.
void MakeBoxes(const fs::path& tree, int folders, int each, int one_in) {
    for (int folder = 0; folder < folders; ++folder) {
        const fs::path box = BoxIn(tree, folder);
        for (int i = 0; i < each; ++i) {
            const int number = folder * each + i;
            const int pages = 1 + number % MostPages;
            const Order order = number % 2 == 0 ? Order::LittleEndian : Order::BigEndian;
            const bool damaged = one_in > 0 && number % one_in == one_in - 1;
            Write(ScanIn(box, i),
                  damaged ? DamagedBytes(number / one_in, pages, order) : TiffBytes(pages, order));
        }
    }
}

// The same tree, as hard links to some hundred files, which saves time and disk space. Each of these files
// gets fewer links than a file system allows, 65,000 on ext4.
void MakeLinks(const fs::path& tree, int folders, int each) {
    constexpr int Sources = 400;
    const fs::path hidden = tree / ".sources";
    fs::create_directories(hidden);
    for (int i = 0; i < Sources; ++i)
        Write(ScanIn(hidden, i),
              TiffBytes(1 + i % MostPages, i % 2 == 0 ? Order::LittleEndian : Order::BigEndian));
    for (int folder = 0; folder < folders; ++folder) {
        const fs::path box = BoxIn(tree, folder);
        for (int i = 0; i < each; ++i)
            fs::create_hard_link(ScanIn(hidden, (folder * each + i) % Sources), ScanIn(box, i));
    }
}

// Makes symbolic links, all to one file.
void MakeAliases(const fs::path& tree, const fs::path& target, int links) {
    fs::create_directories(tree);
    for (int i = 0; i < links; ++i) fs::create_symlink(fs::absolute(target), ScanIn(tree, i));
}

void Check(bool done) {
    if (!done) throw std::system_error(errno, std::generic_category());
}

// Makes folders nested in each other, each with a file. The path of the deepest is too long for a system
// call, so each folder is made relative to its parent.
void MakeNest(const fs::path& tree, int depth) {
    fs::create_directories(tree);
    const std::string bytes = TiffBytes(1, Order::LittleEndian);
    int folder = open(tree.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int level = 0; level < depth; ++level) {
        Check(mkdirat(folder, "d", S_IRWXU) == 0);
        const int below = openat(folder, "d", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        Check(below >= 0);
        close(folder);
        folder = below;
        const int file = openat(folder, "a.tif", O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
        Check(write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
        close(file);
    }
    close(folder);
}

void Make(const std::string& what, const fs::path& place, const std::function<std::string(int)>& argument) {
    const auto number = [&](int which) { return std::atoi(argument(which).c_str()); };
    if (what == "boxes") return MakeBoxes(place, number(0), number(1), number(2));
    if (what == "links") return MakeLinks(place, number(0), number(1));
    if (what == "aliases") return MakeAliases(place, argument(0), number(1));
    if (what == "nest") return MakeNest(place, number(0));
    if (what == "file") return Write(place, TiffBytes(number(0), Order::LittleEndian));
    if (what == "ring") return Write(place, TiffBytes(number(0), Order::LittleEndian, FirstDirectory));
    throw std::invalid_argument("this is none of boxes, links, aliases, nest, file and ring: " + what);
}

}  // namespace

int main(int argc, char** argv) try {
    Make(argc > 1 ? argv[1] : "", argc > 2 ? argv[2] : "", [&](int which) -> std::string {
        if (which + 3 >= argc) throw std::invalid_argument("a number is missing");
        return argv[which + 3];
    });
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr,
                 "make-tree: %s\n"
                 "usage: make-tree boxes TREE FOLDERS FILES-EACH DAMAGED-ONE-IN\n"
                 "       make-tree links TREE FOLDERS FILES-EACH\n"
                 "       make-tree aliases TREE FILE LINKS\n"
                 "       make-tree nest TREE DEPTH\n"
                 "       make-tree file|ring FILE PAGES\n",
                 error.what());
    return 1;
}
