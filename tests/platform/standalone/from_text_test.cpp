// Which tables stand in a FROM text: what is in table position counts, nothing else.
#include "platform/standalone/from_text.h"

#include <gtest/gtest.h>

namespace kestrova::standalone {

void PrintTo(const FromTable& table, std::ostream* out) {
  *out << table.table << " " << table.name;
}

namespace {

struct Row {
  const char* name;
  const char* from_text;
  std::vector<FromTable> tables;
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.from_text; }

class TablesIn : public testing::TestWithParam<Row> {};

TEST_P(TablesIn, AreThoseInTablePosition) {
  EXPECT_EQ(tables_in(GetParam().from_text), GetParam().tables);
}

// clang-format off
const Row kRows[] = {
    {"Nothing", "", {}},
    {"Blanks", "  \r\n", {}},
    {"OneTable", "Logs", {{"LOGS", "LOGS"}}},
    {"CommaList", "A, B ,C", {{"A", "A"}, {"B", "B"}, {"C", "C"}}},
    {"TrailingComma", "A, ", {{"A", "A"}}},
    {"Join", "A INNER JOIN B ON B.ID = A.B_ID", {{"A", "A"}, {"B", "B"}}},
    {"JoinsOfAllKinds", "A left outer join B ON 1=1 CROSS JOIN C FULL JOIN D ON 1=1 RIGHT JOIN E ON 1=1",
     {{"A", "A"}, {"B", "B"}, {"C", "C"}, {"D", "D"}, {"E", "E"}}},
    {"FragmentBeginningWithJoin", "LEFT JOIN B ON B.ID = A.ID", {{"B", "B"}}},
    {"FragmentBeginningWithComma", ", B", {{"B", "B"}}},
    {"Alias", "PERSONAL Kunde", {{"PERSONAL", "KUNDE"}}},
    {"AliasWithAs", "PERSONAL AS Kunde, B", {{"PERSONAL", "KUNDE"}, {"B", "B"}}},
    {"LongerNameIsAnotherTable", "LOGS_RECH", {{"LOGS_RECH", "LOGS_RECH"}}},
    {"Umlauts", "käufer", {{"KÄUFER", "KÄUFER"}}},
    {"TemporaryTable", "#ID", {{"#ID", "#ID"}}},
    {"Schema", "dbo.LOGS L", {{"LOGS", "L"}}},
    {"DatabaseWithoutSchema", "tempdb..#ID", {{"#ID", "#ID"}}},
    {"Brackets", "[dbo].[My Logs] [The Alias]", {{"MY LOGS", "THE ALIAS"}}},
    {"BracketInBrackets", "[A]]B]", {{"A]B", "A]B"}}},
    {"DoubleQuotes", "\"A, B\"", {{"A, B", "A, B"}}},
    {"QuotedKeyWord", "A [ON]", {{"A", "ON"}}},
    {"NameInOnCondition", "A JOIN B ON B.ID = LOGS.ID AND (LOGS.X = 1)", {{"A", "A"}, {"B", "B"}}},
    {"NameInInList", "A JOIN B ON B.ID IN (LOGS, PLAN)", {{"A", "A"}, {"B", "B"}}},
    {"NameInText", "A JOIN B ON B.N = 'x JOIN LOGS' AND B.M = 'it''s, LOGS'", {{"A", "A"}, {"B", "B"}}},
    {"NameInSubSelectOfCondition", "A JOIN B ON B.ID IN (SELECT ID FROM C JOIN D ON 1=1)", {{"A", "A"}, {"B", "B"}}},
    {"JoinGroup", "A LEFT JOIN (B INNER JOIN C ON C.ID = B.ID) ON B.ID = A.ID", {{"A", "A"}, {"B", "B"}, {"C", "C"}}},
    {"NestedJoinGroups", "((A JOIN B ON 1=1) JOIN C X ON 1=1)", {{"A", "A"}, {"B", "B"}, {"C", "X"}}},
    {"SubSelect", "A JOIN (SELECT ID FROM LOGS, PLAN) AL ON AL.ID = A.ID", {{"A", "A"}, {"", "AL"}}},
    {"SubSelectWithParentheses", "(select MAX(ID) AS M FROM (SELECT 1 AS ID) T) AS X, B", {{"", "X"}, {"B", "B"}}},
    {"UnionOfSubSelects", "((SELECT 1 AS A) UNION (SELECT 2)) U", {{"", "U"}}},
    {"TableFunction", "A CROSS APPLY dbo.SPLIT(A.X, ',') S", {{"A", "A"}, {"SPLIT", "S"}}},
    {"LockHint", "A WITH (NOLOCK), B", {{"A", "A"}, {"B", "B"}}},
    {"UnclosedText", "A JOIN B ON B.N = 'x JOIN C", {{"A", "A"}, {"B", "B"}}},
    {"UnclosedParenthesis", "A JOIN B ON (B.N = 1 JOIN C", {{"A", "A"}, {"B", "B"}}},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(FromText, TablesIn, testing::ValuesIn(kRows),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace kestrova::standalone
