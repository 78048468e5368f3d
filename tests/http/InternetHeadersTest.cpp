#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "http/InternetHeaders.h"
#include "platform/base/Text.h"

namespace varnith::test {

TEST(InternetHeaders, ParsesATextWithAnyLineEnding) {
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"a: 1\nb: 2\r\nc: 3", "a: 1\nb: 2|c: 3"},
        {"a: 1\rb: 2\nc: 3", "a: 1\rb: 2|c: 3"},
        {"a:\t \v1 : 2 \r\nno colon\r\n: x", "a: 1 : 2 |: x"},
        {"a: 1\r\n 2\r\n\t 3\r\nb:\r\n\t4", "a: 1 2  3|b: 4"},
    };
    InternetHeaders headers;
    for (const auto& [text, expected] : cases) {
        headers._ParseHeaders(text);
        EXPECT_EQ(ReplaceAll(headers._FormatHTTPHeaders(), "\r\n", "|"), expected) << text;
        headers.DeleteAllHeaders();
        EXPECT_EQ(headers.Source(), text) << "the parsed text wins";
    }
}

TEST(InternetHeaders, ShowsRepeatedAndMissingHeaders) {
    InternetHeaders headers;
    for (const char* value : {"a", "", "b"}) headers.AppendHeader("Set-Cookie", value);
    headers.AppendHeader("Empty", "");
    EXPECT_EQ(headers.Source(), "Set-Cookie: a\r\nSet-Cookie: \r\nSet-Cookie: b\r\nEmpty: ");
    EXPECT_EQ(headers.NameCount("Empty"), 1);
    EXPECT_EQ(headers.Name(2) + headers.Value(2) + headers.Value(4), "Set-Cookieb");
    EXPECT_THROW(headers.Name(4), OutOfBoundsException);
    EXPECT_EQ(headers.Value("Set-Cookie", -1) + headers.Value("Set-Cookie", 3) + headers.Value("x"), "a");
    headers.SetHeader("Set-Cookie", "gap", 5);
    EXPECT_EQ(headers.CommaSeparatedValues("SET-COOKIE"), "a, , b") << "counting ends at a gap";
}

// Against a plain list of values, and beside a header that stays.
TEST(InternetHeaders, NumbersTheHeadersOfANameWithoutGaps) {
    InternetHeaders headers;
    headers.AppendHeader("b", "");
    std::vector<std::string> model;
    std::mt19937 random(1);
    for (int step = 0; step < 20'000; ++step) {
        const std::string name = random() % 2 == 0 ? "a" : "A";
        const std::string value = std::to_string(step);
        const auto number = static_cast<std::int32_t>(random() % 4);
        const bool found = number < std::ssize(model);
        const unsigned action = random() % 5;
        if (action == 0) {
            headers.SetHeader(name, value);
            model = {value};
        } else if (action == 1) {
            headers.Delete(name, number);
            if (found) model.erase(model.begin() + number);
        } else if (action == 2 && found) {
            headers.SetHeader(name, value, number);
            *(model.begin() + number) = value;
        } else {
            headers.AppendHeader(name, value);
            model.push_back(value);
        }
        ASSERT_EQ(headers.Count(), 1 + std::ssize(model)) << step;
        for (std::int32_t i = 0; i < std::ssize(model); ++i)
            ASSERT_EQ(headers.Value(name, i), *(model.begin() + i)) << step;
    }
}

}  // namespace varnith::test
