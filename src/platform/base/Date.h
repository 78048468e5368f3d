#pragma once

#include <cstdint>
#include <ctime>
#include <string>

#include "platform/base/Ref.h"

namespace varnith {

// A date and time in the user's time zone, to the second.
class Date : public RefCounted {
  public:
    // The current date and time.
    Date();

    // The date in the form YYYY-MM-DD.
    std::string SQLDate() const;

    // Sets the date, given in the form YYYY-MM-DD, and the time to midnight. Nothing changes if the text has
    // another form or names a day that doesn't exist.
    void SetSQLDate(const std::string& text);

    // The day of the month, from 1. Setting a day outside of the month gives a day of another month: 0 is the
    // last day of the month before.
    std::int32_t Day() const;
    void SetDay(std::int32_t day);

    // The seconds since the epoch of the system's clock (time(2)).
    double TotalSeconds() const { return static_cast<double>(time_); }

  private:
    std::tm Fields() const;

    std::time_t time_;
};

}  // namespace varnith
