#include "support/TemporaryFolder.h"

#include <fstream>
#include <iterator>

#include <gtest/gtest.h>
#include <stdlib.h>

namespace varnith::test {

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "varnith-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) ADD_FAILURE() << "no temporary folder " << pattern;
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::File(const std::string& name, const std::string& bytes) const {
    const std::filesystem::path path = path_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path.string();
}

std::string TemporaryFolder::Folder(const std::string& name) const {
    std::filesystem::create_directories(path_ / name);
    return (path_ / name).string();
}

std::string BytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace varnith::test
