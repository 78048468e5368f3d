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

// A handle of a file or folder: a path, which need not lead to anything yet. Making one does not touch the
// disk. It holds its own name and shares the folder that it lies in, so a deep tree costs one name a level.
class FolderItem : public RefCounted {
  public:
    // The item of an absolute path; empty pieces and "." are dropped from the path, links are left alone.
    static Ref<FolderItem> FromPath(const std::string& absolute_path);

    // The item's name on disk, as bytes; empty for the root.
    const std::string& Name() const { return name_; }

    // Renames the item on disk. Where that fails, as over a name in use or for one that no child can have,
    // the item keeps its name.
    void SetName(const std::string& name);

    // The name as the desktop shows it. Linux desktops hide no extensions, so it is the same bytes.
    const std::string& DisplayName() const { return name_; }

    // The folder that holds the item; nil for the root.
    const Ref<FolderItem>& Parent() const { return parent_; }

    // The POSIX path, with no slash at its end, the root aside.
    std::string AbsolutePath() const;

    // The path quoted for /bin/sh, as one word, whatever bytes it has.
    std::string ShellPath() const;

    // The entry of that name in this folder, on disk or not. Nil for an empty name, ".", "..", and a name
    // that holds "/".
    Ref<FolderItem> Child(const std::string& name);

    // Whether something is there; a link that leads nowhere is not, unless it came from TrueItem.
    bool Exists() const;

    // This folder for a walk of which it is known what it will do: what the walk asks the disk of this folder
    // and of the items listed from it is asked ahead by workers, from now on until the last of them is
    // dropped.
    Ref<FolderItem> ForWalk(const WalkPlan& plan) const;

    // The pages of the item as CountPages has them; nothing for what can't be opened or is no regular file.
    virtual std::optional<std::int32_t> PageCount() const;

    // Whether a folder is there. A link to one is none, so nothing that empties a folder reaches elsewhere.
    bool Directory() const;

    // Whether the item is visible to the user, as the desktops' file managers have it; that of an item from a
    // listing as the listing had it.
    virtual bool Visible() const;

    // The number of entries of this folder, visible or not; 0 if it is no folder or can't be read. Takes a
    // new snapshot of the folder, from which Item then serves.
    std::int32_t Count();

    // The entry at a place of the last snapshot, from 1, in natural order; takes one if there is none yet.
    // Nil outside of it.
    Ref<FolderItem> Item(std::int32_t index);

    // The same, but the item stands for the entry itself and not for what it leads to if it is a link.
    Ref<FolderItem> TrueItem(std::int32_t index);

    // Moves the item, with all that it holds, to where the target says, from one file system to another too.
    // Nothing happens if something is there already, even a folder, or if it can't be done. This object and
    // the target keep their paths. REQUIRES: target is not nil (NilObjectException).
    void MoveFileTo(const Ref<FolderItem>& target) const;

    // Sets the permission bits, such as 0755. Without effect where that is not allowed.
    void SetPermissions(std::uint32_t mode) const;

    // Deletes the file, the link itself or the empty folder. What can't be deleted stays.
    void Delete() const;

    // Creates the file for writing, in the place of one that exists; nil if that can't be done. The old one
    // is there until the stream is closed, and for good if not all could be written (OutputFile::Anew). The
    // name of a file type has no effect: the program declares none.
    Ref<TextOutputStream> CreateTextFile() const;
    Ref<BinaryStream> CreateBinaryFile(const std::string& file_type) const;

    // Opens a file that exists for writing over it from its start; nil if that can't be done.
    Ref<BinaryStream> OpenAsBinaryFile() const;

  protected:
    // A listing of the folder, and where a walk goes on to ask for its entries.
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
    bool is_entry_itself_ = false;
    Snapshot snapshot_;  // of Count, for Item
};

// Turns a path into an item. A relative path, a bare name among them, counts from the folder that holds the
// application: the bundle if the program runs from one, else the executable. The item need not exist, but
// the folder that would hold it must: otherwise, and for a path that no file can have, the result is nil.
Ref<FolderItem> GetFolderItem(const std::string& path);

// The running executable.
Ref<FolderItem> ExecutableItem();

// The application as a whole: the bundle folder, Name.app, when the executable lies in its Contents/MacOS,
// whatever the case of these two, else the executable itself.
Ref<FolderItem> ApplicationItem();

}  // namespace varnith
