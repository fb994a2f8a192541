#include "tools/values.h"

#include <gtest/gtest.h>

#include "platform/error.h"
#include "platform/standalone/settings_user_locale.h"

namespace kestrova::tool {
namespace {

constexpr DateTime kDay{.year = 2024, .month = 3, .day = 5};

ValueFormat format_of(const char* language, const char* date_order) {
  return ValueFormat(std::make_shared<SettingsUserLocale>(language, date_order));
}

TEST(ValueFormat, ShowsDatesInTheUsersOrder) {
  EXPECT_EQ(format_of("DE", "DMY").show(kDay), "05.03.2024");
  EXPECT_EQ(format_of("DE", "MDY").show(kDay), "03/05/2024");
  EXPECT_EQ(format_of("DE", "YMD").show(kDay), "2024-03-05");
  EXPECT_EQ(format_of("DE", "YDM").show(kDay), "2024/05/03");
}

TEST(ValueFormat, ShowsATimeThatIsNotMidnight) {
  DateTime time = kDay;
  time.hour = 7;
  EXPECT_EQ(format_of("DE", "DMY").show(time), "05.03.2024 07:00");
  time.second = 9;
  EXPECT_EQ(format_of("DE", "DMY").show(time), "05.03.2024 07:00:09");
}

TEST(ValueFormat, SpeaksTheUsersLanguage) {
  const ValueFormat german = format_of("DE", "DMY");
  EXPECT_EQ(german.show(Value(Decimal{"-12.50"})), "-12,50");
  EXPECT_EQ(german.show(Value(1.5)), "1,5");
  EXPECT_EQ(german.show(Value(true)), "Wahr");
  const ValueFormat english = format_of("EN", "MDY");
  EXPECT_EQ(english.show(Value(Decimal{"-12.50"})), "-12.50");
  EXPECT_EQ(english.show(Value(false)), "False");
}

TEST(ValueFormat, LeavesTextsAndWholeNumbersAlone) {
  const ValueFormat german = format_of("DE", "DMY");
  EXPECT_EQ(german.show(Value("1.5")), "1.5");
  EXPECT_EQ(german.show(Value(1200)), "1200");
  EXPECT_EQ(german.show(Value()), "NULL");
}

TEST(ValueFormat, ShowsStoredDateLiterals) {
  const ValueFormat english = format_of("EN", "MDY");
  EXPECT_EQ(english.show_date_literal("'05.03.2024'"), "'03/05/2024'");
  EXPECT_EQ(english.show_date_literal("GETDATE()-30"), "GETDATE()-30");
  EXPECT_EQ(english.show_date_literal("'5.3.2024'"), "'5.3.2024'");
  EXPECT_EQ(english.show_date_literal("Null"), "Null");
}

TEST(JsonValues, KeepEveryDigit) {
  EXPECT_EQ(to_json(Value()), Json(nullptr));
  EXPECT_EQ(to_json(Value(true)), Json(true));
  EXPECT_EQ(to_json(Value(std::int64_t{9007199254740993})).dump(), "9007199254740993");
  EXPECT_EQ(to_json(Value(2.5)), Json(2.5));
  EXPECT_EQ(to_json(Value(Decimal{"1.50"})), Json("1.50"));
  EXPECT_EQ(to_json(Value(kDay)), Json("2024-03-05 00:00:00"));
  EXPECT_EQ(to_json(Value("Fichte")), Json("Fichte"));
}

TEST(FieldTypes, HaveNames) {
  EXPECT_EQ(type_name(FieldType::kVarWChar), "text");
  EXPECT_EQ(type_name(FieldType::kDBTimeStamp), "date and time");
  EXPECT_EQ(type_name(FieldType{999}), "unknown");
  EXPECT_TRUE(is_number(FieldType::kNumeric));
  EXPECT_FALSE(is_number(FieldType::kBoolean));
}

}  // namespace
}  // namespace kestrova::tool
