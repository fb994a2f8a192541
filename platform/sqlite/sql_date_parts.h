// The parts of a date that DATEADD, DATEDIFF and DATEPART name.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/date_time.h"

namespace kestrova::sql {

enum class DatePart {
  kYear,
  kQuarter,
  kMonth,
  kDayOfYear,
  kDay,
  kWeek,
  kWeekday,
  kHour,
  kMinute,
  kSecond
};

// The part of this name or abbreviation, in any case.
std::optional<DatePart> date_part_named(std::string_view name);

// The date count parts later. A day that the month does not have becomes the month's last one.
// Raises DatabaseError 22003 outside the years 1 to 9999.
DateTime add_to_date(DatePart part, std::int64_t count, const DateTime& date);

// How many boundaries of the part lie between the dates.
std::int64_t date_difference(DatePart part, const DateTime& from, const DateTime& to);

// The number of the part in the date. Weekdays count from Sunday, 1; the first week is the one with
// the first of January.
std::int64_t part_of_date(DatePart part, const DateTime& date);

}  // namespace kestrova::sql
