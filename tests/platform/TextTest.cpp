#include <gtest/gtest.h>

#include "platform/base/Dictionary.h"
#include "platform/base/Text.h"

namespace varnith::test {

TEST(Text, CutsFields) {
    using Case = std::tuple<const char*, int, const char*>;
    for (const auto& [text, fields, last] :
         {Case{"a.b.tif", 3, "tif"}, {"abc", 1, "abc"}, {"a.tif.", 3, ""}, {"..", 3, ""}, {"", 0, ""}}) {
        EXPECT_EQ(CountFields(text, "."), fields) << text;
        EXPECT_EQ(NthField(text, ".", fields), last) << text;
        EXPECT_EQ(NthField(text, ".", fields + 1), "") << text;
    }
}

// Characters of one to four bytes; then what is cut off, overlong, a surrogate, or beyond the last code
// point, where each byte counts as a character. A blank stands between the characters of a case.
TEST(Text, CountsCharactersAndKeepsEveryByte) {
    for (const std::string spaced : {"a \xC3\xA4 \xE2\x82\xAC \xF0\x9F\x93\x84", "\xE2 \x82", "\xC0 \xAF",
                                     "\xED \xA0 \x80", "a \xF4 \x90 \x80 \x80"}) {
        const std::string text = ReplaceAll(spaced, " ", "");
        const std::int32_t length = CountFields(spaced, " ");
        EXPECT_EQ(Len(text), length) << text;
        for (std::int32_t i = 1; i <= length; ++i)
            EXPECT_EQ(Mid(text, i, 1), NthField(spaced, " ", i)) << text;
        EXPECT_EQ(Mid(text, length + 1), "");
    }
}

TEST(Text, ComparesWithoutRegardToCase) {
    for (const auto& [a, b] : {std::pair("tIFf", "TifF"), {"\xC3\x84", "\xC3\xA4"}, {"\xFFTIF", "\xFFtif"}})
        EXPECT_TRUE(SameText(a, b)) << a;
    for (const auto& [a, b] :
         {std::pair("tif", "tiff"), {"@[", "`{"}, {"\xFFtif", "\xFEtif"}, {"\xC4\xB0", "i"}})
        EXPECT_FALSE(SameText(a, b)) << a;
}

TEST(Text, HasANaturalOrder) {
    const std::string rising =
        "|007|7|10|99999999999999999998|99999999999999999999|A|a|a01b|a1b|a2|A10|a10|a10b|b|B1|b1|"
        "scan_|scan_10|z|\xC3\xA4|\xFF";
    const std::int32_t count = CountFields(rising, "|");
    for (std::int32_t i = 1; i <= count; ++i)
        for (std::int32_t j = 1; j <= count; ++j)
            EXPECT_EQ(NaturalKey(NthField(rising, "|", i)) <=> NaturalKey(NthField(rising, "|", j)), i <=> j)
                << NthField(rising, "|", i) << " " << NthField(rising, "|", j);
}

TEST(Dictionary, KeepsSpellingAndOrderOfTheFirstKey) {
    Dictionary<int> types;
    for (const char* key : {"TIF", "\xC3\x84", "tiff", "tif"}) types.SetValue(key, types.Count());
    EXPECT_EQ(types.Key(0), "TIF");
    EXPECT_EQ(types.Value("Tif"), 3);
    EXPECT_EQ(types.Lookup("\xC3\xA4", 9) + types.Lookup("ti", 9), 10);
    EXPECT_THROW(types.Value("ti"), KeyNotFoundException);
}

}  // namespace varnith::test
