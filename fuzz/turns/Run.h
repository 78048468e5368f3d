#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Makers.h"
#include "Random.h"
#include "RandomTree.h"
#include "SavedTable.h"
#include "ShownRows.h"
#include "Slowness.h"
#include "helpers/ProgramTest.h"
#include "update/AutoUpdateWindow.h"

namespace varnith::test {

// How often it came to what the runs are made for.
struct Totals {
    long turns = 0;
    int finished = 0;
    int filtered = 0;
    int exported = 0;
    int offered = 0;
    int cut_short = 0;
    int emptied = 0;
};

// One run of the program, from its start to its end, with a user who does everything in random order. The
// rules are checked as it goes, by the expectations of GoogleTest.
class Run : public ProgramTest {
  public:
    explicit Run(std::uint32_t seed);

    void Do(Totals& totals);

  private:
    void TestBody() override {}

    void Use(Totals& totals);
    void LookAtEachTurn();
    void ComeToTheEnd();
    void ComeToTheSave();
    bool HasQuit() const { return desktop.quit_status.has_value(); }
    void SomeTurns(int most);

    // Each action of the user ends with `depth` below 2 in a dialog in which another action may be done.
    void Act(int depth);
    bool GoOnInDialog(int depth);
    void Locate(int depth);
    void Filter(int depth);
    void Sort(int depth);
    void Tick(int depth);
    void TickAll(int depth);
    void Export(int depth);
    void OpenFile(int depth);
    void WriteToSupport(int depth);
    void AnswerOffer(int depth);
    void Leave(int depth);

    std::string NextFolder(bool on_thread);
    std::string Ticks() const;
    std::string Exported(int format) const;
    static Ref<AutoUpdateWindow> Offer();

    Random random_;
    Slowness slowness_;
    Makers makers_;
    SavedTable table_{application / "varnth", [this] { slowness_.Delay(4, std::chrono::milliseconds(100)); }};
    ShownRows rows_{table_};
    std::vector<std::pair<std::string, RandomTree>> trees_;
    Ref<MainWindow> window_;
    bool has_other_threads_ = false;  // after the last turn
    int scans_ = 0;
    int exports_ = 0;
    int exported_ = 0;
};

}  // namespace varnith::test
