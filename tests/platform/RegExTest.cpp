#include <gtest/gtest.h>

#include "platform/base/RegEx.h"

namespace varnith::test {
namespace {

TEST(RegEx, FindsTheFirstMatchWhateverTheCaseOrGivesUp) {
    const std::string no_text = "nil";
    const std::string cases[][3] = {
        {"b+", "aBbBc bb", "BbB"},
        {"x", "abc", no_text},
        {"ä", "GrÄßer", "Ä"},
        {"^.$", "ä", "ä"},
        {"^.b",
         "\xFF"
         "b",
         no_text},
        {"a.c", std::string("a\0c", 3), std::string("a\0c", 3)},
        // Searches that would take hours, and all the memory.
        {"(a+)+$", std::string(40, 'a') + "b", no_text},
        {"[ab]+c", std::string(1'000'000, 'a') + "dc", no_text},
        {"(?:a|b)+$", std::string(10'000'000, 'a'), no_text},
        // A text that somebody could have typed is searched to its end.
        {"[ab]+c", std::string(5'000, 'a') + " bc", "bc"},
    };
    for (const auto& [pattern, text, expected] : cases) {
        RegEx search;
        search.SearchPattern = pattern;
        const auto match = search.Search(text);
        EXPECT_EQ(match ? match->Text() : no_text, expected) << pattern;
    }
}

}  // namespace
}  // namespace varnith::test
