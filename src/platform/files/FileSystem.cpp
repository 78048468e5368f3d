#include "platform/files/FileSystem.h"

#include <array>
#include <string_view>
#include <utility>

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "platform/base/InForce.h"
#include "platform/files/OpenFolder.h"

namespace varnith {

namespace {

FileKind KindOf(mode_t mode) {
    if (S_ISREG(mode)) return FileKind::Regular;
    if (S_ISDIR(mode)) return FileKind::Directory;
    if (S_ISLNK(mode)) return FileKind::Link;
    return FileKind::Other;
}

// A path that the system takes, from a folder on if it is relative: one longer than PATH_MAX is walked down
// in pieces, each relative to the folder that the piece before it led to. REQUIRES: the path outlives it.
class Place {
  public:
    explicit Place(const std::string& whole, int base = AT_FDCWD)
        : base_(base), path_(whole.c_str()), length_(whole.size()) {
        while (length_ >= PATH_MAX && StepDown()) continue;
    }

    // A step that led nowhere leaves a descriptor that is none, and every call on it fails.
    int Base() const { return stepped_ ? folder_.Descriptor() : base_; }
    const char* Path() const { return path_; }
    int Open(int flags, mode_t mode = 0666) const { return openat(Base(), path_, flags | O_CLOEXEC, mode); }

  private:
    bool StepDown() {
        const std::size_t cut = std::string_view(path_, length_).rfind('/', PATH_MAX - 2);
        if (cut == std::string_view::npos || cut == 0) return false;
        const std::string piece(path_, cut);
        folder_ = FileDescriptor(openat(Base(), piece.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        stepped_ = true;
        path_ += cut + 1;
        length_ -= cut + 1;
        return static_cast<bool>(folder_);
    }

    const int base_;
    FileDescriptor folder_;
    bool stepped_ = false;
    const char* path_;  // relative to the folder if there is one
    std::size_t length_;
};

std::optional<FileStatus> ToStatus(int result, const struct stat& status) {
    if (result != 0) return std::nullopt;
    return FileStatus{KindOf(status.st_mode), status.st_size, status.st_mode & 07777u, status.st_uid};
}

// Copies the permissions of single users and groups, without which the mode means something else: it shows
// the most that any of them has. A new file may have got some from its folder.
void CopyAccessList(int from, int to) {
    constexpr const char* Name = "system.posix_acl_access";
    std::array<char, 4096> list;
    const ssize_t size = fgetxattr(from, Name, list.data(), list.size());
    if (size > 0)
        fsetxattr(to, Name, list.data(), static_cast<std::size_t>(size), 0);
    else
        fremovexattr(to, Name);
}

// Whether a FIFO takes more within the time that its reader is given.
bool TakesMore(const FileDescriptor& file) {
    constexpr int Patience = 5'000;  // milliseconds
    pollfd writable{file.Descriptor(), POLLOUT, 0};
    return poll(&writable, 1, Patience) > 0;
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

// Appends the entries of a piece of a listing, as getdents64(2) gives it.
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
    return FileDescriptor(Place(path).Open(O_RDONLY | O_NONBLOCK | O_NOCTTY));
}

FileDescriptor FileSystem::OpenForReading(const OpenFolder& folder, const std::string& name) const {
    const auto opened = folder.Descriptor();
    return FileDescriptor(
        openat(opened->Descriptor(), name.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

FileDescriptor FileSystem::OpenFolderAt(const std::string& path) const {
    return FileDescriptor(Place(path).Open(O_RDONLY | O_DIRECTORY));
}

FileDescriptor FileSystem::OpenFolderBelow(const FileDescriptor& folder, const std::string& path) const {
    return FileDescriptor(Place(path, folder.Descriptor()).Open(O_RDONLY | O_DIRECTORY | O_NOFOLLOW));
}

std::size_t FileSystem::ReadAt(const FileDescriptor& file, void* bytes, std::size_t size,
                               std::uint64_t offset) const {
    if (offset > static_cast<std::uint64_t>(INT64_MAX)) return 0;
    ssize_t count;
    do count = pread(file.Descriptor(), bytes, size, static_cast<off_t>(offset));
    while (count < 0 && errno == EINTR);
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

std::optional<FileStatus> FileSystem::Status(const FileDescriptor& file) const {
    struct stat status;
    return ToStatus(fstat(file.Descriptor(), &status), status);
}

std::optional<FileStatus> FileSystem::Status(const std::string& path) const {
    const Place place(path);
    struct stat status;
    return ToStatus(fstatat(place.Base(), place.Path(), &status, 0), status);
}

std::optional<FileStatus> FileSystem::EntryStatus(const std::string& path) const {
    const Place place(path);
    struct stat status;
    return ToStatus(fstatat(place.Base(), place.Path(), &status, AT_SYMLINK_NOFOLLOW), status);
}

std::string FileSystem::LinkTarget(const std::string& path) const {
    const Place place(path);
    std::string target(PATH_MAX, '\0');
    const ssize_t length = readlinkat(place.Base(), place.Path(), target.data(), target.size());
    target.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return target;
}

// By the system call itself: the library's listing takes a descriptor away from its owner.
std::vector<DirectoryEntry> FileSystem::Entries(const OpenFolder& folder) const {
    std::vector<DirectoryEntry> entries;
    alignas(dirent64) std::array<char, 32 << 10> piece;
    const auto opened = folder.Descriptor();
    const int descriptor = opened->Descriptor();
    lseek(descriptor, 0, SEEK_SET);  // it may have been listed before
    for (;;) {
        const ssize_t size = getdents64(descriptor, piece.data(), piece.size());
        if (size <= 0) return entries;
        AppendEntries(descriptor, piece.data(), static_cast<std::size_t>(size), entries);
    }
}

std::vector<DirectoryEntry> FileSystem::Entries(const std::string& path) const {
    return Entries(OpenFolder(path));
}

std::string FileSystem::Contents(const FileDescriptor& file) const {
    const auto status = file ? Status(file) : std::nullopt;
    if (!status || status->kind != FileKind::Regular) return {};
    std::string contents;
    std::array<char, 4096> piece;
    while (const std::size_t count = ReadAt(file, piece.data(), piece.size(), contents.size()))
        contents.append(piece.data(), count);
    return contents;
}

FileDescriptor FileSystem::OpenForWriting(const std::string& path, bool create) const {
    const int how = create ? O_CREAT | O_TRUNC : 0;
    return FileDescriptor(Place(path).Open(O_WRONLY | O_NONBLOCK | O_NOCTTY | how));
}

FileDescriptor FileSystem::MakeFile(const std::string& path, std::uint32_t mode) const {
    return FileDescriptor(Place(path).Open(O_WRONLY | O_CREAT | O_EXCL, mode));
}

void FileSystem::MakeAlike(const FileDescriptor& file, const FileDescriptor& model) const {
    struct stat status;
    if (fstat(model.Descriptor(), &status) != 0) return;
    if (fchown(file.Descriptor(), status.st_uid, status.st_gid) != 0 &&
        fchown(file.Descriptor(), static_cast<uid_t>(-1), status.st_gid) != 0) {
        // The group is this user's own then, for whom the model's group permissions were not meant.
        status.st_mode &= ~static_cast<mode_t>(S_IRWXG);
    }
    CopyAccessList(model.Descriptor(), file.Descriptor());
    fchmod(file.Descriptor(), status.st_mode & 07777);
}

bool FileSystem::MayReplace(const std::string& path) const {
    const std::string holder = path.substr(0, path.rfind('/') + 1);
    const Place place(holder);
    const auto folder = Status(holder);
    const auto file = EntryStatus(path);
    if (!folder || !file || faccessat(place.Base(), place.Path(), W_OK | X_OK, AT_EACCESS) != 0) return false;
    // In a folder for everybody, such as /tmp, each may replace what is their own.
    return (folder->mode & S_ISVTX) == 0 || folder->owner == geteuid() || file->owner == geteuid();
}

bool FileSystem::Write(const FileDescriptor& file, std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = write(file.Descriptor(), bytes.data(), bytes.size());
        if (count < 0 && (errno == EINTR || (errno == EAGAIN && TakesMore(file)))) continue;
        if (count <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool FileSystem::Sync(const FileDescriptor& file) const {
    return fsync(file.Descriptor()) == 0;
}

void FileSystem::MakeFolders(const std::string& path) const {
    for (std::size_t end = path.find('/', 1); end != path.npos; end = path.find('/', end + 1))
        mkdir(path.substr(0, end).c_str(), S_IRWXU);
    mkdir(path.c_str(), S_IRWXU);
}

bool FileSystem::MakeFolder(const std::string& path) const {
    const Place place(path);
    return mkdirat(place.Base(), place.Path(), S_IRWXU) == 0;
}

bool FileSystem::MakeLink(const std::string& path, const std::string& target) const {
    const Place place(path);
    return symlinkat(target.c_str(), place.Base(), place.Path()) == 0;
}

bool FileSystem::SetMode(const std::string& path, std::uint32_t mode) const {
    const Place place(path);
    return fchmodat(place.Base(), place.Path(), mode, 0) == 0;
}

RenameResult FileSystem::Rename(const std::string& from, const std::string& to) const {
    const Place source(from);
    const Place target(to);
    int result = renameat2(source.Base(), source.Path(), target.Base(), target.Path(), RENAME_NOREPLACE);
    // Some network file systems know no rename that spares what is there, so look first.
    if (result != 0 && errno == EINVAL && !EntryStatus(to))
        result = renameat(source.Base(), source.Path(), target.Base(), target.Path());
    if (result == 0) return RenameResult::Done;
    return errno == EXDEV ? RenameResult::OtherFileSystem : RenameResult::Failed;
}

bool FileSystem::Replace(const std::string& from, const std::string& to) const {
    const Place source(from);
    const Place target(to);
    return renameat(source.Base(), source.Path(), target.Base(), target.Path()) == 0;
}

bool FileSystem::Remove(const std::string& path) const {
    const Place place(path);
    return unlinkat(place.Base(), place.Path(), 0) == 0 ||
           unlinkat(place.Base(), place.Path(), AT_REMOVEDIR) == 0;
}

std::string FileSystem::ExecutablePath() const {
    return LinkTarget("/proc/self/exe");
}

const FileSystem& FileSystem::Current() {
    static const FileSystem real;
    return InForce<const FileSystem>::Or(real);
}

}  // namespace varnith
