#include "platform/base/Date.h"

#include <array>
#include <chrono>
#include <cstdio>

namespace varnith {

namespace {

// tm_isdst = -1 makes mktime find out whether daylight saving time applies.
std::time_t FromFields(std::tm fields) {
    fields.tm_isdst = -1;
    return std::mktime(&fields);
}

// The number in `count` characters of a text, -1 if they are not all digits.
int Digits(const std::string& text, std::size_t start, std::size_t count) {
    int number = 0;
    for (const char c : text.substr(start, count)) {
        if (c < '0' || c > '9') return -1;
        number = number * 10 + (c - '0');
    }
    return number;
}

}  // namespace

Date::Date() : time_(std::time(nullptr)) {}

std::tm Date::Fields() const {
    std::tm fields{};
    localtime_r(&time_, &fields);
    return fields;
}

std::string Date::SQLDate() const {
    const std::tm fields = Fields();
    std::array<char, 48> text;
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", fields.tm_year + 1900, fields.tm_mon + 1,
                  fields.tm_mday);
    return text.data();
}

void Date::SetSQLDate(const std::string& text) {
    if (text.size() != 10 || text[4] != '-' || text[7] != '-') return;
    const int year = Digits(text, 0, 4);
    const int month = Digits(text, 5, 2);
    const int day = Digits(text, 8, 2);
    if (year < 0 || month < 0 || day < 0) return;
    const std::chrono::year_month_day named(std::chrono::year(year),
                                            std::chrono::month(static_cast<unsigned>(month)),
                                            std::chrono::day(static_cast<unsigned>(day)));
    if (!named.ok()) return;
    std::tm fields{};
    fields.tm_year = year - 1900;
    fields.tm_mon = month - 1;
    fields.tm_mday = day;
    time_ = FromFields(fields);
}

std::int32_t Date::Day() const {
    return Fields().tm_mday;
}

void Date::SetDay(std::int32_t day) {
    std::tm fields = Fields();
    // The end of daylight saving time repeats an hour. In that hour the same fields stand for two times, so a
    // conversion there and back could change the time.
    if (fields.tm_mday == day) return;
    fields.tm_mday = day;
    time_ = FromFields(fields);
}

}  // namespace varnith
