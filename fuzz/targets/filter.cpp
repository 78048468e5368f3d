#include <cassert>

#include "app/MainWindow.h"
#include "helpers/TemporaryFolder.h"
#include "platform/base/InForce.h"
#include "platform/database/Database.h"
#include "platform/files/FileSystem.h"

// A type, whatever text it is, selects rows or leaves the list as it is, and changes nothing on the disk.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const varnith::test::TemporaryFolder folder;
    static const varnith::test::Tree before = [] {
        varnith::Database database;
        database.SetDatabaseFile(varnith::FolderItem::FromPath(folder / "varnth"));
        database.CreateDatabaseFile();
        database.SQLExecute(
            "create table preferences as select 1 name, 2 pagecount, 3 filepath, 't' filetype");
        return varnith::test::TreeOf(folder.Path());
    }();
    struct : varnith::FileSystem {
        std::string ExecutablePath() const override { return folder / "Varnith"; }
    } const disk;
    const varnith::InForce<const varnith::FileSystem> in_force(disk);
    const auto window = varnith::MakeRef<varnith::MainWindow>();
    window->PopupMenu1.AddRow(std::string(reinterpret_cast<const char*>(data), size));
    window->Listbox1.AddRow("");
    window->PopupMenu1.Pick(window->PopupMenu1.Rows().at(0));
    assert(window->Listbox1.ListCount() > 0 && varnith::test::TreeOf(folder.Path()) == before);
    return 0;
}
