#include <array>
#include <cstdint>

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "platform/base/Trace.h"
#include "platform/files/FileSystem.h"
#include "platform/files/Place.h"

namespace varnith {

// FileSystem's operations that change the disk.

namespace {

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

}  // namespace

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

}  // namespace varnith
