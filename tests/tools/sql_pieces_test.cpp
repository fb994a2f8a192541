#include "tools/sql_pieces.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace kestrova::tool {
namespace {

using testing::ElementsAre;

std::vector<std::string_view> texts_of(std::string_view sql) {
  std::vector<std::string_view> texts;
  for (const SqlPiece& piece : split_sql(sql)) texts.push_back(piece.text);
  return texts;
}

TEST(SqlPieces, AreTheWholeText) {
  EXPECT_THAT(texts_of(" FROM [A B].C,\"d\"  WHERE X>='it''s ;'"),
              ElementsAre(" ", "FROM", " ", "[A B]", ".C", ",", "\"d\"", "  ", "WHERE", " ", "X",
                          ">", "=", "'it''s ;'"));
}

TEST(SqlPieces, AnUnclosedQuoteReachesToTheEnd) {
  const std::vector<SqlPiece> pieces = split_sql("X = 'a AND Y");
  ASSERT_EQ(pieces.size(), 5U);
  EXPECT_EQ(pieces.back().text, "'a AND Y");
  EXPECT_FALSE(pieces.back().closed);
}

TEST(SqlPieces, KeyWordsIgnoreCase) {
  EXPECT_TRUE(split_sql("where").front().is_word("WHERE"));
  EXPECT_FALSE(split_sql("'WHERE'").front().is_word("WHERE"));
}

struct MainTable {
  std::string name;
  std::string from_where;
  std::string table;
};

void PrintTo(const MainTable& c, std::ostream* out) { *out << c.from_where; }

class MainTableOf : public testing::TestWithParam<MainTable> {};

TEST_P(MainTableOf, Answers) { EXPECT_EQ(main_table(GetParam().from_where), GetParam().table); }

// clang-format off
INSTANTIATE_TEST_SUITE_P(FromTexts, MainTableOf, testing::Values(
    MainTable{"Alone", " FROM LOGS", "LOGS"},
    MainTable{"Condition", " FROM LOGS  WHERE LOGS.ID = 1", "LOGS"},
    MainTable{"Join", " FROM LOGS LEFT JOIN HOLZART ON HOLZART.ID = LOGS.ID_HOLZART", "LOGS"},
    MainTable{"SeveralTables", " FROM LOGS,HOLZART", "LOGS"},
    MainTable{"Alias", " FROM BB_HAB H WHERE H.ID = 1", "H"},
    MainTable{"AliasWithAs", " FROM BB_HAB AS H", "H"},
    MainTable{"Quoted", " FROM [BB HAB]", "[BB HAB]"},
    MainTable{"Parentheses", " FROM (LOGS INNER JOIN HOLZART ON 1 = 1)", "LOGS"},
    MainTable{"NoTable", " FROM  WHERE ID = 1", ""},
    MainTable{"NoFrom", "WHERE ID = 1", ""},
    MainTable{"Empty", "", ""}),
    [](const auto& test) { return test.param.name; });
// clang-format on

}  // namespace
}  // namespace kestrova::tool
