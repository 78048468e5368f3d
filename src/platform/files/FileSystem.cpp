#include "platform/files/FileSystem.h"

#include <array>
#include <string_view>

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/base/InForce.h"
#include "platform/base/Trace.h"
#include "platform/files/OpenFolder.h"
#include "platform/files/Place.h"

namespace varnith {

namespace {

FileKind KindOf(mode_t mode) {
    if (S_ISREG(mode)) return FileKind::Regular;
    if (S_ISDIR(mode)) return FileKind::Directory;
    if (S_ISLNK(mode)) return FileKind::Link;
    return FileKind::Other;
}

FileStatus ToStatus(const struct stat& status) {
    return {KindOf(status.st_mode), status.st_size, status.st_mode & 07777u, status.st_uid};
}

std::optional<FileStatus> StatusAt(const std::string& path, int flags) {
    const Place place(path);
    struct stat status;
    if (fstatat(place.Base(), place.Path(), &status, flags) == 0) return ToStatus(status);
    // Callers ask whether something exists, so a missing file is an answer and no failure.
    if (errno != ENOENT && errno != ENOTDIR) TraceErrno("look at", path);
    return std::nullopt;
}

FileKind KindOfEntry(int folder, const dirent64& entry) {
    switch (entry.d_type) {
        case DT_REG:
            return FileKind::Regular;
        case DT_DIR:
            return FileKind::Directory;
        case DT_LNK:
            return FileKind::Link;
        case DT_UNKNOWN: {
            struct stat status;
            if (fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0)
                return KindOf(status.st_mode);
            return FileKind::Other;
        }
        default:
            return FileKind::Other;
    }
}

// Appends the entries of one buffer that getdents64(2) has filled.
void AppendEntries(int folder, const char* piece, std::size_t size, std::vector<DirectoryEntry>& entries) {
    for (std::size_t place = 0; place < size;) {
        const auto* entry = reinterpret_cast<const dirent64*>(piece + place);
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") entries.push_back({std::string(name), KindOfEntry(folder, *entry)});
        place += entry->d_reclen;
    }
}

}  // namespace

FileDescriptor FileSystem::OpenForReading(const std::string& path) const {
    FileDescriptor file = Place(path).Open(O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!file) TraceErrno("open", path);
    return file;
}

FileDescriptor FileSystem::OpenForReading(const OpenFolder& folder, const std::string& name) const {
    const auto opened = folder.Descriptor();
    FileDescriptor file(
        openat(opened->Descriptor(), name.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    // A folder that can't be opened has left its own line.
    if (!file && *opened && IsTracing()) TraceErrno("open", folder.PathOf(name));
    return file;
}

FileDescriptor FileSystem::OpenFolderAt(const std::string& path) const {
    FileDescriptor folder = Place(path).Open(O_RDONLY | O_DIRECTORY);
    if (!folder) TraceErrno("open folder", path);
    return folder;
}

FileDescriptor FileSystem::OpenFolderBelow(const FileDescriptor& folder, const std::string& path) const {
    FileDescriptor below = Place(path, folder.Descriptor()).Open(O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!below && IsTracing()) TraceErrno("open folder", PathOf(folder) + "/" + path);
    return below;
}

std::size_t FileSystem::ReadAt(const FileDescriptor& file, void* bytes, std::size_t size,
                               std::uint64_t offset) const {
    if (offset > static_cast<std::uint64_t>(INT64_MAX)) return 0;
    ssize_t count;
    do count = pread(file.Descriptor(), bytes, size, static_cast<off_t>(offset));
    while (count < 0 && errno == EINTR);
    if (count < 0 && IsTracing()) TraceErrno("read", PathOf(file));
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

std::optional<FileStatus> FileSystem::Status(const FileDescriptor& file) const {
    struct stat status;
    if (fstat(file.Descriptor(), &status) == 0) return ToStatus(status);
    if (IsTracing()) TraceErrno("look at", PathOf(file));
    return std::nullopt;
}

std::optional<FileStatus> FileSystem::Status(const std::string& path) const {
    return StatusAt(path, 0);
}

std::optional<FileStatus> FileSystem::EntryStatus(const std::string& path) const {
    return StatusAt(path, AT_SYMLINK_NOFOLLOW);
}

std::string FileSystem::LinkTarget(const std::string& path) const {
    const Place place(path);
    std::string target(PATH_MAX, '\0');
    const ssize_t length = readlinkat(place.Base(), place.Path(), target.data(), target.size());
    // EINVAL says that it is no link.
    if (length < 0 && errno != EINVAL && errno != ENOENT) TraceErrno("read link", path);
    target.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return target;
}

// Uses the system call directly, because fdopendir(3) would take over the descriptor that the folder owns.
bool FileSystem::List(const OpenFolder& folder, std::vector<DirectoryEntry>& entries) const {
    alignas(dirent64) std::array<char, 32 << 10> piece;
    const auto opened = folder.Descriptor();
    const int descriptor = opened->Descriptor();
    lseek(descriptor, 0, SEEK_SET);  // an earlier listing leaves the offset at the end
    for (;;) {
        const ssize_t size = getdents64(descriptor, piece.data(), piece.size());
        if (size < 0 && *opened && IsTracing()) TraceErrno("list", folder.Path());
        if (size <= 0) return size == 0;
        AppendEntries(descriptor, piece.data(), static_cast<std::size_t>(size), entries);
    }
}

std::vector<DirectoryEntry> FileSystem::Entries(const OpenFolder& folder) const {
    std::vector<DirectoryEntry> entries;
    List(folder, entries);
    return entries;
}

std::vector<DirectoryEntry> FileSystem::Entries(const std::string& path) const {
    return Entries(OpenFolder(path));
}

std::string FileSystem::Contents(const FileDescriptor& file) const {
    const auto status = file ? Status(file) : std::nullopt;
    if (!status || status->kind != FileKind::Regular) return {};
    std::string contents;
    std::array<char, 4096> piece;
    while (contents.size() < MostContents) {
        const std::size_t count = ReadAt(file, piece.data(), piece.size(), contents.size());
        if (count == 0) break;
        contents.append(piece.data(), count);
    }
    return contents;
}

std::string FileSystem::ExecutablePath() const {
    return LinkTarget("/proc/self/exe");
}

const FileSystem& FileSystem::Current() {
    static const FileSystem real;
    return InForce<const FileSystem>::Or(real);
}

}  // namespace varnith
