#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/FileDescriptor.h"

namespace varnith {

enum class FileKind { Regular, Directory, Link, Other };

struct FileStatus {
    FileKind kind;
    std::int64_t size;    // in bytes
    std::uint32_t mode;   // the permission bits, the set-id and sticky bits: at most 07777
    std::uint32_t owner;  // the user's id
};

enum class RenameResult { Done, OtherFileSystem, Failed };

class OpenFolder;

struct DirectoryEntry {
    std::string name;  // the bytes on disk, without the path
    FileKind kind;     // of the entry itself: links are not followed
};

// The one place through which the program reaches the disk, so that a test can make each operation fail.
// Paths are absolute, in bytes, and may be longer than PATH_MAX. All operations may be called from any
// thread. None throws: a failure is an empty result or false, and leaves a trace (base/Trace.h).
class FileSystem {
  public:
    virtual ~FileSystem() = default;

    // Opens a file for reading, without waiting for the other end of a FIFO. The caller owns the descriptor,
    // which is empty on failure.
    virtual FileDescriptor OpenForReading(const std::string& path) const;

    // The same for the entry of that name in a folder.
    virtual FileDescriptor OpenForReading(const OpenFolder& folder, const std::string& name) const;

    // Open a folder, to list it and to open what is below it. OpenFolderAt takes an absolute path and follows
    // links; OpenFolderBelow takes a path relative to an open folder and doesn't follow a link in its last
    // component. Empty on failure and for anything but a folder.
    FileDescriptor OpenFolderAt(const std::string& path) const;
    FileDescriptor OpenFolderBelow(const FileDescriptor& folder, const std::string& path) const;

    // Reads up to `size` bytes at an offset, which is in bytes too. Returns the number of bytes read, which
    // may be smaller; 0 only at or after the end of the file or on failure.
    virtual std::size_t ReadAt(const FileDescriptor& file, void* bytes, std::size_t size,
                               std::uint64_t offset) const;

    // The status of a file: of an open one, of a path with links followed, and of a path whose last component
    // is not followed if it is a link. Nothing on failure.
    virtual std::optional<FileStatus> Status(const FileDescriptor& file) const;
    virtual std::optional<FileStatus> Status(const std::string& path) const;
    virtual std::optional<FileStatus> EntryStatus(const std::string& path) const;

    // The target of a symbolic link, as it is stored, absolute or relative; empty if the path is no link.
    virtual std::string LinkTarget(const std::string& path) const;

    // Appends the entries of a folder in no particular order, without "." and "..". False if it can't be
    // read; after a failure half-way, the entries read by then are appended.
    virtual bool List(const OpenFolder& folder, std::vector<DirectoryEntry>& entries) const;

    // The same entries, for callers that take a folder which can't be read for an empty one.
    std::vector<DirectoryEntry> Entries(const OpenFolder& folder) const;
    std::vector<DirectoryEntry> Entries(const std::string& path) const;

    // The content of a small regular file, at most its first MostContents bytes; empty if it can't be read.
    // The limit is there because a foreign folder may have a file of any size under the name that is read.
    static constexpr std::size_t MostContents = 16 << 20;
    std::string Contents(const std::string& path) const { return Contents(OpenForReading(path)); }
    std::string Contents(const FileDescriptor& file) const;

    // Opens a file for writing, at offset 0. With `create` a missing file is created and an existing one
    // emptied; without `create` the file must exist and keeps its content. Empty on failure.
    virtual FileDescriptor OpenForWriting(const std::string& path, bool create) const;

    // Creates a new file and opens it for writing. The process's umask(2) applies to the mode. Empty on
    // failure and if something exists at the path.
    virtual FileDescriptor MakeFile(const std::string& path, std::uint32_t mode) const;

    // Gives an open file the mode and the access control list of the model, and its owner and group as far as
    // this user may set them.
    virtual void MakeAlike(const FileDescriptor& file, const FileDescriptor& model) const;

    // Whether this user may put new entries into the folder. False if it is missing or its disk is read-only.
    virtual bool MayChange(const std::string& folder) const;

    // Whether this user may rename another file over this one. That depends on the permissions of its folder
    // and not on those of the file.
    virtual bool MayReplace(const std::string& path) const;

    // Writes the bytes at the file's offset. If a FIFO is full, waits some seconds for its reader. False if
    // not all bytes could be written.
    virtual bool Write(const FileDescriptor& file, std::string_view bytes) const;

    // Waits until the disk has stored what was written. False on failure: some file systems report only now
    // that they are full.
    virtual bool Sync(const FileDescriptor& file) const;

    // Creates a folder and its missing parents, with mode 0700.
    virtual void MakeFolders(const std::string& path) const;

    // Create a folder with mode 0700, and a symbolic link with that target. False on failure and if something
    // exists at the path.
    virtual bool MakeFolder(const std::string& path) const;
    virtual bool MakeLink(const std::string& path, const std::string& target) const;

    // Sets the permission bits, such as 0755; links are followed. False on failure.
    virtual bool SetMode(const std::string& path, std::uint32_t mode) const;

    // Renames an entry; a link itself is renamed. Fails if something exists at the new path.
    virtual RenameResult Rename(const std::string& from, const std::string& to) const;

    // Renames a file over another on the same file system, atomically. False on failure, which leaves both as
    // they were.
    virtual bool Replace(const std::string& from, const std::string& to) const;

    // Removes a file, a link itself or an empty folder. False on failure.
    virtual bool Remove(const std::string& path) const;

    // The path of the running executable.
    virtual std::string ExecutablePath() const;

    // The real disk, unless a test has put another in its place with InForce<const FileSystem>.
    static const FileSystem& Current();
};

}  // namespace varnith
