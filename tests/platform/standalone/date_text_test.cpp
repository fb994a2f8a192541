// Dates as users type them become the server's text; what is no date is refused.
#include "platform/standalone/date_text.h"

#include <gtest/gtest.h>

#include "platform/error.h"

namespace kestrova::standalone {
namespace {

struct Row {
  const char* name;
  const char* order;
  const char* typed;
  const char* server_text;  // "" for a text that is no date
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.order << " " << row.typed; }

class TypedDates : public testing::TestWithParam<Row> {};

TEST_P(TypedDates, BecomeTheServersText) {
  const auto date = read_date(GetParam().typed, date_order_of(GetParam().order));
  EXPECT_EQ(date ? server_text(*date) : "", GetParam().server_text);
}

// clang-format off
const Row kRows[] = {
    {"DayMonthYear", "DMY", "3.4.2021", "03.04.2021"},
    {"MonthDayYear", "MDY", "3.4.2021", "04.03.2021"},
    {"YearMonthDay", "YMD", "2021.3.4", "04.03.2021"},
    {"YearDayMonth", "YDM", "2021.3.4", "03.04.2021"},
    {"SmallLetterOrder", "dmy", "3.4.2021", "03.04.2021"},
    {"Slashes", "DMY", "03/04/2021", "03.04.2021"},
    {"Hyphens", "DMY", "03-04-2021", "03.04.2021"},
    {"BlanksAround", "DMY", "  3.4.2021 ", "03.04.2021"},
    {"MixedSeparators", "DMY", "3.4/2021", ""},
    {"OtherSeparator", "DMY", "3,4,2021", ""},
    {"TwoDigitYearOfThisCentury", "DMY", "3.4.29", "03.04.2029"},
    {"TwoDigitYearOfTheLastCentury", "DMY", "3.4.30", "03.04.1930"},
    {"TwoDigitYearInFront", "YMD", "21/3/4", "04.03.2021"},
    {"FourDigitsAreTheYearItself", "DMY", "3.4.0021", "03.04.0021"},
    {"OneDigitYear", "DMY", "3.4.5", ""},
    {"ThreeDigitYear", "DMY", "3.4.202", ""},
    {"FiveDigitYear", "DMY", "3.4.20211", ""},
    {"ThreeDigitDay", "DMY", "003.4.2021", ""},
    {"IsoInDayOrder", "DMY", "2021-03-04", "04.03.2021"},
    {"IsoGoesBeforeYearDayMonth", "YDM", "2021-03-04", "04.03.2021"},
    {"ServerFormInMonthDayYear", "MDY", "03.04.2021", "03.04.2021"},
    {"ServerFormInYearMonthDay", "YMD", "03.04.2021", "03.04.2021"},
    {"ServerFormInYearDayMonth", "YDM", "03.04.2021", "03.04.2021"},
    {"ServerFormWithTime", "MDY", "03.04.2021 07:05:09", "03.04.2021 07:05:09"},
    {"ServerFormIsNoOtherOrder", "MDY", "12.31.2021", ""},
    {"SlashesAreNotTheServerForm", "MDY", "03/04/2021", "04.03.2021"},
    {"HyphensAreNotTheServerForm", "MDY", "03-04-2021", "04.03.2021"},
    {"ServerFormHasTwoDigitDays", "MDY", "3.04.2021", "04.03.2021"},
    {"ServerFormHasTwoDigitMonths", "MDY", "03.4.2021", "04.03.2021"},
    {"ServerFormHasFourDigitYears", "MDY", "03.04.21", "04.03.2021"},
    {"ShortPartsFollowTheOrder", "YDM", "2021-3-4", "03.04.2021"},
    {"YearInFrontAgainstTheOrder", "DMY", "2021.03.04", ""},
    {"LeapDay", "DMY", "29.2.2024", "29.02.2024"},
    {"LeapDayOfAnotherYear", "DMY", "29.2.2023", ""},
    {"LeapDayOfACentury", "DMY", "29.2.1900", ""},
    {"Day31OfAShortMonth", "DMY", "31.4.2021", ""},
    {"Month13", "DMY", "1.13.2021", ""},
    {"DayZero", "DMY", "0.1.2021", ""},
    {"YearZero", "DMY", "1.1.0000", ""},
    {"LastDay", "DMY", "31.12.9999", "31.12.9999"},
    {"Nothing", "DMY", "", ""},
    {"Word", "DMY", "heute", ""},
    {"Number", "DMY", "20210304", ""},
    {"TwoParts", "DMY", "3.4.", ""},
    {"OnlyTwoParts", "DMY", "3.4", ""},
    {"FourParts", "DMY", "3.4.2021.5", ""},
    {"Sign", "DMY", "+3.4.2021", ""},
    {"BlankInside", "DMY", "3. 4.2021", ""},
    {"LetterInside", "DMY", "3.4.202x", ""},
    {"HoursAndMinutes", "DMY", "3.4.2021 7:05", "03.04.2021 07:05"},
    {"Seconds", "DMY", "3.4.2021  23:59:59", "03.04.2021 23:59:59"},
    {"Midnight", "DMY", "3.4.2021 00:00", "03.04.2021 00:00"},
    {"IsoWithTime", "MDY", "2021-04-03 12:30", "03.04.2021 12:30"},
    {"Hour24", "DMY", "3.4.2021 24:00", ""},
    {"Minute60", "DMY", "3.4.2021 12:60", ""},
    {"Second60", "DMY", "3.4.2021 12:00:60", ""},
    {"HourAlone", "DMY", "3.4.2021 12", ""},
    {"TimeOfFourParts", "DMY", "3.4.2021 12:00:00:00", ""},
    {"ThreeDigitMinute", "DMY", "3.4.2021 12:000", ""},
    {"WordBehind", "DMY", "3.4.2021 abends", ""},
    {"TimeAlone", "DMY", "12:30", ""},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(DateText, TypedDates, testing::ValuesIn(kRows),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(DateText, WhatIsWrittenReadsBackInEveryOrder) {
  const auto date = read_date("4/3/21 7:05", date_order_of("MDY"));
  ASSERT_TRUE(date);
  for (const char* order : {"DMY", "MDY", "YMD", "YDM"}) {
    const auto again = read_date(server_text(*date), date_order_of(order));
    ASSERT_TRUE(again) << order;
    EXPECT_EQ(again->date, date->date) << order;
  }
}

TEST(DateText, RefusesAnUnknownOrder) {
  for (const char* name : {"", "DM", "DMYY", "MYD"}) {
    EXPECT_THROW(date_order_of(name), InvalidArgument) << name;
  }
  try {
    date_order_of("MYD");
  } catch (const InvalidArgument& error) {
    EXPECT_STREQ(error.what(), "'MYD' is no date order. Known are DMY, MDY, YMD and YDM.");
  }
}

TEST(DateText, WritesTheTimeOfDayOnlyWhenThereIsOne) {
  EXPECT_EQ(server_text(DateTime{2024, 12, 31}), "31.12.2024");
  EXPECT_EQ(server_text(DateTime{2024, 12, 31, 23, 59, 59}), "31.12.2024 23:59:59");
  EXPECT_EQ(server_text(DateTime{2024, 12, 31, 23, 59, 59, 997'000'000}),
            "31.12.2024 23:59:59.997");
}

}  // namespace
}  // namespace kestrova::standalone
