#include "tools/criteria_check.h"

#include <gtest/gtest.h>

#include "platform/error.h"

namespace kestrova::tool {
namespace {

constexpr std::string_view kOrLine = "=== ODER ===";

std::string refusal(std::string_view criteria) {
  try {
    check_criteria(criteria, kOrLine);
  } catch (const BadCriterion& error) {
    return error.what();
  }
  return "accepted";
}

struct Case {
  std::string name;
  std::string criteria;
  std::string answer;
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.criteria; }

class CriteriaCheck : public testing::TestWithParam<Case> {};

TEST_P(CriteriaCheck, Answers) { EXPECT_EQ(refusal(GetParam().criteria), GetParam().answer); }

// clang-format off
INSTANTIATE_TEST_SUITE_P(Filters, CriteriaCheck, testing::Values(
    Case{"Nothing", "", "accepted"},
    Case{"Usual", "12 = 'Fichte';=== ODER ===;3 >= 10;", "accepted"},
    Case{"DoubledApostrophe", "12 = 'O''Brien';", "accepted"},
    Case{"ParenthesisInText", "12 = 'a)';", "accepted"},
    Case{"List", "5 IN ('a','b');", "accepted"},
    Case{"Today", "7 >= GETDATE()-30;", "accepted"},
    Case{"MinusNumber", "3 > -5;", "accepted"},
    Case{"OpenQuote", "1 = 5;12 = 'Fichte;", "criterion 2 (12 = 'Fichte): its quote is not closed; a value cannot hold \";\""},
    Case{"SeparatorInText", "12 = 'a;b';", "criterion 1 (12 = 'a): its quote is not closed; a value cannot hold \";\""},
    Case{"OpenParenthesis", "5 IN ('a','b';", "criterion 1 (5 IN ('a','b'): a \")\" is missing"},
    // SQL that runs, past the base condition of the relation.
    Case{"WayOut", "3 = 1) OR (1 = 1;", "criterion 1 (3 = 1) OR (1 = 1): a \")\" has no \"(\" before it"},
    Case{"LineComment", "3 = 1 --;", "criterion 1 (3 = 1 --): it holds a comment"},
    Case{"BlockComment", "3 = 1 /*;4 = 2 */;", "criterion 1 (3 = 1 /*): it holds a comment"}),
    [](const auto& test) { return test.param.name; });
// clang-format on

TEST(CriteriaCheck, AnOrLineIsNeverAFault) {
  EXPECT_NO_THROW(check_criteria("1 = 5;(or;2 = 6;", "(or"));
}

}  // namespace
}  // namespace kestrova::tool
