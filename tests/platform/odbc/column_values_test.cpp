// Values in the drivers' forms and in the port's.
#include "platform/odbc/column_values.h"

#include <gtest/gtest.h>

#include <cstring>

#include "platform/error.h"
#include "tests/support/recording_connection.h"

namespace kestrova::odbc {
namespace {

template <class T>
Value read(ReadAs read_as, const T& raw) {
  std::byte buffer[sizeof(T) + 1];  // on an odd address: blocks of rows are not aligned
  std::memcpy(buffer + 1, &raw, sizeof raw);
  return to_value(read_as, buffer + 1, sizeof raw);
}

Value read_text(ReadAs read_as, std::string_view raw) {
  return to_value(read_as, reinterpret_cast<const std::byte*>(raw.data()), raw.size());
}

TEST(ColumnValue, NumbersAndBitsAreReadFromTheirCTypes) {
  EXPECT_EQ(read(ReadAs::kBit, static_cast<unsigned char>(1)), Value(true));
  EXPECT_EQ(read(ReadAs::kBit, static_cast<unsigned char>(0)), Value(false));
  EXPECT_EQ(read(ReadAs::kInteger, SQLBIGINT{-9223372036854775807 - 1}),
            Value(std::int64_t{-9223372036854775807 - 1}));
  EXPECT_EQ(read(ReadAs::kDouble, SQLDOUBLE{0.1}), Value(0.1));
}

TEST(ColumnValue, TextsAreUtf16AndBytesAreBytes) {
  const char16_t text[] = {u'ä', 0xD83C, 0xDF32};
  EXPECT_EQ(read(ReadAs::kText, text), Value("ä🌲"));
  EXPECT_EQ(to_value(ReadAs::kText, nullptr, 0), Value(""));
  EXPECT_EQ(read(ReadAs::kBytes, std::byte{0}), Value(Bytes{std::byte{0}}));
  EXPECT_EQ(to_value(ReadAs::kBytes, nullptr, 0), Value(Bytes{}));
}

TEST(ColumnValue, DatesKeepTheirFraction) {
  EXPECT_EQ(read(ReadAs::kDate, SQL_DATE_STRUCT{2024, 2, 29}), Value(DateTime{2024, 2, 29}));
  EXPECT_EQ(read(ReadAs::kTimestamp, SQL_TIMESTAMP_STRUCT{2024, 2, 29, 13, 45, 10, 123456700}),
            Value(DateTime{2024, 2, 29, 13, 45, 10, 123456700}));
  EXPECT_EQ(read_text(ReadAs::kTimeText, "13:45:10.25"),
            Value(DateTime{1899, 12, 30, 13, 45, 10, 250000000}));
  EXPECT_EQ(read_text(ReadAs::kOffsetText, "2024-02-29 13:45:10.1234567 +01:00"),
            Value(DateTime{2024, 2, 29, 13, 45, 10, 123456700}));
}

TEST(ColumnValue, ADateThatThePortCannotHoldIsAnError) {
  EXPECT_THROW(read(ReadAs::kDate, SQL_DATE_STRUCT{-44, 3, 15}), DatabaseError);
  EXPECT_THROW(read(ReadAs::kTimestamp, SQL_TIMESTAMP_STRUCT{10000, 1, 1, 0, 0, 0, 0}),
               DatabaseError);
}

TEST(ColumnValue, ATextOfAnotherFormStaysAText) {
  EXPECT_EQ(read_text(ReadAs::kTimeText, "quarter to two"), Value("quarter to two"));
  EXPECT_EQ(read_text(ReadAs::kOffsetText, "2024-02-30 00:00:00 +01:00"),
            Value("2024-02-30 00:00:00 +01:00"));
  EXPECT_EQ(read_text(ReadAs::kDecimal, "NaN"), Value("NaN"));
}

struct DecimalCase {
  const char* driver;
  Value value;
};

class DecimalText : public testing::TestWithParam<DecimalCase> {};

TEST_P(DecimalText, HasADigitBeforeThePointAndKeepsItsScale) {
  EXPECT_EQ(decimal_value(GetParam().driver), GetParam().value);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Forms, DecimalText, testing::Values(
    DecimalCase{"12.50", Decimal{"12.50"}}, DecimalCase{"-12.50", Decimal{"-12.50"}},
    DecimalCase{".50", Decimal{"0.50"}}, DecimalCase{"-.50", Decimal{"-0.50"}},
    DecimalCase{"7", Decimal{"7"}}, DecimalCase{"7.", Decimal{"7"}}, DecimalCase{" 7.0 ", Decimal{"7.0"}},
    DecimalCase{"12345678901234567890123456789012345678", Decimal{"12345678901234567890123456789012345678"}},
    DecimalCase{"1E5", "1E5"}, DecimalCase{"1,5", "1,5"}, DecimalCase{"", ""}, DecimalCase{"-", "-"},
    DecimalCase{".", "."}, DecimalCase{"1.2.3", "1.2.3"}));
// clang-format on

TEST(TimeOfDay, IsReadWithAndWithoutFraction) {
  EXPECT_EQ(time_of_day("23:59:59.9999999"), (DateTime{1899, 12, 30, 23, 59, 59, 999999900}));
  EXPECT_EQ(time_of_day(" 00:00:00 "), (DateTime{1899, 12, 30}));
  for (const char* text : {"", "24:00:00", "12:60:00", "12:00:60", "1:00:00", "12:00", "12:00:00.",
                           "12:00:00.1234567890", "12:00:00 x"}) {
    EXPECT_EQ(time_of_day(text), std::nullopt) << text;
  }
}

TEST(DateWithOffset, IsReadAsTheTimeThatStandsThere) {
  EXPECT_EQ(date_time("2024-12-31 23:59:59"), (DateTime{2024, 12, 31, 23, 59, 59}));
  EXPECT_EQ(date_time("2024-12-31 23:59:59 -05:30"), (DateTime{2024, 12, 31, 23, 59, 59}));
  EXPECT_EQ(date_time("2024-12-31 23:59:59+05:30"), (DateTime{2024, 12, 31, 23, 59, 59}));
  for (const char* text : {"", "2024-12-31", "2024-13-01 00:00:00", "31.12.2024 00:00:00",
                           "2024-12-31 00:00:00 +5", "2024-12-31 00:00:00 CET"}) {
    EXPECT_EQ(date_time(text), std::nullopt) << text;
  }
}

TEST(FractionDigits, AreThoseThatCount) {
  EXPECT_EQ(fraction_digits({2024, 1, 1, 0, 0, 0, 0}), 0);
  EXPECT_EQ(fraction_digits({2024, 1, 1, 0, 0, 0, 500'000'000}), 1);
  EXPECT_EQ(fraction_digits({2024, 1, 1, 0, 0, 0, 3'000'000}), 3);
  EXPECT_EQ(fraction_digits({2024, 1, 1, 0, 0, 0, 1}), 9);
}

TEST(Buffer, FitsEveryValueOfItsColumn) {
  EXPECT_EQ(buffer_size(ReadAs::kText, 50), 102U);
  EXPECT_EQ(buffer_size(ReadAs::kBytes, 20), 20U);
  EXPECT_EQ(buffer_size(ReadAs::kBytes, 0), 1U);
  EXPECT_EQ(buffer_size(ReadAs::kDecimal, 12), 44U);
  EXPECT_EQ(buffer_size(ReadAs::kDecimal, 1000), 1004U);
  EXPECT_EQ(buffer_size(ReadAs::kOffsetText, 34), 40U);
}

}  // namespace
}  // namespace kestrova::odbc
