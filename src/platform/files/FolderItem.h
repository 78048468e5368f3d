#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/base/Ref.h"
#include "platform/files/Streams.h"
#include "platform/files/WalkSource.h"

namespace varnith {

struct WalkPlan;

// A path of a file or folder, which need not exist. Creating an item does not touch the disk. An item holds
// its own name and shares its parent, so each level of a deep tree is stored once.
class FolderItem : public RefCounted {
  public:
    // The item of an absolute path. Empty components and "." are dropped; ".." and links are not resolved.
    static Ref<FolderItem> FromPath(const std::string& absolute_path);

    // The item's name on disk, as bytes; empty for the root.
    const std::string& Name() const { return name_; }

    // Renames the item on disk. The item keeps its name if that fails, if the name is in use, and if it isn't
    // a name that Child accepts.
    void SetName(const std::string& name);

    // The name as the desktop shows it. Linux desktops hide no extensions, so it equals Name.
    const std::string& DisplayName() const { return name_; }

    // The folder that contains the item; nil for the root.
    const Ref<FolderItem>& Parent() const { return parent_; }

    // The POSIX path, in bytes, without a slash at its end except for the root.
    std::string AbsolutePath() const;

    // The path quoted for /bin/sh as one word, whatever bytes it contains.
    std::string ShellPath() const;

    // The item of that name in this folder, which need not exist. Nil for an empty name, ".", "..", and a
    // name that contains "/" or NUL.
    Ref<FolderItem> Child(const std::string& name);

    // Whether the item exists. Links are followed, so a dangling link does not exist, unless the item comes
    // from TrueItem.
    bool Exists() const;

    // A copy of this folder's item for a walk that follows the plan. Workers list its folders and count its
    // files ahead of the walk, until the last item that comes from it is dropped.
    Ref<FolderItem> ForWalk(const WalkPlan& plan) const;

    // The number of the item's pages (CountPages). Nothing if it can't be opened, is no regular file or has
    // no TIFF header.
    virtual std::optional<std::int32_t> PageCount() const;

    // Whether the item is an existing folder. A link to a folder is not one, so code that empties a folder
    // never reaches outside of it.
    bool Directory() const;

    // Whether the desktops' file managers show the item (Listing has the rule). An item of a listing answers
    // as of the time of the listing.
    virtual bool Visible() const;

    // The number of entries of this folder, hidden ones included; 0 if it is no folder or can't be read.
    // Takes the snapshot of the folder that Item and TrueItem then use.
    std::int32_t Count();

    // The entry with that index of the last snapshot, in natural order; takes a snapshot if there is none
    // yet. Indices start at 1. Nil for an index out of range.
    Ref<FolderItem> Item(std::int32_t index);

    // The same, but if the entry is a link, Exists doesn't follow it.
    Ref<FolderItem> TrueItem(std::int32_t index);

    // Moves the item, with everything in it, to the path of the target, across file systems too. Without
    // effect if something exists there, even a folder, or on failure. This object and the target keep their
    // paths. REQUIRES: target is not nil (NilObjectException).
    void MoveFileTo(const Ref<FolderItem>& target) const;

    // Sets the permission bits, such as 0755. Without effect on failure.
    void SetPermissions(std::uint32_t mode) const;

    // Deletes the file, the link itself or the empty folder. Without effect on failure.
    void Delete() const;

    // Create the file for writing, or replace an existing one; nil on failure. The old file stays until the
    // stream is closed, and stays for good if not everything could be written (OutputFile::Anew). The file
    // type has no effect, because the program declares none.
    Ref<TextOutputStream> CreateTextFile() const;
    Ref<BinaryStream> CreateBinaryFile(const std::string& file_type) const;

    // Opens an existing file to overwrite it from its start; nil on failure.
    Ref<BinaryStream> OpenAsBinaryFile() const;

  protected:
    // A listing of the folder, and the source that answers for its entries.
    struct Snapshot {
        Ref<WalkSource> source;
        ListingPointer listing;
    };

    FolderItem(Ref<FolderItem> parent, std::string name);

    virtual Snapshot TakeSnapshot();

  private:
    friend class FileListMBS;
    template <class T, class... Arguments>
    friend Ref<T> MakeRef(Arguments&&... arguments);

    const Ref<FolderItem> parent_;
    std::string name_;
    bool is_entry_itself_ = false;  // from TrueItem
    Snapshot snapshot_;             // taken by Count, used by Item
};

// The item of a path. A relative path starts at the folder that contains ApplicationItem. The item need not
// exist, but its parent folder must: otherwise the result is nil, as it is for a path that contains NUL.
Ref<FolderItem> GetFolderItem(const std::string& path);

// The running executable.
Ref<FolderItem> ExecutableItem();

// The application: if the executable is in Contents/MacOS of a bundle folder (Name.app), the bundle, else the
// executable itself. The case of "Contents" and "MacOS" doesn't matter.
Ref<FolderItem> ApplicationItem();

}  // namespace varnith
