#include "platform/files/Streams.h"

#include <errno.h>

#include "platform/base/Trace.h"
#include "platform/files/MoveItem.h"

namespace varnith {

namespace {

constexpr std::size_t PieceSize = 64 << 10;

// Follows symbolic links to the final path, which need not exist. A path that is no link is returned as it
// is. Empty for a cycle of links.
std::string LeadsTo(std::string path) {
    constexpr int MostLinks = 40;  // the system's limit (path_resolution(7))
    for (int links = 0; links <= MostLinks; ++links) {
        const std::string target = FileSystem::Current().LinkTarget(path);
        if (target.empty()) return path;
        path = target.starts_with('/') ? target : path.substr(0, path.rfind('/') + 1) + target;
    }
    return {};
}

}  // namespace

OutputFile OutputFile::Over(const std::string& path) {
    OutputFile file(FileSystem::Current().OpenForWriting(path, false));
    if (!file && errno == ENOENT) TraceErrno("write to", path);
    return file;
}

OutputFile OutputFile::Anew(const std::string& path) {
    const FileSystem& disk = FileSystem::Current();
    FileDescriptor old = disk.OpenForWriting(path, false);
    const auto status = old ? disk.Status(old) : disk.Status(path);
    if (old && status && status->kind != FileKind::Regular) return OutputFile(std::move(old));
    const std::string target = LeadsTo(path);
    if (target.empty() || (status && !old)) return OutputFile(FileDescriptor());
    if (status && !disk.MayReplace(target)) return OutputFile(disk.OpenForWriting(path, true));

    const std::string draft = NameBeside(target);
    constexpr std::uint32_t Private = 0600;  // until MakeAlike: the old file may be closed to others
    OutputFile file(disk.MakeFile(draft, old ? Private : 0666));
    if (!file) return file;
    file.draft_ = draft;
    file.target_ = target;
    if (old) disk.MakeAlike(file.file_, old);
    return file;
}

OutputFile::~OutputFile() {
    if (draft_.empty())
        Close();
    else if (file_)
        FileSystem::Current().Remove(draft_);
}

void OutputFile::Write(std::string_view bytes) {
    waiting_ += bytes;
    if (waiting_.size() >= PieceSize) Flush();
}

void OutputFile::Flush() {
    if (file_ && whole_) whole_ = FileSystem::Current().Write(file_, waiting_);
    waiting_.clear();
}

void OutputFile::Close() {
    if (!file_) return;
    Flush();
    if (!draft_.empty()) TakePlace();
    file_ = {};
}

void OutputFile::TakePlace() {
    const FileSystem& disk = FileSystem::Current();
    // Some file systems report only at fsync(2) that they are full.
    if (!whole_ || !disk.Sync(file_) || !disk.Replace(draft_, target_)) disk.Remove(draft_);
}

void TextOutputStream::WriteLine(std::string_view text) {
    file_.Write(text);
    file_.Write("\n");
}

}  // namespace varnith
