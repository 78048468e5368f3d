#include <random>
#include <utility>

#include <gtest/gtest.h>

#include "http/InternetHeaders.h"
#include "platform/base/Text.h"

namespace varnith::test {

TEST(InternetHeaders, ParsesATextWithAnyLineEnding) {
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"HTTP/1.0 200 OK", ""},
        {"HTTP/1.0 200 OK\r\na: 1\r\nb: 2", "a: 1|b: 2"},
        {"HTTP/1.0 200 a:b\na: 1", "HTTP/1.0 200 a: b|a: 1"},
        {"a: 1\nb: 2\n", "a: 1|b: 2"},
        {"a: 1\rb: 2\r\r", "a: 1|b: 2"},
        {"a: 1\nb: 2\r\nc: 3", "a: 1\nb: 2|c: 3"},
        {"a: 1\rb: 2\nc: 3", "a: 1\rb: 2|c: 3"},
        {"a:\t \v1 : 2 \r\nno colon\r\n: x", "a: 1 : 2 |: x"},
        {"a: 1\r\n 2\r\n\t 3\r\nb:\r\n\t4", "a: 1 2  3|b: 4"},
        {"a: 1\nA: 2\na:\n", "a: 1|A: 2|a: "},
        {std::string("a\0b: \0", 6), std::string("a\0b: \0", 6)}};
    InternetHeaders headers;
    for (const auto& [text, expected] : cases) {
        headers._ParseHeaders(text);
        EXPECT_EQ(headers.Source(), text);
        EXPECT_EQ(ReplaceAll(headers._FormatHTTPHeaders(), "\r\n", "|"), expected) << text;
    }
    headers.DeleteAllHeaders();
    EXPECT_EQ(headers.Count(), 0);
    EXPECT_EQ(headers.Source(), cases[11].first) << "the parsed text wins";
}

TEST(InternetHeaders, AnswersForMissingAndRepeatedHeaders) {
    InternetHeaders headers;
    EXPECT_EQ(headers.Source() + headers.CommaSeparatedValues("a"), "");
    for (const char* value : {"a", "", "b"}) headers.AppendHeader("Set-Cookie", value);
    headers.AppendHeader("Empty", "");
    EXPECT_EQ(headers.Name(2) + headers.Value(2), "Set-Cookieb");
    EXPECT_EQ(headers.NameCount("set-cookie"), 3);
    EXPECT_EQ(headers.NameCount("Empty"), 1);
    EXPECT_EQ(headers.CommaSeparatedValues("SET-COOKIE"), "a, , b");
    EXPECT_EQ(headers.Value("Set-Cookie", -1) + headers.Value("Set-Cookie", 3) + headers.Value("x"), "a");
    EXPECT_EQ(headers.Source(), "Set-Cookie: a\r\nSet-Cookie: \r\nSet-Cookie: b\r\nEmpty: ");
    EXPECT_EQ(headers.Value(4), "");
    EXPECT_THROW(headers.Name(4), OutOfBoundsException);
    headers.SetHeader("Set-Cookie", "gap", 5);
    EXPECT_EQ(headers.NameCount("Set-Cookie"), 3) << "counting ends at a gap";
}

// Against a plain list of pairs, in which the occurrences of a name are those that come one behind the other.
TEST(InternetHeaders, NumbersTheHeadersOfANameWithoutGaps) {
    InternetHeaders headers;
    std::vector<std::pair<std::string, std::string>> model;
    std::string name;
    const auto named = [&](const auto& header) { return SameText(header.first, name); };
    const auto place = [&](std::int32_t number) {
        return std::find_if(model.begin(), model.end(),
                            [&](const auto& header) { return named(header) && number-- == 0; });
    };
    std::mt19937 random(1);
    for (int step = 0; step < 20'000; ++step) {
        name = "aAbBcC"[random() % 6];
        const auto number = static_cast<std::int32_t>(random() % 4);
        const std::string value = std::to_string(step);
        const auto found = place(number);
        const unsigned action = random() % 6;
        if (action == 0) {
            headers.SetHeader(name, value);
            std::erase_if(model, named);
            model.emplace_back(name, value);
        } else if (action == 1) {
            headers.Delete(name);
            std::erase_if(model, named);
        } else if (action == 2) {
            headers.Delete(name, number);
            if (found != model.end()) model.erase(found);
        } else if (action == 3 && found != model.end()) {
            headers.SetHeader(name, value, number);
            found->second = value;
        } else {
            headers.AppendHeader(name, value);
            model.emplace_back(name, value);
        }
        ASSERT_EQ(headers.Count(), std::ssize(model)) << step;
        for (const char* each : {"a", "b", "c"}) {
            name = each;
            for (std::int32_t i = 0; i <= headers.NameCount(name); ++i)
                ASSERT_EQ(headers.Value(name, i), place(i) == model.end() ? "" : place(i)->second) << step;
        }
    }
}

TEST(InternetHeaders, FoldsLongLinesForMail) {
    InternetHeaders headers;
    headers.AppendHeader("Short", "line");
    headers.AppendHeader("Subject", std::string(60, 'a') + " b " + std::string(100, 'c') + " d");
    EXPECT_EQ(headers._FormatEmailHeaders(), "Short: line\r\nSubject: " + std::string(60, 'a') + " b\r\n " +
                                                 std::string(100, 'c') + "\r\n d");
}

}  // namespace varnith::test
