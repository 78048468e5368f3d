#include "WalkTest.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>

#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include "FailingCalls.h"
#include "export/Exporter.h"
#include "helpers/MakersServer.h"
#include "platform/base/Guard.h"
#include "platform/database/Database.h"
#include "platform/ui/Application.h"
#include "settings/Prefs.h"
#include "support/SupportWindow.h"
#include "update/AutoUpdateWindow.h"

namespace varnith::test {

namespace {

namespace fs = std::filesystem;

const std::string Old = "#!/bin/sh\n# old\n";
const std::string New = "#!/bin/sh\n# new\n";
std::string served_archive;
const Lines Before{"b.tif|1|before|tif"};
const std::string Setting = "it's new";

void ServeOne() {
    RawServer& server = MakersServer();
    const std::string request = server.TakeRequest();
    const std::string body = request.starts_with("GET /updates/")
                                 ? "version=1.2.4\ndownload-mac=http://" + server.At("/new/a.tar.gz")
                             : request.starts_with("GET /new/") ? BytesOf(served_archive)
                                                                : "thanks";
    server.Send("HTTP/1.0 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
    server.Close();
}

// The value that a statement gives, through a connection of its own; "?" if it fails.
std::string Asked(const std::string& path, const std::string& statement) {
    Database database;
    database.SetDatabaseFile(FolderItem::FromPath(path));
    if (!database.Connect()) return "?";
    const auto found = database.SQLSelect(statement);
    return found ? found->IdxField(1) : "?";
}

std::string Temporary() {
    return std::string(getenv("TMPDIR")) + "/varnith-" + std::to_string(geteuid());
}

Ref<AutoUpdateWindow> Offer() {
    return Ref<AutoUpdateWindow>::As(Application::Current().FrontWindow());
}

}  // namespace

void WalkTest::StartServers(const std::string& folder) {
    served_archive = folder + "/a.tar.gz";
    const std::string commands = "cd " + folder +
                                 " && mkdir -p New.app/Contents/MacOS && cd New.app/Contents && " +
                                 "printf '" + New + "' >MacOS/Varnith && chmod 755 MacOS/Varnith && " +
                                 "head -c 200000 /dev/urandom >data && cd ../.. && tar -czf a.tar.gz New.app";
    ASSERT_EQ(std::system(commands.c_str()), 0);
    for (int process = 0; process < 4; ++process) {
        if (fork() != 0) continue;
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (;;) ServeOne();
    }
}

WalkTest::WalkTest() {
    // So long that the rows fill more than a page of the database: SQLite then goes to the disk in the midst
    // of a save, too.
    const auto long_name = [](int number) { return std::to_string(number) + std::string(200, '-'); };
    for (int i = 0; i < 12; ++i)
        documents.File(long_name(i % 4) + "/" + long_name(i) + ".tif", TiffBytes(i + 1));
    documents.File(long_name(0) + "/deeper/\xFF.TIFF", TiffBytes(2));
    documents.File(long_name(1) + "/.hidden", long_name(1) + ".tif\n");
    documents.File("before/b.tif", TiffBytes(1));
    for (const char* name : {"0", "1", "2"}) home.File(std::string("exports/") + name, "before");
    desktop.choose_file = [this](const std::string&, const std::string&) {
        const auto format = Exporter::Instance()->PopupMenu1.ListIndex();
        return home / ("exports/" + std::to_string(format - 1));
    };
    disk.opened.reserve(100'000);  // so that the double itself allocates nothing
    MakeApplication();
}

void WalkTest::MakeApplication() {
    const std::string program = application / "Varnith.app/Contents/MacOS/Varnith";
    disk.executable = program;
    if (fs::exists(program)) return;
    fs::remove_all(application / "Varnith.app");
    fs::permissions(WriteFile(program, Old), fs::perms(0755));
}

void WalkTest::Check(bool first, const std::function<void()>& begin, const std::function<void()>& end) {
    first_ = first;
    if (!first) {
        Start([this] { Scan(documents / "before", true); });
        ASSERT_EQ(SavedRows(), Before);
        desktop.messages.clear();
    }

    begin();
    const int status = Start([this] { Walk(); });
    end();
    WaitForWorkers();
    Prefs::db = nullptr;
    EXPECT_EQ(status, 0);
    CheckMessages();
    CheckSaved(true);
    CheckSettings(true);
    CheckExports(true);
    CheckApplication();

    // The user frees the places that the installation needs, and removes a database that a failed first start
    // has left empty; nothing in the program does.
    for (const auto& file : {application / "varnth", home / "settings/varnth"})
        if (fs::exists(file) && fs::is_empty(file)) fs::remove(file);
    fs::remove_all(Temporary());
    fs::remove_all(application / "n-Varnith.app");
    MakeApplication();
    desktop.messages.clear();
    desktop.quit_status.reset();
    EXPECT_EQ(Start([this] { Walk(); }), 0);
    Prefs::db = nullptr;
    EXPECT_EQ(desktop.messages, Lines{"Support Ticket Sent!"});
    EXPECT_EQ(desktop.quit_status, 0) << "the update is not installed";
    EXPECT_EQ(scanned_.size(), 13u);
    CheckSaved(false);
    CheckSettings(false);
    CheckExports(false);
}

// Each step is taken whatever has become of the one before, as an event of its own.
void WalkTest::Walk() {
    WaitFor([] { return static_cast<bool>(Offer()); });
    Guarded([this] { Scan(documents.Path(), true); });
    {
        const Unfailing meanwhile;
        scanned_ = Rows();
    }
    Guarded([] { Main().PopupMenu1.Pick("All"); });
    if (Main().Listbox1.ListCount() > 0) Main().Listbox1.ToggleCheck(0);
    for (std::int32_t format = 1; format <= 3; ++format) {
        Guarded([this, format] { Export(format); });
        NoteExported(format);
    }
    Guarded([] { Prefs::SetValue("faults", true, Setting); });
    Guarded([] { SendTicket(); });
    Guarded([this] { Install(); });
}

void WalkTest::WaitFor(const std::function<bool()>& condition) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (!condition() && std::chrono::steady_clock::now() < limit) Desktop::Current().DoEvents(5);
}

void WalkTest::Export(std::int32_t format) {
    const auto window = Exporter::Instance();
    window->Show();
    window->PopupMenu1.Pick(window->PopupMenu1.Rows().at(static_cast<std::size_t>(format)));
    window->EditField1.SetText(";");
    window->PushButton1.Press();
}

void WalkTest::NoteExported(std::int32_t format) {
    const Unfailing meanwhile;
    const Listbox& list = Main().Listbox1;
    const std::string separator = format == 2 ? ";" : "\t";
    std::string& bytes = exported_[format - 1];
    bytes.clear();
    for (std::int32_t row = 0; row < list.ListCount(); ++row) {
        const std::string fields = list.Cell(row, 1) + separator + list.Cell(row, 2) + separator +
                                   list.Cell(row, 3) + separator + list.Cell(row, 4);
        if (format == 1)
            bytes += "\t" + fields + "\t\t\r";
        else if (list.CellCheck(row, 0))
            bytes += fields + "\n";
    }
}

void WalkTest::SendTicket() {
    const auto window = SupportWindow::Instance();
    window->Show();
    window->EditField1.SetText("me@host.example");
    window->EditField2.SetText("me");
    window->EditField3.SetText("text");
    window->Patience = 2;
    window->Timer1_Action();
    window->PushButton1.Press();
    window->Close();
}

void WalkTest::Install() {
    const auto offer = Offer();
    if (!offer) return;
    const std::size_t messages = desktop.messages.size();
    offer->ActionBtn.Press();
    WaitFor([&] { return desktop.quit_status || desktop.messages.size() > messages; });
}

void WalkTest::CheckMessages() const {
    const Lines known{
        "Support Ticket Sent!", "Error installing updated application.",
        "No internet connection. Please establish an internet connection and resubmit the form. "
        "Thank you."};
    for (const std::string& message : desktop.messages)
        EXPECT_NE(std::find(known.begin(), known.end(), message), known.end()) << message;
}

// A statement that fails for once is passed over: the deletion of the earlier rows, or the insertion of one
// row.
void WalkTest::CheckSaved(bool may_lack) const {
    Lines saved = SavedRows();
    if (may_lack && saved.size() > 1 && saved.front() == Before.front()) saved.erase(saved.begin());
    if (may_lack && saved.size() + 1 == scanned_.size()) {
        const auto missing = std::ranges::mismatch(scanned_, saved).in1;
        saved.insert(saved.begin() + (missing - scanned_.begin()), *missing);
    }
    if (may_lack && first_ && saved == Lines{"no saved rows"}) return;
    EXPECT_EQ(Asked(application / "varnth", "pragma integrity_check"), "ok");
    EXPECT_TRUE(saved == scanned_ || (may_lack && (saved.empty() || saved == Before)))
        << saved.size() << " rows are saved of " << scanned_.size();
}

void WalkTest::CheckSettings(bool may_lack) const {
    const std::string settings = home / "settings/varnth";
    const std::string value = Asked(settings, "select value from preferences where name='VRNTH-faults'");
    if (may_lack && first_ && value == "?") return;
    EXPECT_EQ(Asked(settings, "pragma integrity_check"), "ok");
    EXPECT_TRUE(value == Setting || (may_lack && value.empty())) << value;
    const std::string checks =
        Asked(settings, "select count(*) from preferences where name='VRNTH-lastupdatecheck'");
    EXPECT_TRUE(checks == "1" || (may_lack && first_)) << checks;
}

void WalkTest::CheckExports(bool may_lack) const {
    for (int format = 0; format < 3; ++format) {
        const std::string bytes = BytesOf(home / ("exports/" + std::to_string(format)));
        EXPECT_TRUE(bytes == exported_[format] || (may_lack && bytes == "before"))
            << "format " << format << " holds: " << bytes;
    }
}

// No step of an installation is undone, so the program may be left under another name: that of the executable
// is used if the bundle can't be looked at. But it must be left.
void WalkTest::CheckApplication() const {
    std::string found;
    for (const std::string& place :
         {application / "Varnith.app", application / "n-Varnith.app", application / "Varnith",
          application / "n-Varnith", Temporary() + "/o-Varnith.app"}) {
        const std::string program = place + "/Contents/MacOS/Varnith";
        if (!fs::exists(program)) continue;
        const std::string bytes = BytesOf(program);
        const bool is_executable = access(program.c_str(), X_OK) == 0;
        const bool is_whole =
            bytes == Old || (bytes == New && fs::file_size(place + "/Contents/data") == 200'000);
        if (is_executable && is_whole) return;
        found += place + "\n";
    }
    ADD_FAILURE() << "no whole program is left, only " << found;
}

}  // namespace varnith::test
