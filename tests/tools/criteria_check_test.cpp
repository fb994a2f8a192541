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
    Case{"OpenParenthesis", "5 IN ('a','b';", "criterion 1 (5 IN ('a','b'): a parenthesis has no partner"},
    // SQL that runs, past the base condition of the relation.
    Case{"WayOut", "3 = 1) OR (1 = 1;", "criterion 1 (3 = 1) OR (1 = 1): a parenthesis has no partner"},
    Case{"Escape", "3 = '\x1B[2J';", "criterion 1 (3 = '\x1B[2J'): it holds a character that cannot be printed"},
    Case{"LineComment", "3 = 1 --;", "criterion 1 (3 = 1 --): it holds a comment"},
    Case{"BlockComment", "3 = 1 /*;4 = 2 */;", "criterion 1 (3 = 1 /*): it holds a comment"}),
    [](const auto& test) { return test.param.name; });
// clang-format on

TEST(CriteriaCheck, AnOrLineIsNeverAFault) {
  EXPECT_NO_THROW(check_criteria("1 = 5;(or;2 = 6;", "(or"));
}

// --- Records that are not whole ----------------------------------------------------------------

struct StructureCase {
  std::string name;
  std::string criteria;
  std::string answer;  // reason and message
};

void PrintTo(const StructureCase& c, std::ostream* out) { *out << c.criteria; }

class Structure : public testing::TestWithParam<StructureCase> {};

TEST_P(Structure, Answers) {
  const auto fault = find_structure_fault(GetParam().criteria, kOrLine);
  const std::string answer =
      fault ? std::string(reason_text(fault->reason)) + "; " + fault->message : "whole";
  EXPECT_EQ(answer, GetParam().answer);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Filters, Structure, testing::Values(
    StructureCase{"Nothing", "", "whole"},
    StructureCase{"Groups", "1 = 5;=== ODER ===;2 = 6;3 = 7;", "whole"},
    StructureCase{"Half", "1 = 5;2 = 6", "half a record; criterion 2 (2 = 6): the \";\" at its end is missing"},
    StructureCase{"BlankBehind", "1 = 5; ", "half a record; criterion 2 ( ): the \";\" at its end is missing"},
    StructureCase{"Empty", "1 = 5;;2 = 6;", "empty record; criterion 2 (): it is empty"},
    StructureCase{"OnlyASeparator", ";", "empty record; criterion 1 (): it is empty"},
    StructureCase{"OrFirst", "=== ODER ===;1 = 5;", "OR line without criteria on both sides; criterion 1 (=== ODER ===): no criterion stands before it"},
    StructureCase{"OrLast", "1 = 5;=== ODER ===;", "OR line without criteria on both sides; criterion 2 (=== ODER ===): no criterion stands behind it"},
    StructureCase{"OrTwice", "1 = 5;=== ODER ===;=== ODER ===;2 = 6;", "OR line without criteria on both sides; criterion 3 (=== ODER ===): no criterion stands before it"}),
    [](const auto& test) { return test.param.name; });
// clang-format on

// --- Literals ------------------------------------------------------------------------------------

struct LiteralCase {
  std::string value;
  FieldType type;
  bool is_literal;
};

void PrintTo(const LiteralCase& c, std::ostream* out) {
  *out << c.value << " for type " << static_cast<int>(c.type);
}

class Literal : public testing::TestWithParam<LiteralCase> {};

TEST_P(Literal, FitsTheTypeOrNot) {
  EXPECT_EQ(is_literal(GetParam().value, GetParam().type), GetParam().is_literal);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Texts, Literal, testing::Values(
    LiteralCase{"'Fichte'", FieldType::kVarWChar, true},
    LiteralCase{"'O''Brien'", FieldType::kLongVarWChar, true},
    LiteralCase{"''", FieldType::kChar, true},
    LiteralCase{"Null", FieldType::kVarWChar, true},
    LiteralCase{"'null'", FieldType::kVarWChar, true},
    LiteralCase{"Fichte", FieldType::kVarWChar, false},
    LiteralCase{"5", FieldType::kVarWChar, false},
    LiteralCase{"'O'Brien'", FieldType::kVarWChar, false},
    LiteralCase{"'Fichte", FieldType::kVarWChar, false},
    LiteralCase{"", FieldType::kVarWChar, false}));

INSTANTIATE_TEST_SUITE_P(Numbers, Literal, testing::Values(
    LiteralCase{"5", FieldType::kInteger, true},
    LiteralCase{"-5.25", FieldType::kDouble, true},
    LiteralCase{".5", FieldType::kNumeric, true},
    LiteralCase{"1e3", FieldType::kDouble, true},
    LiteralCase{"'5'", FieldType::kInteger, true},
    LiteralCase{"NULL", FieldType::kInteger, true},
    LiteralCase{"12,5", FieldType::kDouble, false},
    LiteralCase{"1.000.000", FieldType::kDouble, false},
    LiteralCase{"'viele'", FieldType::kInteger, false},
    LiteralCase{"FLAECHE", FieldType::kInteger, false},
    LiteralCase{"1e", FieldType::kDouble, false},
    LiteralCase{"-", FieldType::kInteger, false},
    LiteralCase{"", FieldType::kInteger, false}));

INSTANTIATE_TEST_SUITE_P(Dates, Literal, testing::Values(
    LiteralCase{"'31.12.2024'", FieldType::kDate, true},
    LiteralCase{"'29.02.2024 13:05'", FieldType::kDBTimeStamp, true},
    LiteralCase{"'2024-12-31T13:05:07.250'", FieldType::kDBTimeStamp, true},
    LiteralCase{"'20241231'", FieldType::kDBDate, true},
    LiteralCase{"GETDATE()", FieldType::kDate, true},
    LiteralCase{"getdate() - 90", FieldType::kDate, true},
    LiteralCase{"Null", FieldType::kDate, true},
    LiteralCase{"'29.02.2023'", FieldType::kDate, false},
    LiteralCase{"'1/3/2025'", FieldType::kDate, false},
    LiteralCase{"1/3/2025", FieldType::kDate, false},
    LiteralCase{"'31.12.2024 spät'", FieldType::kDate, false},
    LiteralCase{"'GETDATE()'", FieldType::kDate, false},
    LiteralCase{"20241231", FieldType::kDate, false}));

INSTANTIATE_TEST_SUITE_P(Others, Literal, testing::Values(
    LiteralCase{"1", FieldType::kBoolean, true},
    LiteralCase{"'True'", FieldType::kBoolean, true},
    LiteralCase{"True", FieldType::kBoolean, false},
    LiteralCase{"2", FieldType::kBoolean, false},
    LiteralCase{"'13:05'", FieldType::kDBTime, true},
    LiteralCase{"0x00", FieldType::kBinary, true},
    LiteralCase{"anything", FieldType::kEmpty, true}));
// clang-format on

}  // namespace
}  // namespace kestrova::tool
