#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace varnith::test {

// A fresh folder, removed with all that it holds at the end.
class TemporaryFolder {
  public:
    explicit TemporaryFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path());
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    std::string Path() const { return path_.string(); }
    std::string operator/(const std::string& name) const { return path_.string() + "/" + name; }

    // Writes a file, and makes a folder, with those above it; return its path.
    std::string File(const std::string& name, const std::string& bytes = "") const;
    std::string Folder(const std::string& name) const;

  private:
    std::filesystem::path path_;
};

std::string WriteFile(const std::filesystem::path& path, const std::string& bytes);

std::string BytesOf(const std::string& path);

// All that lies below a folder, by path: what it holds of a file, behind its permissions as in "755 bytes",
// the permissions of a folder as in "700/", and what a link leads to as in "-> target".
using Tree = std::map<std::string, std::string>;
Tree TreeOf(const std::string& path);

// The bytes of a TIFF file with that many pages of one pixel, as libtiff writes it: "wl" little-endian, "wb"
// big-endian, with an "8" behind it BigTIFF.
std::string TiffBytes(int pages, const std::string& mode = "wl");

}  // namespace varnith::test
