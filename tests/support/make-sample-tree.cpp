#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/TiffFile.h"

// Makes a small tree of TIFF files below a folder, with what a scan meets in practice: nested folders, names
// in several scripts, both byte orders, BigTIFF, a damaged file, hidden ones and files of other kinds.
namespace {

struct Sample {
    const char* path;
    int pages;
    const char* mode = "wl";
};

constexpr Sample tiffs[] = {
    {"contracts/lease.tif", 12},
    {"contracts/lease, annex.tiff", 3, "wb"},
    {"contracts/signed/2023/Müller & Söhne.tif", 4},
    {"contracts/signed/2024/Καλημέρα.tif", 6, "wb"},
    {"contracts/signed/2024/договор.TIFF", 9},
    {"invoices/invoice 1.tif", 1},
    {"invoices/invoice 2.tif", 2},
    {"invoices/invoice 10.tif", 1, "wb"},
    {"maps/atlas.tif", 240, "wl8"},
    {"maps/O'Brien \"north\".tiff", 2, "wb8"},
    {"cover.TIF", 1},
    {".draft.tif", 5},
    {".cache/page.tif", 1},
};

struct Other {
    const char* path;
    const char* bytes;
};

constexpr Other others[] = {
    {"invoices/invoice 3, damaged.tif", "This was a page once."},
    {"invoices/invoice 4.pdf", "%PDF-1.4\n"},
    {"maps/legend.txt", "1 : 25 000\n"},
    {"read me.txt", "Scanned in spring.\n"},
};

void Write(const std::filesystem::path& path, const std::string& bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file.exceptions(std::ios::badbit | std::ios::failbit);
    file << bytes << std::flush;
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 2) {
        std::fputs("usage: make-sample-tree FOLDER\n", stderr);
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    for (const Sample& tiff : tiffs)
        Write(folder / tiff.path, varnith::test::TiffBytes(tiff.pages, tiff.mode));
    for (const Other& other : others) Write(folder / other.path, other.bytes);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "make-sample-tree: %s\n", error.what());
    return 1;
}
