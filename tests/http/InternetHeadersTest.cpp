#include <cctype>
#include <map>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "http/InternetHeaders.h"
#include "platform/base/Text.h"

namespace varnith::test {

TEST(InternetHeaders, ParsesATextWithAnyLineEnding) {
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"HTTP/1.0 200 OK\r\na: 1\r\nb: 2", "a: 1|b: 2"},
        {"a: 1\nb: 2\n", "a: 1|b: 2"},
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
    EXPECT_EQ(headers.Count(), 4);
    EXPECT_EQ(headers.NameCount("Empty"), 1);
    EXPECT_EQ(headers.Name(2) + headers.Value(2) + headers.Value(4), "Set-Cookieb");
    EXPECT_THROW(headers.Name(4), OutOfBoundsException);
    EXPECT_EQ(headers.Value("Set-Cookie", -1) + headers.Value("Set-Cookie", 3) + headers.Value("x"), "a");
    headers.SetHeader("Set-Cookie", "gap", 5);
    EXPECT_EQ(headers.CommaSeparatedValues("SET-COOKIE"), "a, , b") << "counting ends at a gap";

    headers.DeleteAllHeaders();
    const std::string a(60, 'a');
    const std::string c(100, 'c');
    headers.AppendHeader("Subject", a + " b " + c + " d");
    EXPECT_EQ(headers._FormatEmailHeaders(), "Subject: " + a + " b\r\n " + c + "\r\n d");
}

TEST(InternetHeaders, NumbersTheHeadersOfANameWithoutGaps) {
    InternetHeaders headers;
    std::map<char, std::vector<std::string>> model;
    std::mt19937 random(1);
    for (int step = 0; step < 20'000; ++step) {
        const char letter = "ab"[random() % 2];
        const std::string name(1, static_cast<char>(random() % 2 == 0 ? letter : std::toupper(letter)));
        std::vector<std::string>& values = model[letter];
        const std::string value = std::to_string(step);
        const auto number = static_cast<std::int32_t>(random() % 4);
        const bool found = number < std::ssize(values);
        const unsigned action = random() % 6;
        if (action == 0) {
            headers.SetHeader(name, value);
            values = {value};
        } else if (action == 1) {
            headers.Delete(name);
            values.clear();
        } else if (action == 2) {
            headers.Delete(name, number);
            if (found) values.erase(values.begin() + number);
        } else if (action == 3 && found) {
            headers.SetHeader(name, value, number);
            *(values.begin() + number) = value;
        } else {
            headers.AppendHeader(name, value);
            values.push_back(value);
        }
        ASSERT_EQ(headers.NameCount(name), std::ssize(values)) << step;
        for (const std::string& each : values)
            ASSERT_EQ(headers.Value(name, static_cast<std::int32_t>(&each - values.data())), each) << step;
        ASSERT_EQ(headers.Count(), std::ssize(model['a']) + std::ssize(model['b'])) << step;
    }
}

}  // namespace varnith::test
