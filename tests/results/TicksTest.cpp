#include "platform/threads/Scheduler.h"
#include "support/ProgramTest.h"

namespace varnith::test {

class TicksTest : public ProgramTest {
  protected:
    static void SetTicks(const std::string& ticks) {
        Main().Listbox1.DeleteAllRows();
        for (const char tick : ticks) {
            Main().Listbox1.AddRow("");
            Main().Listbox1.SetCellCheck(Main().Listbox1.LastIndex(), 0, tick == 'x');
        }
    }
    // The menu is asked for with the right button and that entry is picked; nothing for a cancel.
    void PickFromMenu(const std::optional<std::size_t>& entry) {
        desktop.right_button = true;
        desktop.choose_entry = [this, entry](const Lines& entries) {
            shown = entries;
            return entry;
        };
        EXPECT_FALSE(Main().Listbox1.PressMouse(5, 5));
    }

    Lines shown;
};

TEST_F(TicksTest, AreSetByTheMenu) {
    using Case = std::tuple<const char*, std::optional<std::size_t>, const char*>;
    Start([&] {
        for (const auto& [before, entry, after] : {Case{"-x-", 0, "xxx"},
                                                   {"-x-", 1, "---"},
                                                   {"-x-", 3, "x-x"},
                                                   {"-x-", {}, "-x-"},
                                                   {"", 0, ""},
                                                   {"", 3, ""}}) {
            SetTicks(before);
            PickFromMenu(entry);
            EXPECT_EQ(Ticks(), after) << before;
            EXPECT_EQ(shown, Lines({"Select All", "Unselect All", "-", "Invert Selection"}));
        }
        SetTicks("x-");
        Main().ContextualMenu1_Action("INVERT selection");
        EXPECT_EQ(Ticks(), "-x");
        shown.clear();
        desktop.right_button = false;
        EXPECT_FALSE(Main().Listbox1.PressMouse(5, 5));
        EXPECT_TRUE(shown.empty());
    });
}

TEST_F(TicksTest, AreSetOnRowsThatAScanAddsMeanwhile) {
    for (int i = 0; i < 20; ++i) documents.File(std::to_string(i) + ".tif", TiffBytes(1));
    Start([&] {
        Main().CheckBox4.SetValue(true);
        Locate(documents.Path());
        RunThreadsUntil([] { return Main().Listbox1.ListCount() == 5; });
        PickFromMenu(0);
        EXPECT_EQ(Ticks(), std::string(20, 'x'));
        RunThreads();
        EXPECT_EQ(Ticks(), std::string(20, 'x'));
        EXPECT_EQ(SavedRows().size(), 20u);
        Scan(documents.Path(), true);
        EXPECT_EQ(Ticks(), std::string(20, '-'));
    });
}

}  // namespace varnith::test
