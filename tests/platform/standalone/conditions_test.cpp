// Joining conditions must never admit rows that one of them excludes.
#include "platform/standalone/conditions.h"

#include <gtest/gtest.h>

namespace kestrova::standalone {
namespace {

struct Row {
  const char* name;
  const char* condition;
  const char* guarded;
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.condition; }

class Guarded : public testing::TestWithParam<Row> {};

TEST_P(Guarded, HasParenthesesExactlyAroundAnOpenOr) {
  EXPECT_EQ(guarded(GetParam().condition), GetParam().guarded);
}

// clang-format off
const Row kRows[] = {
    {"Nothing", "", ""},
    {"Plain", "A = 1", "A = 1"},
    {"And", "A = 1 AND B = 2", "A = 1 AND B = 2"},
    {"Or", "A = 1 OR B = 2", "(A = 1 OR B = 2)"},
    {"SmallLetters", "A = 1 or B = 2", "(A = 1 or B = 2)"},
    {"OrAtALineEnd", "A = 1\r\nOR\tB = 2", "(A = 1\r\nOR\tB = 2)"},
    {"OrInParentheses", "(A = 1 OR B = 2)", "(A = 1 OR B = 2)"},
    {"OrBetweenParentheses", "(A = 1) OR (B = 2)", "((A = 1) OR (B = 2))"},
    {"OrInNestedParentheses", "X AND (A AND (B OR C))", "X AND (A AND (B OR C))"},
    {"OrBehindParentheses", "(A OR B) AND C OR D", "((A OR B) AND C OR D)"},
    {"OrInText", "A = 'this OR that'", "A = 'this OR that'"},
    {"OrBehindQuoteInText", "A = 'it''s' OR B = 1", "(A = 'it''s' OR B = 1)"},
    {"OrAsQuotedName", "[OR] = 1 AND \"OR\" = 2", "[OR] = 1 AND \"OR\" = 2"},
    {"OrInsideAWord", "ORT = 1 AND MOTOR = 2", "ORT = 1 AND MOTOR = 2"},
    {"OrInCase", "1 = CASE WHEN A = 1 OR B = 2 THEN 1 END", "1 = CASE WHEN A = 1 OR B = 2 THEN 1 END"},
    {"OrBehindCase", "1 = CASE WHEN A = 1 THEN 1 END OR B", "(1 = CASE WHEN A = 1 THEN 1 END OR B)"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Conditions, Guarded, testing::ValuesIn(kRows),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(JoinedByAnd, JoinsTwoConditions) {
  EXPECT_EQ(joined_by_and("A = 1", "B = 2"), "A = 1 AND B = 2");
}

TEST(JoinedByAnd, AnswersTheOtherWhenOneIsEmptyOrBlank) {
  EXPECT_EQ(joined_by_and("", "B = 2"), "B = 2");
  EXPECT_EQ(joined_by_and("A = 1", ""), "A = 1");
  EXPECT_EQ(joined_by_and("  ", "B = 2"), "B = 2");
  EXPECT_EQ(joined_by_and("", ""), "");
}

TEST(JoinedByAnd, KeepsTheMeaningOfAnOrOnEitherSide) {
  EXPECT_EQ(joined_by_and("A OR B", "C"), "(A OR B) AND C");
  EXPECT_EQ(joined_by_and("A", "B OR C"), "A AND (B OR C)");
}

}  // namespace
}  // namespace kestrova::standalone
