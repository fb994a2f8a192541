// Search criteria of row sets, as all adapters read them.
#include "platform/database.h"

#include <gtest/gtest.h>

#include "platform/error.h"
#include "platform/kes_var.h"

namespace kestrova {
namespace {

struct CriterionRow {
  const char* name;
  const char* criterion;
  const char* column;
  const char* operand;
  bool is_number;
};

void PrintTo(const CriterionRow& row, std::ostream* out) { *out << row.criterion; }

class ReadCriteria : public testing::TestWithParam<CriterionRow> {};

TEST_P(ReadCriteria, HaveColumnAndOperand) {
  const FindCriterion criterion = parse_find_criterion(GetParam().criterion);
  EXPECT_EQ(criterion.column, GetParam().column);
  EXPECT_EQ(criterion.operand, GetParam().operand);
  EXPECT_EQ(criterion.is_number, GetParam().is_number);
}

// clang-format off
const CriterionRow kCriteria[] = {
    {"Text", "NICKNAME_OF_FIELD = 'Käufer'", "NICKNAME_OF_FIELD", "Käufer", false},
    {"NoBlanks", "NAME='x'", "NAME", "x", false},
    {"BlanksAround", "  NAME  =  'x'  ", "NAME", "x", false},
    {"BlanksInside", "NAME = ' x '", "NAME", " x ", false},
    {"EmptyText", "NAME = ''", "NAME", "", false},
    {"EqualsSignInText", "NAME = 'a=b'", "NAME", "a=b", false},
    {"NumberInQuotes", "NAME = '12'", "NAME", "12", false},
    {"Number", "ID = 12", "ID", "12", true},
    {"NegativeFraction", "ID = -1.5", "ID", "-1.5", true},
    {"Exponent", "ID = 1e3", "ID", "1e3", true},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(FindCriterion, ReadCriteria, testing::ValuesIn(kCriteria),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(ParseFindCriterion, RefusesAnythingElse) {
  for (const char* criterion : {"",
                                "NAME",
                                "= 'x'",
                                "NAME =",
                                "NAME = x",
                                "NAME = '",
                                "NAME = 'x",
                                "NAME = x'",
                                "NAME = 'it's'",
                                "NAME = 'it''s'",
                                "NAME = 'x' AND ID = 1",
                                "NAME >= 'x'",
                                "NAME <> 'x'",
                                "NAME LIKE 'x'",
                                "TWO WORDS = 'x'",
                                "'NAME' = 'x'",
                                "ID = 1 2",
                                "ID = 1x",
                                "ID = nan",
                                "ID = inf",
                                "ID == 1",
                                "ID = NULL"}) {
    EXPECT_THROW(parse_find_criterion(criterion), BadCriterion) << criterion;
  }
}

TEST(ParseFindCriterion, QuotesWhatItRefuses) {
  try {
    parse_find_criterion("NAME LIKE 'x'");
    FAIL() << "no error";
  } catch (const BadCriterion& error) {
    EXPECT_STREQ(error.what(), "The search criterion cannot be read: NAME LIKE 'x'");
    EXPECT_EQ(error.number(), 3001);
  }
}

struct MeetsRow {
  const char* name;
  const char* criterion;
  Value value;
  bool meets;
};

void PrintTo(const MeetsRow& row, std::ostream* out) { *out << row.criterion; }

class Meets : public testing::TestWithParam<MeetsRow> {};

TEST_P(Meets, ComparesAsTheServerDoes) {
  EXPECT_EQ(meets(parse_find_criterion(GetParam().criterion), GetParam().value), GetParam().meets);
}

// clang-format off
const MeetsRow kMeetings[] = {
    {"SameText", "N = 'Fichte'", "Fichte", true},
    {"OtherText", "N = 'Fichte'", "Fichten", false},
    {"OtherCase", "N = 'KÄUFER'", "Käufer", true},
    {"TrailingBlanksOfTheValue", "N = 'Fichte'", "Fichte   ", true},
    {"TrailingBlanksOfTheCriterion", "N = 'Fichte  '", "Fichte", true},
    {"LeadingBlanksCount", "N = 'Fichte'", " Fichte", false},
    {"EmptyAndBlank", "N = ''", "  ", true},
    {"NullMeetsNoText", "N = ''", Value(), false},
    {"NullMeetsNoNumber", "N = 0", Value(), false},
    {"SameNumber", "N = 12", 12, true},
    {"SameNumberOfAnotherKind", "N = 12", 12.0, true},
    {"DecimalOfAnotherScale", "N = 1.5", Decimal{"1.50"}, true},
    {"OtherNumber", "N = 12", 13, false},
    {"NumberAgainstSpelledNumber", "N = 12", "12.0", true},
    {"NumberAgainstText", "N = 12", "zwölf", false},
    {"TextAgainstNumber", "N = '12'", 12, true},
    {"TextIsNotComparedAsNumber", "N = '12.0'", 12, false},
    {"Boolean", "N = 1", true, true},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(FindCriterion, Meets, testing::ValuesIn(kMeetings),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(ConnectionOf, RaisesWithoutConnection) {
  const KesVar context;
  EXPECT_THROW(connection_of(context), ObjectNotSet);
}

}  // namespace
}  // namespace kestrova
