// Values as the user reads them.
#include "platform/user_locale.h"

#include <gtest/gtest.h>

#include "platform/error.h"
#include "tests/support/fake_suite.h"

namespace kestrova::test {
namespace {

const FakeLocale kGerman(FakeLocale::Language::kGerman);
const FakeLocale kEnglish(FakeLocale::Language::kEnglish);

TEST(UserText, FollowsTheUsersSettings) {
  EXPECT_EQ(user_text(true, kGerman), "Wahr");
  EXPECT_EQ(user_text(false, kEnglish), "False");
  EXPECT_EQ(user_text(1.5, kGerman), "1,5");
  EXPECT_EQ(user_text(1.5, kEnglish), "1.5");
  EXPECT_EQ(user_text(Decimal{"-12.50"}, kGerman), "-12,50");
  EXPECT_EQ(user_text(DateTime{2024, 2, 29}, kGerman), "29.02.2024");
  EXPECT_EQ(user_text(DateTime{2024, 2, 29, 7, 5, 9}, kEnglish), "02/29/2024 07:05:09");
}

TEST(UserText, LeavesTextsAndWholeNumbersAsTheyAre) {
  EXPECT_EQ(user_text("1.5", kGerman), "1.5");
  EXPECT_EQ(user_text(1234, kGerman), "1234");
}

TEST(UserText, OfNullIsAnError) { EXPECT_THROW(user_text(Value(), kGerman), InvalidUseOfNull); }

TEST(UserLocale, TakesTheDecimalSeparatorFromHowItWritesZero) {
  EXPECT_EQ(kGerman.decimal_separator(), ",");
  EXPECT_EQ(kEnglish.decimal_separator(), ".");
}

}  // namespace
}  // namespace kestrova::test
