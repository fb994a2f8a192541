// Generated values depend on seed, table, row and column, and on nothing else.
#include "examples/forest/row_dice.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace kestrova {
namespace {

constexpr DateTime kToday{2025, 3, 1, 14, 30};

RowDice dice(std::uint64_t seed = 1, std::string_view table = "LOGS", std::int64_t row = 7) {
  return RowDice(TableDice{seed, table, kToday}, row);
}

std::int64_t big(const RowDice& d, std::string_view column = "MENGE") {
  return d.between(column, 0, 1'000'000'000'000);
}

TEST(SqlLiterals, QuoteTextsAsUnicodeAndDoubleApostrophes) {
  EXPECT_EQ(sql_text("O'Brien, Käufer"), "N'O''Brien, Käufer'");
}

TEST(SqlLiterals, WriteDecimalsWithAllTheirDigits) {
  EXPECT_EQ(sql_decimal(1250, 2), "12.50");
  EXPECT_EQ(sql_decimal(7, 3), "0.007");
  EXPECT_EQ(sql_decimal(0, 1), "0.0");
}

TEST(SqlLiterals, WriteDaysInTheFormThatEveryDateOrderReadsAlike) {
  EXPECT_EQ(sql_date({2025, 3, 1, 14, 30}), "'20250301'");
}

TEST(RowDice, GivesTheSameValueForTheSameQuestion) { EXPECT_EQ(big(dice()), big(dice())); }

// Reckoned from the constants by another program, so that a database made elsewhere is the same
// one.
TEST(RowDice, GivesTheSameValueOnEveryCompiler) {
  EXPECT_EQ(big(dice()), 709'676'581'177);
  EXPECT_EQ(dice().between("STUECK", 1, 60), 6);
}

TEST(RowDice, GivesAnotherValueForAnotherSeedTableRowOrColumn) {
  EXPECT_NE(big(dice()), big(dice(2)));
  EXPECT_NE(big(dice()), big(dice(1, "KLR")));
  EXPECT_NE(big(dice()), big(dice(1, "LOGS", 8)));
  EXPECT_NE(big(dice()), big(dice(), "PREIS"));
}

TEST(RowDice, StaysBetweenItsBoundsAndReachesThem) {
  bool low = false, high = false;
  for (std::int64_t row = 1; row <= 1000; ++row) {
    const std::int64_t value = dice(1, "T", row).between("C", -2, 3);
    ASSERT_GE(value, -2);
    ASSERT_LE(value, 3);
    low = low || value == -2;
    high = high || value == 3;
  }
  EXPECT_TRUE(low);
  EXPECT_TRUE(high);
}

TEST(RowDice, HitsAShareOfTheRows) {
  int hits = 0;
  for (std::int64_t row = 1; row <= 10'000; ++row)
    hits += dice(1, "T", row).percent("C", 30) ? 1 : 0;
  EXPECT_NEAR(hits, 3000, 200);
}

TEST(RowDice, DecidesAboutNullApartFromTheValue) {
  int nulls = 0, ones = 0;
  for (std::int64_t row = 1; row <= 10'000; ++row) {
    const RowDice d = dice(1, "T", row);
    const std::string literal = d.nullable("C", 50, d.bit("C", 50));
    nulls += literal == "NULL" ? 1 : 0;
    ones += literal == "1" ? 1 : 0;
  }
  EXPECT_NEAR(nulls, 5000, 300);
  EXPECT_NEAR(ones, 2500, 300);
}

TEST(RowDice, CountsDaysFromToday) {
  EXPECT_EQ(dice().day(0), "'20250301'");
  EXPECT_EQ(dice().day(-1), "'20250228'");
  EXPECT_EQ(dice().date("C", 31, 31), "'20250401'");
}

TEST(RowDice, PicksOneOfTheChoices) {
  constexpr std::string_view one[] = {"Süß"};
  EXPECT_EQ(dice().text("C", one), "N'Süß'");
}

}  // namespace
}  // namespace kestrova
