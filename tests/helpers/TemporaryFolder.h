#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace varnith::test {

// A new folder, removed at the end with all that it holds.
class TemporaryFolder {
  public:
    explicit TemporaryFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path());
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    std::string Path() const { return path_.string(); }
    std::string operator/(const std::string& name) const { return path_.string() + "/" + name; }

    // Write a file and make a folder, along with its parents; return its path.
    std::string File(const std::string& name, const std::string& bytes = "") const;
    std::string Folder(const std::string& name) const;

  private:
    std::filesystem::path path_;
};

std::string WriteFile(const std::filesystem::path& path, const std::string& bytes);

std::string BytesOf(const std::string& path);

// All that lies below a folder, by path: "755 bytes" gives the permissions and content of a file, "700/" the
// permissions of a folder, "-> target" the target of a link.
using Tree = std::map<std::string, std::string>;
Tree TreeOf(const std::string& path);

// The bytes of a TIFF file with that many pages of one pixel, as libtiff writes it in a mode: "wl" is
// little-endian, "wb" big-endian, and an "8" after either makes it BigTIFF.
std::string TiffBytes(int pages, const std::string& mode = "wl");

}  // namespace varnith::test
