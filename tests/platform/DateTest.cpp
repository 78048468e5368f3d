#include <string>

#include <gtest/gtest.h>
#include <time.h>

#include "platform/base/Date.h"
#include "support/Environment.h"

namespace varnith::test {

namespace {

// Without daylight saving time, with it, and where it begins at midnight, so that some days have none.
TEST(DateTest, ReadsWritesAndCountsDays) {
    for (const char* time_zone : {"UTC0", "CET-1CEST,M3.5.0,M10.5.0/3", "XXX4YYY,M9.1.0/0,M4.1.0/0"}) {
        SCOPED_TRACE(time_zone);
        const Environment in_force("TZ", time_zone);
        tzset();
        const std::tuple<const char*, int, const char*> cases[] = {
            {"2008-06-24", 24, "2008-06-24"}, {"2008-06-24", 31, "2008-07-01"},
            {"2024-03-01", 0, "2024-02-29"},  {"2024-12-31", 32, "2025-01-01"},
            {"0001-01-01", 1, "0001-01-01"},  {"2024-09-01", 1, "2024-09-01"},
        };
        for (const auto& [start, day, end] : cases) {
            Date date;
            date.SetSQLDate(start);
            EXPECT_EQ(date.SQLDate(), start);
            date.SetDay(day);
            EXPECT_EQ(date.SQLDate(), end);
        }
        Date today;
        const double now = today.TotalSeconds();
        for (const char* no_date : {"", "2008-6-24", "2008-06-31", "2023-02-29", "2008-00-10", "24.06.2008",
                                    "2008-06-24 ", "2008/06/24", "-008-06-24", "99999999999999-01-01"})
            today.SetSQLDate(no_date);
        EXPECT_EQ(today.TotalSeconds(), now);
        today.SetSQLDate(today.SQLDate());
        EXPECT_LE(today.TotalSeconds(), now) << "a day begins with its first second";
    }
}

}  // namespace

}  // namespace varnith::test
