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
#include "platform/base/Trace.h"
#include "platform/files/OpenFolder.h"

namespace varnith {

namespace {

FileKind KindOf(mode_t mode) {
    if (S_ISREG(mode)) return FileKind::Regular;
    if (S_ISDIR(mode)) return FileKind::Directory;
    if (S_ISLNK(mode)) return FileKind::Link;
    return FileKind::Other;
}

// The path of an open file, for a trace. Leaves errno as it is.
std::string PathOf(const FileDescriptor& file) {
    const int error = errno;
    const std::string link = "/proc/self/fd/" + std::to_string(file.Descriptor());
    std::array<char, PATH_MAX> path;
    const ssize_t length = readlink(link.c_str(), path.data(), path.size());
    errno = error;
    return length < 0 ? link : std::string(path.data(), static_cast<std::size_t>(length));
}

// A path in the form that the *at calls take: a descriptor and a path relative to it. The system takes no
// path of PATH_MAX bytes or more, so a longer one is opened piece by piece, each piece relative to the folder
// of the piece before it. A relative path starts at `base`. REQUIRES: the path outlives this object.
class Place {
  public:
    explicit Place(const std::string& whole, int base = AT_FDCWD)
        : base_(base), path_(whole.c_str()), length_(whole.size()) {
        while (length_ >= PATH_MAX && StepDown()) continue;
    }

    // After a failed step the descriptor is -1 and every later call fails.
    int Base() const { return stepped_ ? folder_.Descriptor() : base_; }
    const char* Path() const { return path_; }
    FileDescriptor Open(int flags, mode_t mode = 0666) const {
        return FileDescriptor(openat(Base(), path_, flags | O_CLOEXEC, mode));
    }

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
    const char* path_;  // relative to Base() unless it begins with a slash
    std::size_t length_;
};

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

// Copies the access control list (acl(5)). Where a file has one, the group bits of its mode are only the
// upper limit of the list's permissions, so copying the mode alone would give others more or less. A new file
// may have inherited a list from its folder: it is removed if the model has none.
void CopyAccessList(const FileDescriptor& from, const FileDescriptor& to) {
    constexpr const char* Name = "system.posix_acl_access";
    std::array<char, XATTR_SIZE_MAX> list;
    const ssize_t size = fgetxattr(from.Descriptor(), Name, list.data(), list.size());
    const int result = size > 0
                           ? fsetxattr(to.Descriptor(), Name, list.data(), static_cast<std::size_t>(size), 0)
                           : fremovexattr(to.Descriptor(), Name);
    const bool had_none = size <= 0 && (errno == ENODATA || errno == EOPNOTSUPP);
    if (result != 0 && !had_none && IsTracing()) TraceErrno("copy the access list to", PathOf(to));
}

// Waits until a FIFO's reader has made room. False if it makes none within the time limit.
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

FileDescriptor FileSystem::OpenForWriting(const std::string& path, bool create) const {
    const int how = create ? O_CREAT | O_TRUNC : 0;
    FileDescriptor file = Place(path).Open(O_WRONLY | O_NONBLOCK | O_NOCTTY | how);
    // Without `create` it is also how to find out whether there is a file to replace.
    if (!file && (create || errno != ENOENT)) TraceErrno("write to", path);
    return file;
}

FileDescriptor FileSystem::MakeFile(const std::string& path, std::uint32_t mode) const {
    FileDescriptor file = Place(path).Open(O_WRONLY | O_CREAT | O_EXCL, mode);
    if (!file) TraceErrno("make", path);
    return file;
}

void FileSystem::MakeAlike(const FileDescriptor& file, const FileDescriptor& model) const {
    struct stat status;
    if (fstat(model.Descriptor(), &status) != 0) {
        if (IsTracing()) TraceErrno("look at", PathOf(model));
        return;
    }
    // Only root may give a file to another owner, but users may give theirs to any of their groups.
    if (fchown(file.Descriptor(), status.st_uid, status.st_gid) != 0 &&
        fchown(file.Descriptor(), static_cast<uid_t>(-1), status.st_gid) != 0) {
        if (IsTracing()) TraceErrno("set the group of", PathOf(file));
        // The file keeps this user's own group. The model's group permissions were not meant for it.
        status.st_mode &= ~static_cast<mode_t>(S_IRWXG);
    }
    CopyAccessList(model, file);
    if (fchmod(file.Descriptor(), status.st_mode & 07777) != 0 && IsTracing())
        TraceErrno("set the mode of", PathOf(file));
}

bool FileSystem::MayChange(const std::string& folder) const {
    const Place place(folder);
    return faccessat(place.Base(), place.Path(), W_OK | X_OK, AT_EACCESS) == 0;
}

bool FileSystem::MayReplace(const std::string& path) const {
    const std::string holder = path.substr(0, path.rfind('/') + 1);
    const auto folder = Status(holder);
    const auto file = EntryStatus(path);
    if (!folder || !file || !MayChange(holder)) return false;
    // In a folder with the sticky bit, such as /tmp, only the owner of a file or of the folder may rename
    // over the file (unlink(2), rename(2)).
    return (folder->mode & S_ISVTX) == 0 || folder->owner == geteuid() || file->owner == geteuid();
}

bool FileSystem::Write(const FileDescriptor& file, std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = write(file.Descriptor(), bytes.data(), bytes.size());
        if (count < 0 && (errno == EINTR || (errno == EAGAIN && TakesMore(file)))) continue;
        if (count <= 0) {
            if (IsTracing()) TraceErrno("write", PathOf(file));
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool FileSystem::Sync(const FileDescriptor& file) const {
    const bool done = fsync(file.Descriptor()) == 0;
    if (!done && IsTracing()) TraceErrno("sync", PathOf(file));
    return done;
}

void FileSystem::MakeFolders(const std::string& path) const {
    for (std::size_t end = path.find('/', 1); end != path.npos; end = path.find('/', end + 1))
        mkdir(path.substr(0, end).c_str(), S_IRWXU);
    // A folder above that can't be made shows here: the last one can't be made then either.
    if (mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST) TraceErrno("make folder", path);
}

bool FileSystem::MakeFolder(const std::string& path) const {
    const Place place(path);
    const bool made = mkdirat(place.Base(), place.Path(), S_IRWXU) == 0;
    if (!made && errno != EEXIST) TraceErrno("make folder", path);
    return made;
}

bool FileSystem::MakeLink(const std::string& path, const std::string& target) const {
    const Place place(path);
    const bool made = symlinkat(target.c_str(), place.Base(), place.Path()) == 0;
    if (!made) TraceErrno("make link", path);
    return made;
}

bool FileSystem::SetMode(const std::string& path, std::uint32_t mode) const {
    const Place place(path);
    const bool done = fchmodat(place.Base(), place.Path(), mode, 0) == 0;
    if (!done) TraceErrno("set the mode of", path);
    return done;
}

RenameResult FileSystem::Rename(const std::string& from, const std::string& to) const {
    const Place source(from);
    const Place target(to);
    int result = renameat2(source.Base(), source.Path(), target.Base(), target.Path(), RENAME_NOREPLACE);
    // Some network file systems don't support RENAME_NOREPLACE, so check first that nothing is there.
    if (result != 0 && errno == EINVAL && !EntryStatus(to))
        result = renameat(source.Base(), source.Path(), target.Base(), target.Path());
    if (result == 0) return RenameResult::Done;
    if (errno == EXDEV) return RenameResult::OtherFileSystem;
    if (IsTracing()) TraceErrno("rename", from + " to " + to);
    return RenameResult::Failed;
}

bool FileSystem::Replace(const std::string& from, const std::string& to) const {
    const Place source(from);
    const Place target(to);
    const bool done = renameat(source.Base(), source.Path(), target.Base(), target.Path()) == 0;
    if (!done && IsTracing()) TraceErrno("replace", to + " by " + from);
    return done;
}

bool FileSystem::Remove(const std::string& path) const {
    const Place place(path);
    if (unlinkat(place.Base(), place.Path(), 0) == 0) return true;
    const int why_no_file = errno;
    if (unlinkat(place.Base(), place.Path(), AT_REMOVEDIR) == 0) return true;
    if (errno == ENOTDIR) errno = why_no_file;
    if (errno != ENOENT) TraceErrno("remove", path);
    return false;
}

std::string FileSystem::ExecutablePath() const {
    return LinkTarget("/proc/self/exe");
}

const FileSystem& FileSystem::Current() {
    static const FileSystem real;
    return InForce<const FileSystem>::Or(real);
}

}  // namespace varnith
