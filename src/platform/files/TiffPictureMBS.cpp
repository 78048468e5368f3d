#include "platform/files/TiffPictureMBS.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

#include <tiffio.h>

#include "platform/files/FileSystem.h"
#include "platform/files/ReadAhead.h"

namespace varnith {

namespace {

// A file as libtiff reads it: through a small window that is filled by one read at a time. The directories
// of a small file all lie in one window, and of a large one nothing but its directories is touched.
class WindowedFile {
  public:
    explicit WindowedFile(FileHandle file) : file_(std::move(file)) {}

    std::size_t Read(void* bytes, std::size_t size) {
        std::size_t done = 0;
        while (done < size) {
            if (!InWindow()) Fill();
            if (!InWindow()) break;
            const auto skipped = static_cast<std::size_t>(position_ - start_);
            const std::size_t count = std::min(size - done, filled_ - skipped);
            std::memcpy(static_cast<char*>(bytes) + done, window_.data() + skipped, count);
            position_ += count;
            done += count;
        }
        return done;
    }

    std::uint64_t Seek(std::uint64_t offset, int whence) {
        if (whence == SEEK_CUR)
            position_ += offset;
        else if (whence == SEEK_END)
            position_ = Size() + offset;
        else
            position_ = offset;
        return position_;
    }

    std::uint64_t Size() const {
        const auto status = FileSystem::Current().Status(file_);
        return status ? static_cast<std::uint64_t>(status->size) : 0;
    }

  private:
    bool InWindow() const { return position_ >= start_ && position_ - start_ < filled_; }

    void Fill() {
        start_ = position_;
        filled_ = FileSystem::Current().ReadAt(file_, window_.data(), window_.size(), start_);
    }

    FileHandle file_;
    std::uint64_t position_ = 0;
    std::uint64_t start_ = 0;
    std::size_t filled_ = 0;
    std::array<char, 1024> window_;
};

WindowedFile& FileOf(thandle_t handle) {
    return *static_cast<WindowedFile*>(handle);
}

tmsize_t ReadFile(thandle_t handle, void* bytes, tmsize_t size) {
    return static_cast<tmsize_t>(FileOf(handle).Read(bytes, static_cast<std::size_t>(size)));
}

tmsize_t WriteNothing(thandle_t, void*, tmsize_t) {
    return 0;
}

toff_t SeekFile(thandle_t handle, toff_t offset, int whence) {
    return FileOf(handle).Seek(offset, whence);
}

int KeepOpen(thandle_t) {
    return 0;
}

toff_t SizeOfFile(thandle_t handle) {
    return FileOf(handle).Size();
}

bool IsRegular(const FileSystem& disk, const FileHandle& file) {
    const auto status = disk.Status(file);
    return status && status->kind == FileKind::Regular;
}

// Damaged files are everyday work here, and what libtiff has to say about them concerns nobody.
void SilenceMessages() {
    [[maybe_unused]] static const bool silenced = [] {
        TIFFSetErrorHandler(nullptr);
        TIFFSetWarningHandler(nullptr);
        return true;
    }();
}

// "h" in the mode reads no directory at opening, and "m" keeps libtiff from mapping the file into memory,
// where a file that shrinks under the count would end the process.
std::optional<std::int32_t> CountImages(const std::string& path, bool is_regular, const char* mode) {
    SilenceMessages();
    const FileSystem& disk = FileSystem::Current();
    FileHandle file = disk.OpenForReading(path);
    // Asking costs a quarter of what the whole count of a small file does. An entry that was a regular file a
    // moment ago is taken at its word: what it may have become instead either can't be read at an offset or
    // holds no TIFF header.
    if (!file || !(is_regular || IsRegular(disk, file))) return std::nullopt;

    WindowedFile windowed(std::move(file));
    const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(
        TIFFClientOpen(path.c_str(), mode, &windowed, ReadFile, WriteNothing, SeekFile, KeepOpen, SizeOfFile,
                       nullptr, nullptr),
        TIFFClose);
    if (!tiff) return std::nullopt;
    const auto images = static_cast<std::uint64_t>(TIFFNumberOfDirectories(tiff.get()));
    const std::uint64_t limit = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(images, limit));
}

}  // namespace

std::optional<std::int32_t> CountImages(const std::string& path, bool is_regular) {
    return CountImages(path, is_regular, "rhm");
}

Ref<TiffPictureMBS> OpenAsTiffMBS(const Ref<FolderItem>& item, bool HeaderOnly) {
    const std::string path = item->AbsolutePath();
    const bool is_regular = item->ListedAsRegular();
    const auto count = !HeaderOnly     ? CountImages(path, is_regular, "rm")
                       : item->Ahead() ? item->Ahead()->Count(path, is_regular)
                                       : CountImages(path, is_regular);
    return count ? MakeRef<TiffPictureMBS>(*count) : nullptr;
}

}  // namespace varnith
