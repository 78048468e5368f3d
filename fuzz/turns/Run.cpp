#include "Run.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include "app/App.h"
#include "export/Exporter.h"
#include "platform/threads/Scheduler.h"
#include "support/SupportWindow.h"
#include "update/UpdateUtilities.h"

namespace varnith::test {

namespace {

// A run has some thousands of turns, and many more while it waits for a server.
constexpr long MostTurns = 30'000'000;

void Turn() {
    Desktop::Current().DoEvents(0);
}

}  // namespace

Run::Run(std::uint32_t seed) : random_(seed), slowness_(seed), makers_(seed) {
    for (const char* name : {"a", "b", "c"})
        trees_.emplace_back(documents / name, RandomTree(random_, documents / name));
    disk.fails = [this](const std::string& path) {
        slowness_.Delay(30, std::chrono::milliseconds(20));
        return path.ends_with("unreadable");
    };
}

void Run::Do(Totals& totals) {
    EXPECT_EQ(Start([&] { Use(totals); }), 0);
    // Ends its request, so that the server waits for nobody.
    UpdateUtilities::checker = nullptr;
    WaitForWorkers();
    Lines saved;
    for (const Row& row : table_.Read()) saved.push_back(row.text);
    EXPECT_EQ(saved, table_.Expected());
    for (const std::string& message : desktop.messages)
        EXPECT_EQ(message.find("error:"), std::string::npos) << message;
    totals.turns += slowness_.Turns();
    totals.finished += rows_.finished;
    totals.filtered += rows_.filtered;
    totals.exported += exported_;
    totals.cut_short += table_.CutShort().first;
    totals.emptied += table_.CutShort().second;
}

void Run::Use(Totals& totals) {
    window_ = MainWindow::Instance();
    rows_.window = window_;
    // Started before any scan, so it has its turn before the scan thread.
    const auto watcher = MakeRef<Beside>([&] {
        for (;; Yield()) LookAtEachTurn();
    });
    for (int many = random_.Between(5, 25); many > 0 && !HasQuit(); --many) Act(0);
    if (!HasQuit() && random_.OneIn(2)) ComeToTheEnd();
    totals.offered += static_cast<bool>(Offer());
    rows_.Kill();
    rows_.window = nullptr;
    window_ = nullptr;
}

void Run::LookAtEachTurn() {
    slowness_.CountTurn();
    if (slowness_.Turns() > MostTurns) {
        std::fputs("something waits without an end\n", stderr);
        std::abort();
    }
    rows_.Look();
    has_other_threads_ = Scheduler::Current().UntilNextTurn().has_value();
}

void Run::ComeToTheEnd() {
    Turn();
    WaitUntil([&] { return !has_other_threads_; }, Turn);
    rows_.Look();
    EXPECT_FALSE(rows_.IsRunning());
}

// A save is short, so that it would seldom be met by chance.
void Run::ComeToTheSave() {
    const std::size_t before = table_.Saves();
    for (int turn = 0; turn < 1000 && has_other_threads_ && table_.Saves() == before; ++turn) Turn();
}

void Run::SomeTurns(int most) {
    for (int many = random_.Below(most); many > 0 && !HasQuit(); --many) Turn();
}

void Run::Act(int depth) {
    static constexpr int MostTurnsBefore[] = {5, 5, 5, 50, 50, 400};
    static constexpr void (Run::*Actions[])(int) = {
        &Run::Locate, &Run::Locate,  &Run::Locate, &Run::Locate,   &Run::Locate,         &Run::Locate,
        &Run::Filter, &Run::Filter,  &Run::Filter, &Run::Filter,   &Run::Sort,           &Run::Sort,
        &Run::Tick,   &Run::TickAll, &Run::Export, &Run::OpenFile, &Run::WriteToSupport, &Run::AnswerOffer,
        &Run::Export, &Run::TickAll, &Run::Leave};
    if (random_.OneIn(5)) ComeToTheSave();
    SomeTurns(random_.Of(MostTurnsBefore));
    if (HasQuit()) return;
    rows_.Look();
    (this->*random_.Of(Actions))(depth);
    rows_.Look();
}

// What goes on while a dialog is open. False if it ends without an answer.
bool Run::GoOnInDialog(int depth) {
    SomeTurns(20);
    if (depth < 2 && !HasQuit() && random_.OneIn(4)) Act(depth + 1);
    return !HasQuit() && !random_.OneIn(5);
}

void Run::Locate(int depth) {
    const bool on_thread = !random_.OneIn(4);
    window_->CheckBox4.SetValue(on_thread);
    std::optional<std::string> folder;
    desktop.choose = [&] {
        rows_.Kill();
        if (GoOnInDialog(depth)) folder = NextFolder(on_thread);
        return folder;
    };
    window_->PushButton2.Press();
    if (folder && !on_thread) rows_.End(*folder);
}

// Each scan reaches its tree by a path of its own. Some paths lead nowhere.
std::string Run::NextFolder(bool on_thread) {
    const std::string folder = documents / ("scan " + std::to_string(++scans_));
    if (random_.OneIn(15)) {
        rows_.Begin(folder, {}, on_thread);
        return folder;
    }
    const auto& [path, tree] = random_.Of(trees_);
    std::filesystem::create_directory_symlink(path, folder);
    rows_.Begin(folder, on_thread ? tree.Recursive(folder) : tree.Flat(folder), on_thread);
    return folder;
}

void Run::Filter(int /*depth*/) {
    const Lines entries = window_->PopupMenu1.Rows();
    if (entries.empty()) return;
    const std::string entry = random_.OneIn(2) ? "All" : random_.Of(entries);
    rows_.BeginFilter(entry == "All" ? "" : entry);
    const long before = slowness_.Turns();
    window_->PopupMenu1.Pick(entry);
    rows_.EndFilter(slowness_.Turns() == before);
}

void Run::Sort(int /*depth*/) {
    rows_.Sort(random_.Below(5));
}

void Run::Tick(int /*depth*/) {
    window_->Listbox1.ToggleCheck(random_.Below(10));
}

std::string Run::Ticks() const {
    std::string ticks;
    for (std::int32_t row = 0; row < window_->Listbox1.ListCount(); ++row)
        ticks += window_->Listbox1.CellCheck(row, 0) ? 'x' : '-';
    return ticks;
}

// Rows that a scan adds meanwhile have no ticks until the entry gives them some.
void Run::TickAll(int depth) {
    enum Entry : std::size_t { Select = 0, Unselect = 1, Invert = 3 };
    std::optional<std::size_t> entry;
    std::string before;
    int order = 0;
    desktop.choose_entry = [&](const Lines&) {
        if (GoOnInDialog(depth)) entry = random_.Of({Select, Unselect, Invert});
        before = Ticks();
        order = rows_.Order();
        return entry;
    };
    desktop.right_button = true;
    window_->Listbox1.PressMouse(1, 1);
    desktop.right_button = false;
    const std::string after = Ticks();
    if (!entry || order != rows_.Order()) return;
    before.resize(after.size(), '-');
    for (std::size_t row = 0; row < after.size(); ++row)
        EXPECT_EQ(after[row], *entry == Select || (*entry == Invert && before[row] == '-') ? 'x' : '-');
}

void Run::Export(int depth) {
    window_->RunMenuHandler("FileExport");
    const auto exporter = Exporter::Instance();
    const int format = random_.Between(1, 3);
    exporter->PopupMenu1.SetListIndex(format);
    exporter->EditField1.SetText(";");
    std::optional<std::string> file;
    int order = 0;
    desktop.choose_file = [&](const std::string&, const std::string&) {
        if (GoOnInDialog(depth)) file = documents / ("export " + std::to_string(++exports_));
        order = rows_.Order();
        return file;
    };
    exporter->PushButton1.Press();
    if (!file || order != rows_.Order()) return;
    EXPECT_EQ(BytesOf(*file), Exported(format));
    ++exported_;
}

// The file of an export in that format that ends now.
std::string Run::Exported(int format) const {
    const Listbox& list = window_->Listbox1;
    const bool is_spreadsheet = format == 1;
    const std::string separator = format == 2 ? ";" : "\t";
    std::string bytes;
    for (std::int32_t row = 0; row < list.ListCount(); ++row) {
        if (!is_spreadsheet && !list.CellCheck(row, 0)) continue;
        if (is_spreadsheet) bytes += "\t";
        for (std::int32_t column = 1; column <= 3; ++column) bytes += list.Cell(row, column) + separator;
        bytes += list.Cell(row, 4) + (is_spreadsheet ? "\t\t\r" : "\n");
    }
    return bytes;
}

void Run::OpenFile(int /*depth*/) {
    Listbox& list = window_->Listbox1;
    list.SetListIndex(random_.Between(-1, list.ListCount()));
    const std::size_t before = desktop.opened.size();
    list.ClickTwice();
    EXPECT_EQ(desktop.opened.size(), before + (list.ListIndex() < 0 ? 0 : 1));
}

void Run::WriteToSupport(int /*depth*/) {
    window_->RunMenuHandler("HelpSupport");
    const auto support = SupportWindow::Instance();
    support->EditField1.SetText(random_.OneIn(4) ? "nobody" : "me@host.example");
    support->EditField2.SetText("n");
    support->EditField3.SetText("t");
    support->Timer1_Action();
    SomeTurns(20);
    // The servers take one request at a time, and "Send" keeps the event loop from sending that of the check.
    WaitUntil([&] { return makers_.HaveAnsweredCheck(); }, Turn);
    random_.OneIn(3) ? support->PushButton2.Press() : support->PushButton1.Press();
}

Ref<AutoUpdateWindow> Run::Offer() {
    return Ref<AutoUpdateWindow>::As(Application::Current().FrontWindow());
}

void Run::AnswerOffer(int /*depth*/) {
    if (const auto offer = Offer()) offer->ActionBtn.Press();
}

void Run::Leave(int /*depth*/) {
    if (!random_.OneIn(3)) return;
    random_.OneIn(2) ? window_->Close() : Application::Current().Choose(window_->FileQuit());
}

}  // namespace varnith::test
