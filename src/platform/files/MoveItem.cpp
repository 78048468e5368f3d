#include "platform/files/MoveItem.h"

#include <random>
#include <vector>

#include "platform/base/Trace.h"
#include "platform/files/FileSystem.h"
#include "platform/files/OpenFolder.h"

namespace varnith {

namespace {

constexpr std::size_t PieceSize = 256 << 10;

bool CopyBytes(const std::string& from, const std::string& to) {
    const FileSystem& disk = FileSystem::Current();
    const FileDescriptor source = disk.OpenForReading(from);
    const auto status = source ? disk.Status(source) : std::nullopt;
    const FileDescriptor target = status ? disk.OpenForWriting(to, true) : FileDescriptor();
    if (!target) return false;
    std::string piece(PieceSize, '\0');
    std::int64_t copied = 0;
    while (const std::size_t count =
               disk.ReadAt(source, piece.data(), piece.size(), static_cast<std::uint64_t>(copied))) {
        if (!disk.Write(target, std::string_view(piece).substr(0, count))) return false;
        copied += static_cast<std::int64_t>(count);
    }
    if (copied != status->size) TraceFailure("copy", from, "its size has changed or it can't be read");
    return copied == status->size && disk.Sync(target);
}

bool Copy(const std::string& from, const std::string& to);

bool CopyEntries(const std::string& from, const std::string& to) {
    const FileSystem& disk = FileSystem::Current();
    std::vector<DirectoryEntry> entries;
    // The source is removed after the copy, so the list of what to copy must be complete.
    if (!disk.List(OpenFolder(from), entries) || !disk.MakeFolder(to)) return false;
    for (const DirectoryEntry& entry : entries)
        if (!Copy(from + "/" + entry.name, to + "/" + entry.name)) return false;
    return true;
}

bool Copy(const std::string& from, const std::string& to) {
    const FileSystem& disk = FileSystem::Current();
    const auto status = disk.EntryStatus(from);
    if (!status) return false;
    const std::uint32_t permissions = status->mode & 0777;
    switch (status->kind) {
        case FileKind::Regular:
            return CopyBytes(from, to) && disk.SetMode(to, permissions);
        case FileKind::Directory:
            return CopyEntries(from, to) && disk.SetMode(to, permissions);
        case FileKind::Link:
            return disk.MakeLink(to, disk.LinkTarget(from));
        case FileKind::Other:
            TraceFailure("copy", from, "it is no file, folder or link");
            return false;
    }
    return false;
}

// Copies to a temporary name in the target's folder, then renames.
bool CopyIntoPlace(const std::string& from, const std::string& to) {
    const std::string copy = NameBeside(to);
    if (Copy(from, copy) && FileSystem::Current().Rename(copy, to) == RenameResult::Done) return true;
    RemoveItem(copy);
    return false;
}

}  // namespace

std::string NameBeside(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1) + ".moving-" + std::to_string(std::random_device()());
}

bool MoveItem(const std::string& from, const std::string& to) {
    const FileSystem& disk = FileSystem::Current();
    const RenameResult renamed = disk.Rename(from, to);
    if (renamed != RenameResult::OtherFileSystem) return renamed == RenameResult::Done;
    if (disk.EntryStatus(to)) {
        TraceFailure("move to", to, "it exists");
        return false;
    }
    if (!CopyIntoPlace(from, to)) return false;
    // Renames the source before removing it: a removal that fails half-way would leave part of a folder.
    const std::string leaving = NameBeside(from);
    const RenameResult left = disk.Rename(from, leaving);
    if (left == RenameResult::Failed) {
        RemoveItem(to);
        return false;
    }
    // overlayfs fails to rename a folder of its lower layer with EXDEV, even within one folder
    // (https://docs.kernel.org/filesystems/overlayfs.html, "Renaming directories").
    RemoveItem(left == RenameResult::Done ? leaving : from);
    return true;
}

void RemoveItem(const std::string& path) {
    const FileSystem& disk = FileSystem::Current();
    const auto status = disk.EntryStatus(path);
    if (status && status->kind == FileKind::Directory) {
        disk.SetMode(path, status->mode | 0700);
        for (const DirectoryEntry& entry : disk.Entries(path)) RemoveItem(path + "/" + entry.name);
    }
    disk.Remove(path);
}

}  // namespace varnith
