#include <gtest/gtest.h>

#include "platform/base/Date.h"
#include "platform/base/Dictionary.h"
#include "platform/base/RegEx.h"
#include "platform/base/Text.h"

namespace varnith::test {

// Spaces separate the characters. A byte that is not part of valid UTF-8 counts as a character.
TEST(Text, CutsFieldsAndCharactersAndKeepsEveryByte) {
    for (const std::string spaced : {"a \xC3\xA4 \xE2\x82\xAC \xF0\x9F\x93\x84", "\xE2 \x82", "\xC0 \xAF",
                                     "\xED \xA0 \x80", "a \xF4 \x90 \x80 \x80"}) {
        const std::string text = ReplaceAll(spaced, " ", "");
        const std::int32_t length = CountFields(spaced, " ");
        EXPECT_EQ(Len(text), length) << text;
        for (std::int32_t i = 1; i <= length + 1; ++i)
            EXPECT_EQ(Mid(text, i, 1), NthField(spaced, " ", i)) << text;
    }
    EXPECT_EQ(CountFields("", "."), 0);
}

TEST(Text, ComparesWithoutRegardToCase) {
    using Case = std::tuple<const char*, const char*, bool>;
    for (const auto& [a, b, same] : {Case{"tIFf", "TifF", true},
                                     {"\xC3\x84", "\xC3\xA4", true},
                                     {"\xFFTIF", "\xFFtif", true},
                                     {"tif", "tiff", false},
                                     {"@[", "`{", false},
                                     {"\xFFtif", "\xFEtif", false},
                                     {"\xC4\xB0", "i", false}})
        EXPECT_EQ(SameText(a, b), same) << a;
    Dictionary<int> types;
    for (const char* key : {"TIF", "\xC3\x84", "tiff", "tif"}) types.SetValue(key, types.Count());
    EXPECT_EQ(types.Key(0), "TIF") << "a key keeps its first spelling";
    EXPECT_EQ(types.Value("Tif"), 3);
    EXPECT_EQ(types.Lookup("\xC3\xA4", 9) + types.Lookup("ti", 9), 10);
}

TEST(RegEx, FindsTheFirstMatchWhateverTheCaseOrGivesUp) {
    const std::string no_text = "nil";
    const std::string cases[][3] = {
        {"b+", "aBbBc bb", "BbB"},
        {"^.$", "ä", "ä"},
        {"b", "\xFF b", "b"},
        {"a.c", std::string("a\0c", 3), std::string("a\0c", 3)},
        // Searches that would backtrack for hours are given up; a long run is still skipped in one step.
        {"(a+)+$", std::string(40, 'a') + "b", no_text},
        {"[ab]+c", std::string(1'000'000, 'a') + "dc", no_text},
        {"[ab]+c", std::string(1'000'000, 'a') + " bc", "bc"},
    };
    for (const auto& [pattern, text, expected] : cases) {
        RegEx search;
        search.SearchPattern = pattern;
        const auto match = search.Search(text);
        EXPECT_EQ(match ? match->Text() : no_text, expected) << pattern;
    }
}

TEST(Date, ReadsWritesAndCountsDays) {
    Date date;
    using Case = std::tuple<const char*, int, const char*>;
    for (const auto& [start, day, end] : {Case{"2008-06-24", 31, "2008-07-01"},
                                          {"2024-12-31", 32, "2025-01-01"},
                                          {"2024-03-01", 0, "2024-02-29"}}) {
        date.SetSQLDate(start);
        date.SetDay(day);
        EXPECT_EQ(date.SQLDate(), end);
    }
    for (const char* no_date : {"", "2008-6-24", "2008-06-31", "2008-00-10", "24.06.2008", "2008-06-24 ",
                                "2008/06/24", "2008-06-2.", "99999999999999-01-01"})
        date.SetSQLDate(no_date);
    EXPECT_EQ(date.SQLDate(), "2024-02-29") << "an invalid date changes nothing";
}

}  // namespace varnith::test
