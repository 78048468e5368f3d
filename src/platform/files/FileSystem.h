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
    std::int64_t size;   // in bytes
    std::uint32_t mode;  // the permission bits
    std::uint32_t owner;
};

enum class RenameResult { Done, OtherFileSystem, Failed };

class OpenFolder;

struct DirectoryEntry {
    std::string name;  // the bytes that the disk holds, without the path
    FileKind kind;     // of the entry itself: a link is a link, whatever it leads to
};

// What the program asks the disk, one call per question, so that a test can make each of them fail.
// Paths are absolute, in bytes, and may be longer than the system's limit for one path. All calls may be
// made from any thread. None raises: a failure is an empty result, and what failed does not matter here.
class FileSystem {
  public:
    virtual ~FileSystem() = default;

    // Opens a file for reading, never waiting for the other end of a FIFO. Empty on failure.
    virtual FileDescriptor OpenForReading(const std::string& path) const;

    // The same for an entry of a folder, by its name.
    virtual FileDescriptor OpenForReading(const OpenFolder& folder, const std::string& name) const;

    // Opens a folder, to list it and to reach what lies below it: one of an absolute path, where links are
    // followed, or one that a relative path leads to from an open folder. Empty for anything but a folder,
    // and for a link at the end of a relative path.
    FileDescriptor OpenFolderAt(const std::string& path) const;
    FileDescriptor OpenFolderBelow(const FileDescriptor& folder, const std::string& path) const;

    // Reads up to `size` bytes at an offset, in one call. Returns the number of bytes read: maybe fewer, 0
    // only behind the end of the file or on failure.
    virtual std::size_t ReadAt(const FileDescriptor& file, void* bytes, std::size_t size,
                               std::uint64_t offset) const;

    virtual std::optional<FileStatus> Status(const FileDescriptor& file) const;

    // The status of what a path leads to: links are followed.
    virtual std::optional<FileStatus> Status(const std::string& path) const;

    // The status of the entry itself: a link is a link.
    virtual std::optional<FileStatus> EntryStatus(const std::string& path) const;

    // What a link leads to, as it is written in the link; empty if there is no link.
    virtual std::string LinkTarget(const std::string& path) const;

    // The entries of a folder in no particular order, without "." and "..". Empty, too, when the folder
    // can't be read; a folder that fails half-way gives what was read by then.
    virtual std::vector<DirectoryEntry> Entries(const OpenFolder& folder) const;
    std::vector<DirectoryEntry> Entries(const std::string& path) const;

    // The whole of a small text file; empty when it can't be read.
    std::string Contents(const std::string& path) const { return Contents(OpenForReading(path)); }
    std::string Contents(const FileDescriptor& file) const;

    // Opens a file for writing from its start on. With `create` it is made if it is missing, else emptied;
    // without, it has to be there and keeps what it holds. Empty on failure.
    virtual FileDescriptor OpenForWriting(const std::string& path, bool create) const;

    // Makes a file where nothing is yet, with that mode less what the user's mask takes off, and opens it for
    // writing. Empty on failure.
    virtual FileDescriptor MakeFile(const std::string& path, std::uint32_t mode) const;

    // Gives an open file the permissions of another, and its group and owner as far as this user may.
    virtual void MakeAlike(const FileDescriptor& file, const FileDescriptor& model) const;

    // Whether this user may put another file in the place of one: its folder says so, and not the file.
    virtual bool MayReplace(const std::string& path) const;

    // Writes the bytes where the write before it ended. A reader of a FIFO that has fallen back is given some
    // seconds to take more. False if they could not all be written.
    virtual bool Write(const FileDescriptor& file, std::string_view bytes) const;

    // Waits until the disk has what was written. False if it could not take all of it: some tell so only now.
    virtual bool Sync(const FileDescriptor& file) const;

    // Makes a folder, for the user alone, and those above it, as far as they are missing.
    virtual void MakeFolders(const std::string& path) const;

    // Makes a folder, for the user alone, or a link where nothing is yet. False if it could not be made.
    virtual bool MakeFolder(const std::string& path) const;
    virtual bool MakeLink(const std::string& path, const std::string& target) const;

    // Sets the permission bits of what a path leads to.
    virtual bool SetMode(const std::string& path, std::uint32_t mode) const;

    // Gives an entry another path, without following a link. It never takes the place of what is there.
    virtual RenameResult Rename(const std::string& from, const std::string& to) const;

    // Gives a file another path on its file system, at once in the place of the file that is there. False if
    // both are as they were.
    virtual bool Replace(const std::string& from, const std::string& to) const;

    // Removes a file, a link itself or an empty folder. False if it is still there.
    virtual bool Remove(const std::string& path) const;

    // The path of the running executable.
    virtual std::string ExecutablePath() const;

    // The real disk, unless another is in force: InForce<const FileSystem>.
    static const FileSystem& Current();
};

}  // namespace varnith
