#include "platform/files/Streams.h"

#include "platform/files/MoveItem.h"

namespace varnith {

namespace {

constexpr std::size_t PieceSize = 64 << 10;

// The path of what a link leads to, whether that is there or not; any other path as it is. Empty for links
// that lead in a circle.
std::string LeadsTo(std::string path) {
    constexpr int MostLinks = 40;  // as many as the system follows
    for (int links = 0; links <= MostLinks; ++links) {
        const std::string target = FileSystem::Current().LinkTarget(path);
        if (target.empty()) return path;
        path = target.starts_with('/') ? target : path.substr(0, path.rfind('/') + 1) + target;
    }
    return {};
}

}  // namespace

OutputFile OutputFile::Over(const std::string& path) {
    return OutputFile(FileSystem::Current().OpenForWriting(path, false));
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
    constexpr std::uint32_t Private = 0600;  // until it has the permissions of the old one
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
    // Some disks tell only at the end that they are full.
    if (!whole_ || !disk.Sync(file_) || !disk.Replace(draft_, target_)) disk.Remove(draft_);
}

void TextOutputStream::WriteLine(std::string_view text) {
    file_.Write(text);
    file_.Write("\n");
}

}  // namespace varnith
