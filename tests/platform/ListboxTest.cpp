#include <gtest/gtest.h>
#include <malloc.h>

#include "platform/base/Text.h"
#include "platform/ui/Listbox.h"

namespace varnith::test {

struct FilledList : Listbox {
    explicit FilledList(const std::vector<std::string>& counts) {
        SetColumns(" \tName\tCount", "30,,65");
        for (const std::string& count : counts) {
            AddRow("");
            SetCellType(LastIndex(), 0, TypeCheckBox);
            SetCellTag(LastIndex(), 0, Str(ListCount()));
            SetCell(LastIndex(), 2, count);
        }
    }

    // The rows' tags in the order of the list, with a "*" where ticked and brackets for the highlight.
    std::string Order() const {
        std::string order;
        for (std::int32_t row = 0; row < ListCount(); ++row) {
            const std::string tag = CellTag(row, 0) + (CellCheck(row, 0) ? "*" : "");
            order += row == ListIndex() ? "[" + tag + "]" : tag;
        }
        return order;
    }
};

TEST(Listbox, SortsByHeadingAndRowsKeepWhatIsTheirs) {
    FilledList list({"10", "9", "100", "9", "1"});
    list.ToggleCheck(1);
    list.SetListIndex(2);
    for (const auto& [heading, order] : {std::pair(2, "52*41[3]"),
                                         {2, "[3]12*45"},
                                         {2, "52*41[3]"},
                                         {0, "541[3]2*"},
                                         {0, "2*541[3]"},
                                         {7, "2*541[3]"}}) {
        list.PressHeading(heading);
        EXPECT_EQ(list.Order(), order) << heading;
    }
    EXPECT_EQ(list.HeadingIndex(), 0);
    list.AddRow("");
    EXPECT_EQ(list.HeadingIndex(), -1) << "a row that is added stands outside of the order";
}

TEST(Listbox, HoldsARepeatedTextOnce) {
    const std::string path(10'000, 'p');
    FilledList list(std::vector<std::string>(10'000, ""));
    const auto before = mallinfo2().uordblks;
    for (std::int32_t row = 0; row < list.ListCount(); ++row) list.SetCell(row, 1, path);
    EXPECT_LT(mallinfo2().uordblks - before, 1'000'000u);
    list.SetCell(0, 1, "other");
    EXPECT_EQ(list.Cell(1, 1), path);
}

}  // namespace varnith::test
