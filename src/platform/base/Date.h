#pragma once

#include <cstdint>
#include <ctime>
#include <string>

#include "platform/base/Ref.h"

namespace varnith {

// A moment in the user's time zone, to the second.
class Date : public RefCounted {
  public:
    // Now.
    Date();

    // The day as year, month and day with hyphens, as in 2008-06-24.
    std::string SQLDate() const;

    // Sets the beginning of the day that is given so. A text that names no day in just this form leaves the
    // date as it is.
    void SetSQLDate(const std::string& text);

    // The day of the month, from 1. A day outside of the month counts on into its neighbours.
    std::int32_t Day() const;
    void SetDay(std::int32_t day);

    // The seconds from a fixed moment, the same for all dates.
    double TotalSeconds() const { return static_cast<double>(time_); }

  private:
    std::tm Fields() const;

    std::time_t time_;
};

}  // namespace varnith
