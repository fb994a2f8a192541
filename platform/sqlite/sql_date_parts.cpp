#include "platform/sqlite/sql_date_parts.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/error.h"
#include "platform/sqlite/sql_convert.h"
#include "platform/text.h"

namespace kestrova::sql {
namespace {

struct PartName {
  std::string_view name;
  DatePart part;
};

constexpr std::array<PartName, 29> kNames = {{
    {"YEAR", DatePart::kYear},       {"YY", DatePart::kYear},
    {"YYYY", DatePart::kYear},       {"QUARTER", DatePart::kQuarter},
    {"QQ", DatePart::kQuarter},      {"Q", DatePart::kQuarter},
    {"MONTH", DatePart::kMonth},     {"MM", DatePart::kMonth},
    {"M", DatePart::kMonth},         {"DAYOFYEAR", DatePart::kDayOfYear},
    {"DY", DatePart::kDayOfYear},    {"Y", DatePart::kDayOfYear},
    {"DAY", DatePart::kDay},         {"DD", DatePart::kDay},
    {"D", DatePart::kDay},           {"WEEK", DatePart::kWeek},
    {"WK", DatePart::kWeek},         {"WW", DatePart::kWeek},
    {"WEEKDAY", DatePart::kWeekday}, {"DW", DatePart::kWeekday},
    {"W", DatePart::kWeekday},       {"HOUR", DatePart::kHour},
    {"HH", DatePart::kHour},         {"MINUTE", DatePart::kMinute},
    {"MI", DatePart::kMinute},       {"N", DatePart::kMinute},
    {"SECOND", DatePart::kSecond},   {"SS", DatePart::kSecond},
    {"S", DatePart::kSecond},
}};

DateTime midnight(DateTime date) {
  date.hour = date.minute = date.second = date.nanosecond = 0;
  return date;
}

std::int64_t day_number(const DateTime& date) { return std::llround(date_to_days(midnight(date))); }

// Weeks begin on Sunday; 1900-01-01, day 0, was a Monday.
std::int64_t week_number(const DateTime& date) {
  const std::int64_t shifted = day_number(date) + 1;
  return shifted >= 0 ? shifted / 7 : (shifted - 6) / 7;
}

std::int64_t month_number(const DateTime& date) { return date.year * 12LL + date.month - 1; }

DateTime add_months(DateTime date, std::int64_t months) {
  const std::int64_t month = month_number(date) + months;
  if (month < 12 || month >= 120'000) {
    throw DatabaseError("Adding a value to a date column caused an overflow.", "22003", 517);
  }
  date.year = static_cast<int>(month / 12);
  date.month = static_cast<int>(month % 12) + 1;
  while (!is_valid_date(date.year, date.month, date.day)) --date.day;
  return date;
}

DateTime add_days(const DateTime& date, double days) {
  return days_to_date(date_to_days(date) + days);
}

}  // namespace

std::optional<DatePart> date_part_named(std::string_view name) {
  const std::string wanted = text::upper(name);
  const auto found = std::find_if(kNames.begin(), kNames.end(),
                                  [&](const PartName& row) { return row.name == wanted; });
  return found == kNames.end() ? std::nullopt : std::optional(found->part);
}

DateTime add_to_date(DatePart part, std::int64_t count, const DateTime& date) {
  const auto number = static_cast<double>(count);
  switch (part) {
    case DatePart::kYear:
      return add_months(date, count * 12);
    case DatePart::kQuarter:
      return add_months(date, count * 3);
    case DatePart::kMonth:
      return add_months(date, count);
    case DatePart::kWeek:
      return add_days(date, number * 7);
    case DatePart::kHour:
      return add_days(date, number / 24);
    case DatePart::kMinute:
      return add_days(date, number / 1'440);
    case DatePart::kSecond:
      return add_days(date, number / 86'400);
    default:
      return add_days(date, number);
  }
}

std::int64_t date_difference(DatePart part, const DateTime& from, const DateTime& to) {
  switch (part) {
    case DatePart::kYear:
      return to.year - from.year;
    case DatePart::kQuarter:
      return month_number(to) / 3 - month_number(from) / 3;
    case DatePart::kMonth:
      return month_number(to) - month_number(from);
    case DatePart::kWeek:
      return week_number(to) - week_number(from);
    case DatePart::kHour:
      return (day_number(to) - day_number(from)) * 24 + to.hour - from.hour;
    case DatePart::kMinute:
      return date_difference(DatePart::kHour, from, to) * 60 + to.minute - from.minute;
    case DatePart::kSecond:
      return date_difference(DatePart::kMinute, from, to) * 60 + to.second - from.second;
    default:
      return day_number(to) - day_number(from);
  }
}

std::int64_t part_of_date(DatePart part, const DateTime& date) {
  const DateTime new_year{date.year, 1, 1, 0, 0, 0, 0};
  switch (part) {
    case DatePart::kYear:
      return date.year;
    case DatePart::kQuarter:
      return (date.month + 2) / 3;
    case DatePart::kMonth:
      return date.month;
    case DatePart::kDayOfYear:
      return day_number(date) - day_number(new_year) + 1;
    case DatePart::kWeek:
      return week_number(date) - week_number(new_year) + 1;
    case DatePart::kWeekday:
      return ((day_number(date) + 1) % 7 + 7) % 7 + 1;
    case DatePart::kHour:
      return date.hour;
    case DatePart::kMinute:
      return date.minute;
    case DatePart::kSecond:
      return date.second;
    default:
      return date.day;
  }
}

}  // namespace kestrova::sql
