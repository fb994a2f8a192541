// German, English and French settings.
#include "platform/standalone/settings_user_locale.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/error.h"

namespace kestrova {
namespace {

struct NumberRow {
  const char* name;
  const char* language;
  const char* text;
  std::optional<double> number;
};

void PrintTo(const NumberRow& row, std::ostream* out) { *out << row.language << " " << row.text; }

class NumbersOf : public testing::TestWithParam<NumberRow> {};

TEST_P(NumbersOf, AreReadAsTheUserWritesThem) {
  const SettingsUserLocale locale(GetParam().language, "DMY");
  EXPECT_EQ(locale.to_number(GetParam().text), GetParam().number);
  EXPECT_EQ(locale.is_numeric(GetParam().text), GetParam().number.has_value());
}

// clang-format off
const NumberRow kNumberRows[] = {
    {"Whole", "DE", "12", 12},
    {"BlanksAround", "DE", "  12 ", 12},
    {"Negative", "DE", "-12", -12},
    {"Positive", "DE", "+12", 12},
    {"GermanFraction", "DE", "1,5", 1.5},
    {"GermanGroups", "DE", "1.234.567,25", 1234567.25},
    {"GermanPointGroupsAnywhere", "DE", "1.5", 15},
    {"GermanPointsSideBySide", "DE", "1..5", 15},
    {"GermanPointInFraction", "DE", "1,5.0", std::nullopt},
    {"GermanPointBehindWholePart", "DE", "1.,5", std::nullopt},
    {"GermanPointAtTheEnd", "DE", "1.", std::nullopt},
    {"GermanPointInFront", "DE", ".5", std::nullopt},
    {"EnglishFraction", "EN", "1.5", 1.5},
    {"EnglishGroups", "EN", "1,234,567.25", 1234567.25},
    {"EnglishCommaGroupsAnywhere", "EN", "1,5", 15},
    {"FrenchFraction", "FR", "1,5", 1.5},
    {"FrenchBlank", "FR", "1 234,5", 1234.5},
    {"FrenchNoBreakSpace", "FR", "1\u00A0234,5", 1234.5},
    {"FrenchNarrowNoBreakSpace", "FR", "1\u202F234,5", 1234.5},
    {"FrenchPoint", "FR", "1.5", std::nullopt},
    {"GermanBlankInside", "DE", "1 234", std::nullopt},
    {"FractionAlone", "DE", ",5", 0.5},
    {"SeparatorAtTheEnd", "DE", "5,", 5},
    {"SeparatorAlone", "DE", ",", std::nullopt},
    {"TwoSeparators", "DE", "1,2,3", std::nullopt},
    {"Exponent", "DE", "1,5e3", 1500},
    {"NegativeExponent", "EN", "15E-1", 1.5},
    {"PositiveExponent", "EN", "15E+1", 150},
    {"ExponentWithoutDigits", "EN", "15E", std::nullopt},
    {"ExponentAlone", "EN", "E5", std::nullopt},
    {"TwoSigns", "EN", "--5", std::nullopt},
    {"BlankBehindSign", "EN", "- 5", std::nullopt},
    {"SignAlone", "EN", "-", std::nullopt},
    {"Nothing", "EN", "", std::nullopt},
    {"Blank", "EN", " ", std::nullopt},
    {"Word", "EN", "Null", std::nullopt},
    {"Infinity", "EN", "inf", std::nullopt},
    {"Hexadecimal", "EN", "0x10", std::nullopt},
    {"Date", "DE", "3/4/2021", std::nullopt},
    {"BeyondTheRange", "EN", "1e999", std::nullopt},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(SettingsUserLocale, NumbersOf, testing::ValuesIn(kNumberRows),
                         [](const auto& test) { return std::string(test.param.name); });

struct FormatRow {
  const char* name;
  const char* language;
  double number;
  const char* pattern;
  const char* text;
};

void PrintTo(const FormatRow& row, std::ostream* out) { *out << row.number << " " << row.pattern; }

class FormatsOf : public testing::TestWithParam<FormatRow> {};

TEST_P(FormatsOf, FollowThePattern) {
  const SettingsUserLocale locale(GetParam().language, "DMY");
  EXPECT_EQ(locale.format(GetParam().number, GetParam().pattern), GetParam().text);
}

// clang-format off
const FormatRow kFormatRows[] = {
    {"GermanZero", "DE", 0, "0.0", "0,0"},
    {"EnglishZero", "EN", 0, "0.0", "0.0"},
    {"FrenchZero", "FR", 0, "0.0", "0,0"},
    {"Whole", "DE", 7, "0", "7"},
    {"WholeIsRounded", "DE", 7.75, "0", "8"},
    {"FractionIsRounded", "DE", 1.2345, "0.00", "1,23"},
    {"FractionIsFilled", "DE", 1.5, "0.000", "1,500"},
    {"WholePartIsFilled", "EN", 7, "000.0", "007.0"},
    {"WholePartIsNeverCut", "EN", 1234567.5, "00.0", "1234567.5"},
    {"Negative", "EN", -7.5, "00.0", "-07.5"},
    {"NoNegativeZero", "EN", -0.01, "0.0", "0.0"},
    {"PointWithoutDigits", "EN", 7, "0.", "7"},
    {"Large", "EN", 1e21, "0.0", "1000000000000000000000.0"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(SettingsUserLocale, FormatsOf, testing::ValuesIn(kFormatRows),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(SettingsUserLocale, RefusesOtherPatternsAndNumbersWithoutDigits) {
  const SettingsUserLocale locale("EN", "DMY");
  for (const char* pattern : {"", ".0", "#.0", "0.0.0", "0,0"}) {
    EXPECT_THROW(locale.format(1, pattern), InvalidArgument) << pattern;
  }
  EXPECT_THROW(locale.format(std::numeric_limits<double>::infinity(), "0"), InvalidArgument);
}

TEST(SettingsUserLocale, KnowsSeparatorAndWordsOfEachLanguage) {
  const SettingsUserLocale german("DE", "DMY");
  EXPECT_EQ(german.decimal_separator(), ",");
  EXPECT_EQ(german.boolean_text(true), "Wahr");
  EXPECT_EQ(german.boolean_text(false), "Falsch");
  const SettingsUserLocale english("en", "mdy");
  EXPECT_EQ(english.decimal_separator(), ".");
  EXPECT_EQ(english.boolean_text(true), "True");
  EXPECT_EQ(english.boolean_text(false), "False");
  const SettingsUserLocale french("FR", "DMY");
  EXPECT_EQ(french.decimal_separator(), ",");
  EXPECT_EQ(french.boolean_text(true), "Vrai");
  EXPECT_EQ(french.boolean_text(false), "Faux");
}

TEST(SettingsUserLocale, ShowsDatesInTheUsersOrderSoThatTheyReadBack) {
  const std::pair<const char*, const char*> shown[] = {
      {"DMY", "04.03.2025"}, {"MDY", "03/04/2025"}, {"YMD", "2025-03-04"}, {"YDM", "2025/04/03"}};
  for (const auto& [order, day] : shown) {
    const SettingsUserLocale locale("DE", order);
    for (const auto& [time, date] :
         {std::pair{"", DateTime{2025, 3, 4}}, std::pair{" 07:05", DateTime{2025, 3, 4, 7, 5}},
          std::pair{" 07:05:09", DateTime{2025, 3, 4, 7, 5, 9}}}) {
      EXPECT_EQ(locale.format_date(date), std::string(day) + time);
      EXPECT_EQ(locale.to_date(std::string(day) + time), date) << order;
    }
  }
}

TEST(SettingsUserLocale, ReadsDatesInTheUsersOrder) {
  const DateTime third_of_april{2021, 4, 3};
  EXPECT_EQ(SettingsUserLocale("DE", "DMY").to_date("3.4.21"), third_of_april);
  EXPECT_EQ(SettingsUserLocale("EN", "MDY").to_date("4/3/2021"), third_of_april);
  EXPECT_EQ(SettingsUserLocale("EN", "MDY").to_date("2021-04-03"), third_of_april);
  EXPECT_EQ(SettingsUserLocale("EN", "MDY").to_date("03.04.2021"), third_of_april);
  EXPECT_EQ(SettingsUserLocale("DE", "DMY").to_date("3.4.2021 13:30"),
            (DateTime{2021, 4, 3, 13, 30}));
  EXPECT_EQ(SettingsUserLocale("DE", "DMY").to_date("31.4.2021"), std::nullopt);
}

TEST(SettingsUserLocale, RefusesAnUnknownLanguageOrDateOrder) {
  EXPECT_THROW(SettingsUserLocale("XX", "DMY"), InvalidArgument);
  EXPECT_THROW(SettingsUserLocale("", "DMY"), InvalidArgument);
  EXPECT_THROW(SettingsUserLocale("DE", "MYD"), InvalidArgument);
  try {
    SettingsUserLocale("XX", "DMY");
  } catch (const InvalidArgument& error) {
    EXPECT_STREQ(error.what(),
                 "There are no regional settings for the language 'XX'. Known are DE, EN and FR.");
  }
}

}  // namespace
}  // namespace kestrova
