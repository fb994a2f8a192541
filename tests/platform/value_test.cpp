// Column values as text and as numbers.
#include "platform/value.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/error.h"

namespace kestrova {
namespace {

TEST(ValueText, DependsOnNoLocale) {
  EXPECT_EQ(Value(true).text(), "1");
  EXPECT_EQ(Value(false).text(), "0");
  EXPECT_EQ(Value(-12).text(), "-12");
  EXPECT_EQ(Value(std::numeric_limits<std::int64_t>::min()).text(), "-9223372036854775808");
  EXPECT_EQ(Value(0.1).text(), "0.1");
  EXPECT_EQ(Value(2.0).text(), "2");
  EXPECT_EQ(Value(-1234.5).text(), "-1234.5");
  EXPECT_EQ(Value(Decimal{"1.50"}).text(), "1.50");
  EXPECT_EQ(Value("Käufer ").text(), "Käufer ");
  EXPECT_EQ(Value("").text(), "");
  EXPECT_EQ(Value(DateTime{2024, 2, 29, 7, 5, 9}).text(), "2024-02-29 07:05:09");
  EXPECT_EQ(Value(Bytes{std::byte{0x00}, std::byte{0xAF}}).text(), "00af");
  EXPECT_EQ(Value(Bytes{}).text(), "");
}

TEST(ValueText, OfNullIsAnErrorUnlessAskedFor) {
  EXPECT_THROW(Value().text(), InvalidUseOfNull);
  EXPECT_EQ(Value().text_or_empty(), "");
  EXPECT_EQ(Value("a").text_or_empty(), "a");
}

TEST(ValueInteger, RoundsHalfToEven) {
  EXPECT_EQ(Value(0.5).integer(), 0);
  EXPECT_EQ(Value(1.5).integer(), 2);
  EXPECT_EQ(Value(2.5).integer(), 2);
  EXPECT_EQ(Value(-1.5).integer(), -2);
  EXPECT_EQ(Value(Decimal{"3.50"}).integer(), 4);
  EXPECT_EQ(Value("4.5").integer(), 4);
}

TEST(ValueInteger, ReadsEveryKindOfNumber) {
  EXPECT_EQ(Value(true).integer(), 1);
  EXPECT_EQ(Value(false).integer(), 0);
  EXPECT_EQ(Value(std::int64_t{42}).integer(), 42);
  EXPECT_EQ(Value(" 42 ").integer(), 42);
  EXPECT_EQ(Value("+42").integer(), 42);
  EXPECT_EQ(Value("-4.2e1").integer(), -42);
}

TEST(ValueInteger, RefusesWhatDoesNotFit) {
  EXPECT_EQ(Value(2147483647).integer(), 2147483647);
  EXPECT_EQ(Value(-2147483648.0).integer(), std::numeric_limits<std::int32_t>::min());
  EXPECT_THROW(Value(std::int64_t{2147483648}).integer(), Overflow);
  EXPECT_THROW(Value(2147483647.5).integer(), Overflow);
  EXPECT_THROW(Value(std::numeric_limits<double>::quiet_NaN()).integer(), Overflow);
  EXPECT_THROW(Value("99999999999").integer(), Overflow);
  EXPECT_THROW(Value("1e999").integer(), Overflow);
}

TEST(ValueInteger, RefusesWhatIsNoNumber) {
  EXPECT_THROW(Value().integer(), InvalidUseOfNull);
  EXPECT_THROW(Value(DateTime{}).integer(), TypeMismatch);
  EXPECT_THROW(Value(Bytes{std::byte{1}}).integer(), TypeMismatch);
  for (const char* text : {"", " ", "x", "1x", "1,5", "+-1", "--1", "inf", "nan", "-infinity"}) {
    EXPECT_THROW(Value(text).integer(), TypeMismatch) << text;
  }
  try {
    Value("1x").integer();
  } catch (const TypeMismatch& error) {
    EXPECT_STREQ(error.what(), "'1x' is no number.");
  }
}

TEST(ValueBoolean, OfANumberIsWhetherItIsNotZero) {
  for (const Value& value :
       {Value(1), Value(-1), Value(2), Value(std::int64_t{1} << 40), Value(0.5), Value(-1e-9),
        Value(Decimal{"0.01"}), Value(Decimal{"-1"}), Value(Decimal{"100000000000000000000"})}) {
    EXPECT_TRUE(value.boolean()) << value.text();
  }
  for (const Value& value : {Value(0), Value(0.0), Value(-0.0), Value(Decimal{"0"}),
                             Value(Decimal{"0.00"}), Value(Decimal{"-0.0"})}) {
    EXPECT_FALSE(value.boolean()) << value.text();
  }
  EXPECT_TRUE(Value(true).boolean());
  EXPECT_FALSE(Value(false).boolean());
}

TEST(ValueBoolean, ReadsWordsOfThreeLanguagesInAnyCase) {
  for (const char* word :
       {"True", "TRUE", "true", "Wahr", "WAHR", "wahr", "wAHR", "Vrai", "VRAI", "vrai"}) {
    EXPECT_TRUE(Value(word).boolean()) << word;
  }
  for (const char* word :
       {"False", "FALSE", "false", "Falsch", "FALSCH", "falsch", "Faux", "FAUX", "faux"}) {
    EXPECT_FALSE(Value(word).boolean()) << word;
  }
}

TEST(ValueBoolean, ReadsNumbersInTexts) {
  for (const char* text : {"1", "-1", "+1", " 1 ", "2", "0.5", "1e3", "99999999999"}) {
    EXPECT_TRUE(Value(text).boolean()) << text;
  }
  for (const char* text : {"0", "-0", " 0 ", "0.0", "00", "0e5"}) {
    EXPECT_FALSE(Value(text).boolean()) << text;
  }
}

TEST(ValueBoolean, RefusesWhatIsNoBoolean) {
  EXPECT_THROW(Value().boolean(), InvalidUseOfNull);
  EXPECT_THROW(Value(Bytes{std::byte{1}}).boolean(), TypeMismatch);
  for (const char* text : {"", " ", "EURO", "DM", "cm", "Ja", "Nein", "Yes", "T", "Truee", "Tru",
                           "x1", "1x", "--1", "inf", "nan", "True False"}) {
    EXPECT_THROW(Value(text).boolean(), TypeMismatch) << text;
  }
}

TEST(Value, KnowsItsKind) {
  EXPECT_TRUE(Value().is_null());
  EXPECT_FALSE(Value("").is_null());
  EXPECT_EQ(*Value(1).get_if<std::int64_t>(), 1);
  EXPECT_EQ(Value(1).get_if<double>(), nullptr);
  EXPECT_EQ(*Value("a").get_if<std::string>(), "a");
  EXPECT_EQ(Value(true).get_if<std::int64_t>(), nullptr);
}

TEST(Value, EqualsOnlyItsOwnKind) {
  EXPECT_EQ(Value(1), Value(std::int64_t{1}));
  EXPECT_NE(Value(1), Value(1.0));
  EXPECT_NE(Value(), Value(""));
  EXPECT_EQ(Value(), Value());
  EXPECT_NE(Value(Decimal{"1.5"}), Value(Decimal{"1.50"}));
}

}  // namespace
}  // namespace kestrova
