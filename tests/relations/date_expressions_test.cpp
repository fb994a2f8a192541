// Date values of criteria, and which types are dates.
#include "relations/date_expressions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "interface/module_state.h"
#include "platform/error.h"
#include "tests/support/fake_suite.h"
#include "tests/support/golden.h"

namespace kestrova::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(DateFieldTypes, GoldenTable) {
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/is_date_field_type.tsv")) {
    EXPECT_EQ(IsDateFieldType(row.number("field_type")), row.flag("is_date")) << row.place();
  }
}

TEST(DateLiterals, GoldenTable) {
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/date_literals.tsv")) {
    SCOPED_TRACE(row.place() + ": " + row["value"] + " " + row["date_order"]);
    std::string result;
    std::string error;
    try {
      result = ToDateLiteral(row["value"], row["date_order"]);
    } catch (const TypeMismatch&) {
      error = "TypeMismatch";
    } catch (const Overflow&) {
      error = "Overflow";
    }
    EXPECT_EQ(result, row["result"]);
    EXPECT_EQ(error, row["error"]);
  }
}

class DateExpressions : public ::testing::Test {
 protected:
  ~DateExpressions() override { install_host({}); }

  void install(FakeLocale::Language language) {
    install_host({suite, nullptr, std::make_shared<FakeLocale>(language)});
  }

  std::shared_ptr<FakeSuite> suite = std::make_shared<FakeSuite>();
};

TEST_F(DateExpressions, GoldenTable) {
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/date_expressions.tsv")) {
    SCOPED_TRACE(row.place() + ": " + row["value"]);
    ASSERT_THAT(row["locale"], ::testing::AnyOf("de", "en"));
    install(row["locale"] == "de" ? FakeLocale::Language::kGerman : FakeLocale::Language::kEnglish);
    EXPECT_EQ(ToDateExpression({row["date_order"], false}, row["value"]), row["result"]);
    EXPECT_EQ(ToDateExpression({row["date_order"], true}, row["value"]), row["result"]);
    EXPECT_EQ(suite->live_services(), 0U);
  }
}

TEST_F(DateExpressions, TheFormatterGetsTheDateWithoutApostrophesTheFlagAndTheOrder) {
  install(FakeLocale::Language::kGerman);
  EXPECT_EQ(ToDateExpression({"MDY", true}, " '3/4/2021' "), "'S(3/4/2021)'");
  EXPECT_EQ(ToDateExpression({"YMD", false}, "2021-04-03"), "'S(2021-04-03)'");
  EXPECT_THAT(suite->log(), ElementsAre("server_date('3/4/2021', true, 'MDY')",
                                        "server_date('2021-04-03', false, 'YMD')"));
}

TEST_F(DateExpressions, OnlyAnAbsoluteDateAsksTheFormatter) {
  install(FakeLocale::Language::kGerman);
  EXPECT_EQ(ToDateExpression({"DMY", false}, "5"), "GETDATE()+5");
  EXPECT_EQ(ToDateExpression({"DMY", false}, "getdate()-1"), "getdate()-1");
  EXPECT_THAT(suite->log(), IsEmpty());
}

TEST_F(DateExpressions, TheFormattersErrorReachesTheCaller) {
  install(FakeLocale::Language::kGerman);
  suite->fail_on_call(1);
  EXPECT_THROW(ToDateExpression({"DMY", false}, "1.2.2021"), InvalidArgument);
  EXPECT_EQ(suite->live_services(), 0U);
  EXPECT_EQ(ToDateExpression({"DMY", false}, "1.2.2021"), "'S(1.2.2021)'");
}

}  // namespace
}  // namespace kestrova::test
