#include "app/MainWindow.h"
#include "platform/base/Text.h"
#include "support/ProgramTest.h"

namespace varnith::test {

using MainWindowTest = ProgramTest;

TEST_F(MainWindowTest, ControlsFollowTheWindowByTheirLocks) {
    Start([&] {
        MainWindow& w = Main();
        const auto layout = [&](std::int32_t width, std::int32_t height) {
            w.SetSize(width, height);
            Lines lines = {Str(w.Width()) + "x" + Str(w.Height())};
            for (const Control* control : w.Controls()) {
                const Bounds& b = control->CurrentBounds();
                lines.push_back(Str(control->TabIndex()) + ": " + Str(b.Left) + "," + Str(b.Top) + " " +
                                Str(b.Width) + "x" + Str(b.Height) + " " + Str(control->TextSize()));
            }
            return lines;
        };
        EXPECT_EQ(layout(10, 10), (Lines{"774x670", "0: 7,38 754x601 13", "2: 9,8 56x20 13",
                                         "3: 72,7 438x22 13", "4: 686,6 80x20 13", "5: 624,643 132x20 0",
                                         "8: 10,645 147x20 13", "12: 560,7 114x20 13", "13: 515,7 40x20 13"}))
            << "the window doesn't shrink below its design";
        EXPECT_EQ(layout(874, 720),
                  (Lines{"874x720", "0: 7,38 854x651 13", "2: 9,8 56x20 13", "3: 72,7 538x22 13",
                         "4: 786,6 80x20 13", "5: 724,693 132x20 0", "8: 10,695 147x20 13",
                         "12: 660,7 114x20 13", "13: 615,7 40x20 13"}));
        EXPECT_EQ(layout(40000, 40000)[0], "32000x32000");
        EXPECT_EQ(w.Listbox1.ColumnWidths(), (std::vector<std::int32_t>{30, 0, 65, 0, 55}));
        EXPECT_TRUE(w.EditField1.ReadOnly() && !w.CheckBox4.Value());
    });
}

TEST_F(MainWindowTest, StandsInTheMiddleOfTheFirstScreen) {
    using Case = std::tuple<Desktop::Size, std::int32_t, std::int32_t>;
    for (const auto& [screen, left, top] :
         {Case{{1024, 768}, 125, 49}, {{1025, 769}, 125, 49}, {{1367, 671}, 296, 0}, {{773, 600}, 0, -35}}) {
        desktop.screen = screen;
        Start([&] { EXPECT_EQ(std::pair(Main().Left(), Main().Top()), std::pair(left, top)); });
    }
}

}  // namespace varnith::test
