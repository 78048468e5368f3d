#include "platform/files/MoveItem.h"

#include <random>
#include <vector>

#include "platform/files/FileSystem.h"

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
    return copied == status->size && disk.Sync(target);
}

bool Copy(const std::string& from, const std::string& to);

// A folder that may not be read would look empty.
bool CopyEntries(const std::string& from, const std::string& to) {
    const FileSystem& disk = FileSystem::Current();
    if (!disk.OpenForReading(from) || !disk.MakeFolder(to)) return false;
    for (const DirectoryEntry& entry : disk.Entries(from))
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
            return false;
    }
    return false;
}

// Copies beside the target and renames into place.
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
    if (disk.EntryStatus(to) || !CopyIntoPlace(from, to)) return false;
    // The source leaves its place as a whole or stays as a whole, which a removal piece by piece could not
    // promise.
    const std::string leaving = NameBeside(from);
    const RenameResult left = disk.Rename(from, leaving);
    if (left == RenameResult::Failed) {
        RemoveItem(to);
        return false;
    }
    // A layered file system renames no folder of its lower layer, not even in its place.
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
