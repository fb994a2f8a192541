// Points in time and day counts.
#include "platform/date_time.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/error.h"

namespace kestrova {

void PrintTo(const DateTime& date, std::ostream* out) { *out << format_iso(date); }

namespace {

TEST(IsValidDate, KnowsTheCalendar) {
  EXPECT_TRUE(is_valid_date(2024, 2, 29));
  EXPECT_TRUE(is_valid_date(2000, 2, 29));
  EXPECT_FALSE(is_valid_date(1900, 2, 29));
  EXPECT_FALSE(is_valid_date(2023, 2, 29));
  EXPECT_TRUE(is_valid_date(1, 1, 1));
  EXPECT_TRUE(is_valid_date(9999, 12, 31));
  EXPECT_FALSE(is_valid_date(0, 1, 1));
  EXPECT_FALSE(is_valid_date(10000, 1, 1));
  EXPECT_FALSE(is_valid_date(2024, 0, 1));
  EXPECT_FALSE(is_valid_date(2024, 13, 1));
  EXPECT_FALSE(is_valid_date(2024, 4, 0));
  EXPECT_FALSE(is_valid_date(2024, 4, 31));
  EXPECT_FALSE(is_valid_date(2024, 257, 1));  // not taken modulo a byte
  EXPECT_FALSE(is_valid_date(2024, 4, -1));
}

TEST(FullYear, TakesTwoDigitsAsPeopleMeanThem) {
  EXPECT_EQ(full_year(0), 2000);
  EXPECT_EQ(full_year(29), 2029);
  EXPECT_EQ(full_year(30), 1930);
  EXPECT_EQ(full_year(99), 1999);
  EXPECT_EQ(full_year(100), 100);
  EXPECT_EQ(full_year(2024), 2024);
  EXPECT_EQ(full_year(-1), -1);
}

TEST(FormatDmy, PadsWithZeros) {
  EXPECT_EQ(format_dmy({2024, 4, 3}), "03.04.2024");
  EXPECT_EQ(format_dmy({21, 12, 31, 23, 59}), "31.12.0021");
}

TEST(FormatIso, ShowsAFractionOnlyWhenThereIsOne) {
  EXPECT_EQ(format_iso({2024, 4, 3}), "2024-04-03 00:00:00");
  EXPECT_EQ(format_iso({2024, 4, 3, 7, 5, 9}), "2024-04-03 07:05:09");
  EXPECT_EQ(format_iso({2024, 4, 3, 7, 5, 9, 120'000'000}), "2024-04-03 07:05:09.12");
  EXPECT_EQ(format_iso({2024, 4, 3, 7, 5, 10, 1}), "2024-04-03 07:05:10.000000001");
}

TEST(DayCount, CountsFromTheEndOf1899) {
  EXPECT_EQ(to_day_count({1899, 12, 30}), 0);
  EXPECT_EQ(to_day_count({1900, 1, 1}), 2);
  EXPECT_EQ(to_day_count({2024, 1, 1}), 45292);
  EXPECT_EQ(to_day_count({2024, 1, 1, 18}), 45292.75);
  EXPECT_EQ(to_day_count({1899, 12, 29}), -1);
  EXPECT_EQ(to_day_count({1899, 12, 29, 12}), -0.5);
}

TEST(DayCount, ReadsBack) {
  const DateTime dates[] = {
      {1, 1, 1},
      {1899, 12, 29, 18},
      {1899, 12, 30},
      {1900, 2, 28},
      {2000, 2, 29, 0, 0, 1},
      {2024, 12, 31, 23, 59, 59, 999'000'000},
      {9999, 12, 31, 23, 59, 59},
  };
  for (const DateTime& date : dates) EXPECT_EQ(from_day_count(to_day_count(date)), date);
}

TEST(DayCount, IsRoundedToMilliseconds) {
  EXPECT_EQ(from_day_count(45292 + 0.0004 / 86400), (DateTime{2024, 1, 1}));
  EXPECT_EQ(from_day_count(45292.999'999'999'99), (DateTime{2024, 1, 2}));
}

TEST(DayCount, StaysInTheCalendar) {
  EXPECT_EQ(from_day_count(-693'593), (DateTime{1, 1, 1}));
  EXPECT_THROW(from_day_count(-693'593.25), Overflow);
  EXPECT_EQ(from_day_count(2'958'465.5), (DateTime{9999, 12, 31, 12}));
  EXPECT_THROW(from_day_count(2'958'466), Overflow);
  EXPECT_THROW(from_day_count(std::nextafter(2'958'466.0, 0.0)), Overflow);  // rounds up
  EXPECT_THROW(from_day_count(1e300), Overflow);
  EXPECT_THROW(from_day_count(-std::numeric_limits<double>::infinity()), Overflow);
  EXPECT_THROW(from_day_count(std::numeric_limits<double>::quiet_NaN()), Overflow);
}

TEST(LocalNow, IsADayOfTheCalendarAfterThisWasWritten) {
  const DateTime now = local_now();
  EXPECT_TRUE(is_valid_date(now.year, now.month, now.day));
  EXPECT_GT(now, (DateTime{2024, 1, 1}));
  EXPECT_LT(now.hour, 24);
  EXPECT_LT(now.minute, 60);
}

TEST(DateTime, IsOrderedInTime) {
  EXPECT_LT((DateTime{2023, 12, 31, 23, 59, 59}), (DateTime{2024, 1, 1}));
  EXPECT_LT((DateTime{2024, 1, 1}), (DateTime{2024, 1, 1, 0, 0, 0, 1}));
}

}  // namespace
}  // namespace kestrova
