#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>

// Makes the tree that the benchmark scans: 400 folders of 500 small TIFF files with 1 to 8 pages each,
// 900,000 pages in all. The files are written as bytes, which takes seconds where a library takes minutes.
namespace {

constexpr int Folders = 400;
constexpr int FilesPerFolder = 500;
constexpr int MostPages = 8;

enum class Order { LittleEndian, BigEndian };

template <class T>
void Append(std::string& bytes, T value, Order order) {
    auto raw = std::bit_cast<std::array<char, sizeof(T)>>(value);
    const bool little = std::endian::native == std::endian::little;
    if (little != (order == Order::LittleEndian)) std::reverse(raw.begin(), raw.end());
    bytes.append(raw.data(), raw.size());
}

// The tags of a bilevel image (TIFF 6.0, section 3), eight pixels wide and one high.
struct Tag {
    std::uint16_t number;
    std::uint16_t type;
    std::uint32_t value;
};
constexpr std::uint16_t Short = 3;
constexpr std::uint16_t Long = 4;
constexpr std::uint16_t StripOffsets = 273;
constexpr Tag tags[] = {
    {256, Short, 8},         {257, Short, 1}, {258, Short, 1}, {259, Short, 1}, {262, Short, 1},
    {StripOffsets, Long, 0}, {277, Short, 1}, {278, Short, 1}, {279, Long, 1},
};

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

// Each page is its one byte of image data, one to fill up, its directory, and the link to the next page's.
std::string TiffBytes(int pages, Order order) {
    std::string bytes = order == Order::LittleEndian ? "II" : "MM";
    Append<std::uint16_t>(bytes, 42, order);
    for (int page = 0; page < pages; ++page) {
        const auto data = static_cast<std::uint32_t>(bytes.size()) + 4;
        Append<std::uint32_t>(bytes, data + 2, order);
        bytes.append({'\x55', '\0'});
        Append<std::uint16_t>(bytes, std::size(tags), order);
        for (const Tag& tag : tags)
            AppendTag(bytes, tag, tag.number == StripOffsets ? data : tag.value, order);
    }
    Append<std::uint32_t>(bytes, 0, order);
    return bytes;
}

void MakeFolder(const std::filesystem::path& path, int number) {
    std::filesystem::create_directories(path);
    for (int i = 0; i < FilesPerFolder; ++i) {
        const int pages = 1 + (number * FilesPerFolder + i) % MostPages;
        const Order order = i % 2 == 0 ? Order::LittleEndian : Order::BigEndian;
        std::ofstream file(path / ("scan " + std::to_string(i) + ".tif"), std::ios::binary);
        file.exceptions(std::ios::badbit | std::ios::failbit);
        file << TiffBytes(pages, order) << std::flush;
    }
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 2) {
        std::fputs("usage: make-big-tree FOLDER\n", stderr);
        return 2;
    }
    for (int number = 0; number < Folders; ++number)
        MakeFolder(std::filesystem::path(argv[1]) / ("box " + std::to_string(number)), number);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "make-big-tree: %s\n", error.what());
    return 1;
}
