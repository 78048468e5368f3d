#include "helpers/ProgramTest.h"

#include <chrono>

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "app/Start.h"
#include "platform/database/Database.h"
#include "platform/threads/Scheduler.h"
#include "settings/Prefs.h"

namespace varnith::test {

void RunThreadsUntil(const std::function<bool()>& condition, std::source_location place) {
    WaitUntil(
        condition, [] { Scheduler::Current().Turn(); }, place);
}

void RunThreads() {
    RunThreadsUntil([] { return !Scheduler::Current().UntilNextTurn(); });
}

void GiveUpPrivileges() {
    __user_cap_header_struct process{_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct none[2]{};
    syscall(SYS_capset, &process, none);
}

ProgramTest::ProgramTest() {
    disk.executable = application / "Varnith";
    disk.elsewhere["/etc/os-release"] = application.File("os-release", "NAME=Testix\n");
    Scheduler::Current().SetSlice(std::chrono::milliseconds(0));
}

int ProgramTest::Start(const std::function<void()>& user) {
    desktop.user = user;
    // A program that starts has not opened its settings yet.
    Prefs::db = nullptr;
    return _Main();
}

void ProgramTest::Locate(const std::optional<std::string>& folder) {
    desktop.choose = [folder] { return folder; };
    Main().PushButton2.Press();
}

void ProgramTest::Scan(const std::string& folder, bool subfolders) {
    Main().CheckBox4.SetValue(subfolders);
    Locate(folder);
    RunThreads();
}

std::string ProgramTest::FromDocuments(std::string text) const {
    const std::size_t place = text.find(documents.Path());
    if (place == text.npos) return text;
    const std::size_t size = documents.Path().size();
    return text[place + size] == '/' ? text.erase(place, size + 1) : text.replace(place, size, ".");
}

Lines ProgramTest::Rows() const {
    const Listbox& list = Main().Listbox1;
    Lines rows;
    for (std::int32_t row = 0; row < list.ListCount(); ++row)
        rows.push_back(FromDocuments(list.Cell(row, 1) + "|" + list.Cell(row, 2) + "|" + list.Cell(row, 3) +
                                     "|" + list.Cell(row, 4)));
    return rows;
}

Lines ProgramTest::Tags() {
    Lines tags;
    for (const char tick : Ticks())
        tags.push_back(Main().Listbox1.CellTag(static_cast<std::int32_t>(tags.size()), 0) +
                       (tick == 'x' ? "*" : ""));
    return tags;
}

std::string ProgramTest::Ticks() {
    std::string ticks;
    for (std::int32_t row = 0; row < Main().Listbox1.ListCount(); ++row)
        ticks += Main().Listbox1.CellCheck(row, 0) ? 'x' : '-';
    return ticks;
}

std::string ProgramTest::Texts() const {
    std::string entries;
    for (const std::string& entry : Main().PopupMenu1.Rows()) entries += (entries.empty() ? "" : ",") + entry;
    return FromDocuments(Main().Title() + "|" + Main().EditField1.Text() + "|" + Main().StaticText2.Text() +
                         "|" + entries);
}

Lines ProgramTest::SavedRows() const {
    Database database;
    database.SetDatabaseFile(FolderItem::FromPath(application / "varnth"));
    database.Connect();
    const auto records = database.SQLSelect(
        "select name||'|'||pagecount||'|'||filepath||'|'||filetype as line from preferences order by rowid");
    if (!records) return {"no saved rows"};
    Lines rows;
    for (; !records->Eof(); records->MoveNext()) rows.push_back(FromDocuments(records->Field("line")));
    return rows;
}

}  // namespace varnith::test
