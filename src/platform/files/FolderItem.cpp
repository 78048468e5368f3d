#include "platform/files/FolderItem.h"

#include <memory>
#include <sstream>
#include <utility>

#include <glib.h>

#include "platform/base/Text.h"
#include "platform/files/FileSystem.h"
#include "platform/files/ListedItem.h"
#include "platform/files/MoveItem.h"
#include "platform/files/PlainDisk.h"
#include "platform/files/ReadAhead.h"

namespace varnith {

namespace {

bool IsEntryName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\0", 2)) == name.npos;
}

template <class Stream>
Ref<Stream> StreamInto(OutputFile file) {
    return file ? MakeRef<Stream>(std::move(file)) : nullptr;
}

}  // namespace

FolderItem::FolderItem(Ref<FolderItem> parent, std::string name)
    : parent_(std::move(parent)), name_(std::move(name)) {}

Ref<FolderItem> FolderItem::FromPath(const std::string& absolute_path) {
    auto item = MakeRef<FolderItem>(nullptr, "");
    std::istringstream pieces(absolute_path);
    for (std::string piece; std::getline(pieces, piece, '/');)
        if (!piece.empty() && piece != ".") item = MakeRef<FolderItem>(item, piece);
    return item;
}

std::string FolderItem::AbsolutePath() const {
    if (!parent_) return "/";
    std::size_t length = 0;
    for (const FolderItem* item = this; item->parent_; item = item->parent_.Get())
        length += item->name_.size() + 1;
    std::string path(length, '/');
    for (const FolderItem* item = this; item->parent_; item = item->parent_.Get()) {
        length -= item->name_.size();
        path.replace(length, item->name_.size(), item->name_);
        --length;
    }
    return path;
}

void FolderItem::SetName(const std::string& name) {
    if (!parent_ || !IsEntryName(name)) return;
    const std::string renamed = MakeRef<FolderItem>(parent_, name)->AbsolutePath();
    if (FileSystem::Current().Rename(AbsolutePath(), renamed) == RenameResult::Done) name_ = name;
}

std::string FolderItem::ShellPath() const {
    const std::unique_ptr<gchar, void (*)(gpointer)> quoted(g_shell_quote(AbsolutePath().c_str()), g_free);
    return quoted.get();
}

Ref<FolderItem> FolderItem::Child(const std::string& name) {
    if (!IsEntryName(name)) return nullptr;
    return MakeRef<FolderItem>(Ref(this), name);
}

bool FolderItem::Exists() const {
    const FileSystem& disk = FileSystem::Current();
    return (is_entry_itself_ ? disk.EntryStatus(AbsolutePath()) : disk.Status(AbsolutePath())).has_value();
}

bool FolderItem::Directory() const {
    const auto status = FileSystem::Current().EntryStatus(AbsolutePath());
    return status && status->kind == FileKind::Directory;
}

bool FolderItem::Visible() const {
    return !parent_ || IsVisibleEntry(parent_->AbsolutePath(), name_);
}

Ref<FolderItem> FolderItem::ForWalk(const WalkPlan& plan) const {
    return MakeRef<WalkedItem>(parent_, name_, MakeRef<ReadAhead>(AbsolutePath(), plan));
}

FolderItem::Snapshot FolderItem::TakeSnapshot() {
    const auto disk = MakeRef<PlainDisk>(AbsolutePath());
    return {disk, disk->ListFirst()};
}

std::optional<std::int32_t> FolderItem::PageCount() const {
    const auto holder = parent_ ? parent_->AbsolutePath() : "/";
    return PlainDisk::CountPagesOf(OpenFolder(holder), {name_, FileKind::Other, true});
}

std::int32_t FolderItem::Count() {
    snapshot_ = TakeSnapshot();
    return static_cast<std::int32_t>(snapshot_.listing->Size());
}

Ref<FolderItem> FolderItem::Item(std::int32_t index) {
    if (!snapshot_.listing) Count();
    if (index < 1 || static_cast<std::size_t>(index) > snapshot_.listing->Size()) return nullptr;
    return MakeRef<ListedItem>(Ref(this), snapshot_, static_cast<std::size_t>(index) - 1);
}

Ref<FolderItem> FolderItem::TrueItem(std::int32_t index) {
    const Ref<FolderItem> item = Item(index);
    if (item) item->is_entry_itself_ = true;
    return item;
}

void FolderItem::MoveFileTo(const Ref<FolderItem>& target) const {
    MoveItem(AbsolutePath(), target->AbsolutePath());
}

void FolderItem::SetPermissions(std::uint32_t mode) const {
    FileSystem::Current().SetMode(AbsolutePath(), mode);
}

void FolderItem::Delete() const {
    FileSystem::Current().Remove(AbsolutePath());
}

Ref<TextOutputStream> FolderItem::CreateTextFile() const {
    return StreamInto<TextOutputStream>(OutputFile::Anew(AbsolutePath()));
}

Ref<BinaryStream> FolderItem::CreateBinaryFile(const std::string& /*file_type*/) const {
    return StreamInto<BinaryStream>(OutputFile::Anew(AbsolutePath()));
}

Ref<BinaryStream> FolderItem::OpenAsBinaryFile() const {
    return StreamInto<BinaryStream>(OutputFile::Over(AbsolutePath()));
}

Ref<FolderItem> ExecutableItem() {
    return FolderItem::FromPath(FileSystem::Current().ExecutablePath());
}

Ref<FolderItem> ApplicationItem() {
    const auto executable = ExecutableItem();
    const auto folder = executable->Parent();
    const bool in_bundle = folder && SameText(folder->Name(), "MacOS") && folder->Parent() &&
                           SameText(folder->Parent()->Name(), "Contents");
    return in_bundle && folder->Parent()->Parent() ? folder->Parent()->Parent() : executable;
}

Ref<FolderItem> GetFolderItem(const std::string& path) {
    if (path.find('\0') != path.npos) return nullptr;
    const bool relative = !path.starts_with('/');
    const auto folder = ApplicationItem()->Parent();
    const auto item = FolderItem::FromPath(relative ? folder->AbsolutePath() + "/" + path : path);
    if (!item->Parent()) return item;
    const auto holder = FileSystem::Current().Status(item->Parent()->AbsolutePath());
    return holder && holder->kind == FileKind::Directory ? item : nullptr;
}

}  // namespace varnith
