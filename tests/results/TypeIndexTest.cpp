#include "platform/base/Text.h"
#include "results/Item.h"
#include "support/ProgramTest.h"

namespace varnith::test {

using TypeIndexTest = ProgramTest;

TEST_F(TypeIndexTest, HoldsTheTypesOfTheListAndFillsThePopup) {
    const std::pair<Lines, Lines> cases[] = {
        {{}, {}},
        {{"tif", "tif", "tiff"}, {"tif 2 1~2", "tiff 1 3"}},
        {{"TIF", "tif"}, {"TIF 2 1~2"}},
        {{"tif", "x", "TIF", ""}, {"tif 2 1~3"}},
        {{"\xC3\xA4", "\xC3\xA4\xC3\xA4", "\xFF\xFE"}, {"\xC3\xA4\xC3\xA4 1 2", "\xFF\xFE 1 3"}}};
    Start([&] {
        EXPECT_FALSE(Main().words);
        Main().PopupMenu1.Change = [] { ADD_FAILURE() << "no pick by the user"; };
        for (const auto& [types, expected] : cases) {
            Main().Listbox1.DeleteAllRows();
            for (const std::string& type : types) {
                Main().Listbox1.AddRow("");
                Main().Listbox1.SetCell(Main().Listbox1.LastIndex(), 4, type);
            }
            Main().ReadList();
            Lines index;
            Lines popup = {"All"};
            for (std::int32_t i = 0; i < Main().words->Count(); ++i) {
                const std::string& type = popup.emplace_back(Main().words->Key(i));
                const auto item = Main().words->Value(type);
                index.push_back(type + " " + Str(item->count) + " " + item->Positions());
            }
            EXPECT_EQ(index, expected);
            EXPECT_EQ(Main().PopupMenu1.Rows(), popup);
        }
        EXPECT_EQ(Item().Positions(), "");
    });
}

}  // namespace varnith::test
