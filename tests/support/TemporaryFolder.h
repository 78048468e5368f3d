#pragma once

#include <filesystem>
#include <string>

namespace varnith::test {

// A fresh folder below the system's temporary one, removed with all that it holds at the end.
class TemporaryFolder {
  public:
    TemporaryFolder();
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

// The bytes of a file; fails the test if it can't be read.
std::string BytesOf(const std::string& path);

}  // namespace varnith::test
