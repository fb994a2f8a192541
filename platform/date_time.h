// A point in time without a time zone, as the database's date columns hold it.
#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace kestrova {

struct DateTime {
  int year = 1899;  // 1 to 9999
  int month = 12;   // 1 to 12
  int day = 30;     // 1 to 31
  int hour = 0;
  int minute = 0;
  int second = 0;
  std::int32_t nanosecond = 0;  // 0 to 999,999,999

  friend auto operator<=>(const DateTime&, const DateTime&) = default;
};

// True when year, month and day name a day of the Gregorian calendar with a year from 1 to 9999.
bool is_valid_date(int year, int month, int day);

// A two-digit year as people mean it: 0 to 29 is 2000 to 2029, 30 to 99 is 1930 to 1999. Any other
// year is returned as it is.
int full_year(int year);

// "dd.mm.yyyy", zero-padded.
std::string format_dmy(const DateTime& date);

// "yyyy-mm-dd hh:mm:ss", zero-padded; a fraction of a second follows as ".fffffffff" without
// trailing zeros, and only when there is one.
std::string format_iso(const DateTime& date);

// Days since 1899-12-30 with the time of day as fraction: the unit of the date members of KesVar
// and of day arithmetic in the database.
double to_day_count(const DateTime& date);

// The inverse of to_day_count, rounded to whole milliseconds. Raises Overflow outside the years
// 1 to 9999.
DateTime from_day_count(double days);

// The computer's local time.
DateTime local_now();

}  // namespace kestrova
