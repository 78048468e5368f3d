#include "helpers/TemporaryFolder.h"

#include <cstdint>
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>
#include <stdlib.h>
#include <tiffio.h>

namespace varnith::test {

TemporaryFolder::TemporaryFolder(const std::filesystem::path& parent) {
    std::string pattern = (parent / "varnith-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) ADD_FAILURE() << "no temporary folder " << pattern;
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::File(const std::string& name, const std::string& bytes) const {
    return WriteFile(path_ / name, bytes);
}

std::string TemporaryFolder::Folder(const std::string& name) const {
    std::filesystem::create_directories(path_ / name);
    return (path_ / name).string();
}

std::string WriteFile(const std::filesystem::path& path, const std::string& bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file.exceptions(std::ios::badbit | std::ios::failbit);
    file << bytes << std::flush;
    return path.string();
}

std::string BytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

Tree TreeOf(const std::string& path) {
    namespace fs = std::filesystem;
    Tree tree;
    for (const auto& entry : fs::recursive_directory_iterator(path)) {
        const fs::file_status status = entry.symlink_status();
        std::ostringstream shown;
        if (fs::is_symlink(status))
            shown << "-> " << fs::read_symlink(entry).string();
        else
            shown << std::oct << static_cast<int>(status.permissions())
                  << (fs::is_directory(status) ? "/" : " ");
        if (fs::is_regular_file(status)) shown << BytesOf(entry.path());
        tree[entry.path().lexically_relative(path)] = shown.str();
    }
    return tree;
}

std::string TiffBytes(int pages, const std::string& mode) {
    const TemporaryFolder folder;
    const std::string path = folder.File("pages");
    TIFF* const tiff = TIFFOpen(path.c_str(), mode.c_str());
    for (int page = 0; page < pages; ++page) {
        TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 1);
        TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 1);
        std::uint8_t pixel = 0;
        TIFFWriteScanline(tiff, &pixel, 0, 0);
        TIFFWriteDirectory(tiff);
    }
    TIFFClose(tiff);
    return BytesOf(path);
}

}  // namespace varnith::test
