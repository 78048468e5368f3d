#include <chrono>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "http/InternetHeaders.h"
#include "platform/base/Text.h"

namespace varnith::test {

namespace {

std::string Parsed(const std::string& text) {
    InternetHeaders headers;
    headers._ParseHeaders(text);
    EXPECT_EQ(headers.Source(), text.empty() ? "" : text);
    return ReplaceAll(headers._FormatHTTPHeaders(), "\r\n", "|");
}

TEST(InternetHeaders, ParsesATextWithAnyLineEnding) {
    const std::string cases[][2] = {
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
        {std::string("a\0b: \0", 6), std::string("a\0b: \0", 6)},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(Parsed(text), expected) << text;
}

TEST(InternetHeaders, AnswersForMissingAndRepeatedHeaders) {
    InternetHeaders headers;
    EXPECT_EQ(headers.Source(), "");
    EXPECT_EQ(headers.CommaSeparatedValues("a"), "");
    for (const char* value : {"a", "", "b"}) headers.AppendHeader("Set-Cookie", value);
    headers.AppendHeader("Empty", "");
    EXPECT_EQ(headers.Count(), 4);
    EXPECT_EQ(headers.Name(2), "Set-Cookie");
    EXPECT_EQ(headers.Value(2), "b");
    EXPECT_EQ(headers.NameCount("set-cookie"), 3);
    EXPECT_EQ(headers.NameCount("Empty"), 1);
    EXPECT_EQ(headers.CommaSeparatedValues("SET-COOKIE"), "a, , b");
    EXPECT_EQ(headers.Value("Set-Cookie", -1) + headers.Value("Set-Cookie", 3) + headers.Value("x"), "a");
    EXPECT_EQ(headers.Source(), "Set-Cookie: a\r\nSet-Cookie: \r\nSet-Cookie: b\r\nEmpty: ");
    EXPECT_EQ(headers.Value(4), "");
    EXPECT_THROW(headers.Name(4), OutOfBoundsException);

    headers.SetHeader("Set-Cookie", "gap", 5);
    EXPECT_EQ(headers.NameCount("Set-Cookie"), 3) << "counting ends at a gap";
    headers._ParseHeaders("a: 1");
    headers.DeleteAllHeaders();
    EXPECT_EQ(headers.Count(), 0);
    EXPECT_EQ(headers.Source(), "a: 1") << "the parsed text wins";
}

// Against a plain list of pairs, in which the occurrences of a name are those that come one behind the other.
TEST(InternetHeaders, NumbersTheHeadersOfANameWithoutGaps) {
    InternetHeaders headers;
    std::vector<std::pair<std::string, std::string>> model;
    const auto place = [&](const std::string& name, std::int32_t number) {
        return std::find_if(model.begin(), model.end(),
                            [&](const auto& one) { return SameText(one.first, name) && number-- == 0; });
    };
    std::mt19937 random(1);
    for (int step = 0; step < 20'000; ++step) {
        const std::string name(1, "aAbBcC"[random() % 6]);
        const auto number = static_cast<std::int32_t>(random() % 4);
        const std::string value = std::to_string(step);
        switch (random() % 6) {
            case 0:
                headers.SetHeader(name, value);
                std::erase_if(model, [&](const auto& one) { return SameText(one.first, name); });
                model.emplace_back(name, value);
                break;
            case 1:
                headers.Delete(name);
                std::erase_if(model, [&](const auto& one) { return SameText(one.first, name); });
                break;
            case 2:
                headers.Delete(name, number);
                if (const auto found = place(name, number); found != model.end()) model.erase(found);
                break;
            case 3:
                if (place(name, number) == model.end()) continue;
                headers.SetHeader(name, value, number);
                place(name, number)->second = value;
                break;
            default:
                headers.AppendHeader(name, value);
                model.emplace_back(name, value);
        }
        ASSERT_EQ(headers.Count(), static_cast<std::int32_t>(model.size())) << step;
        for (const char* each : {"a", "b", "c"})
            for (std::int32_t i = 0; i <= headers.NameCount(each); ++i) {
                const auto found = place(each, i);
                ASSERT_EQ(headers.Value(each, i), found == model.end() ? "" : found->second) << step;
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

TEST(InternetHeaders, ParsesAGreatManyHeadersOfOneName) {
    std::string text;
    for (int i = 0; i < 200'000; ++i) text += "a: 1\r\n";
    InternetHeaders headers;
    const auto start = std::chrono::steady_clock::now();
    headers._ParseHeaders(text);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    EXPECT_EQ(headers.NameCount("a"), 200'000);
}

}  // namespace

}  // namespace varnith::test
