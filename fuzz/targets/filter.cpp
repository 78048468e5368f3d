#include <cassert>

#include "app/MainWindow.h"
#include "helpers/TemporaryFolder.h"
#include "platform/base/InForce.h"
#include "platform/database/Database.h"
#include "platform/files/FileSystem.h"

using namespace varnith;

static const test::TemporaryFolder folder;

struct Disk : FileSystem {
    Disk() {
        Database database;
        database.SetDatabaseFile(FolderItem::FromPath(folder / "varnth"));
        database.CreateDatabaseFile();
        database.SQLExecute("create table preferences (name, pagecount, filepath, filetype)");
        database.SQLExecute("insert into preferences values ('a.tif', 1, '/', 'tif'), ('b', 2, '/', 'TIFF')");
    }
    std::string ExecutablePath() const override { return folder / "Varnith"; }
};

// A type, whatever text it is, selects rows or leaves the list as it is, and changes nothing on the disk.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Disk disk;
    static const test::Tree before = test::TreeOf(folder.Path());
    static const auto window = MakeRef<MainWindow>();
    const InForce<const FileSystem> in_force(disk);
    window->PopupMenu1.DeleteAllRows();
    window->PopupMenu1.AddRow(std::string(reinterpret_cast<const char*>(data), size));
    window->PopupMenu1.SetListIndex(0);
    window->Listbox1.AddRow("");
    window->PopupMenu1_Change();
    assert(window->Listbox1.ListCount() > 0);
    assert(test::TreeOf(folder.Path()) == before);
    window->Listbox1.DeleteAllRows();
    return 0;
}
