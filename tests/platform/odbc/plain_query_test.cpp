// What is read in a query of the rows that it answers.
#include "platform/odbc/plain_query.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/odbc/sql_words.h"

namespace kestrova::odbc {
namespace {

using testing::ElementsAre;

std::vector<std::string> texts(std::string_view sql) {
  std::vector<std::string> result;
  for (const SqlWord& word : words_of(sql)) {
    constexpr std::string_view kKinds = "wnl.";
    result.push_back(kKinds.substr(static_cast<std::size_t>(word.kind), 1).data());
    result.back().resize(1);
    result.back() += word.text;
  }
  return result;
}

TEST(SqlWords, AreWordsNamesLiteralsAndMarks) {
  EXPECT_THAT(texts("SELECT [a]]b], \"c\"\"d\" FROM dbo.#T\r\nWHERE x=N'it''s'"),
              ElementsAre("wSELECT", "na]b", ".,", "nc\"d", "wFROM", "wdbo", "..", "w#T", "wWHERE",
                          "wx", ".=", "wN", "lit's"));
  EXPECT_THAT(texts("a/* b */-- c\nGRÖSSE;"), ElementsAre("wa", "wGRÖSSE", ".;"));
  EXPECT_THAT(texts("a 'b"), ElementsAre("wa"));
  EXPECT_THAT(texts("a /* b"), ElementsAre("wa"));
  EXPECT_TRUE(words_of(" \r\n").empty());
}

TEST(SqlWords, OnlyAPlainWordIsAWordOfSql) {
  EXPECT_TRUE(words_of("from").front().is("FROM"));
  EXPECT_FALSE(words_of("[FROM]").front().is("FROM"));
  EXPECT_FALSE(words_of("'FROM'").front().is("FROM"));
}

struct TableRow {
  const char* name;
  std::string_view query;
  TableName table;
};

class QueryOfOneTable : public testing::TestWithParam<TableRow> {};

TEST_P(QueryOfOneTable, NamesIt) {
  const auto plain = plain_query(GetParam().query);
  ASSERT_TRUE(plain);
  EXPECT_EQ(plain->table, GetParam().table);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Queries, QueryOfOneTable, testing::Values(
    TableRow{"All", "SELECT * FROM T", {"", "", "T"}},
    TableRow{"Words", "select a, b from t where X = 'JOIN, UNION' order by A, B", {"", "", "t"}},
    TableRow{"Schema", "SELECT X.A FROM dbo.T AS X WHERE X.A IN (1, 2)", {"", "dbo", "T"}},
    TableRow{"Catalog", "SELECT A FROM FOREST.dbo.T X", {"FOREST", "dbo", "T"}},
    TableRow{"CatalogOnly", "SELECT A FROM FOREST..T", {"FOREST", "", "T"}},
    TableRow{"Brackets", "SELECT A FROM [my T]]s] OPTION (RECOMPILE)", {"", "", "my T]s"}},
    TableRow{"Quoted", "SELECT \"A\" FROM \"dbo\".\"T\"", {"", "dbo", "T"}},
    TableRow{"Top", "SELECT TOP 5 * FROM T /* , U */;", {"", "", "T"}},
    TableRow{"Limit", "SELECT * FROM T LIMIT 5", {"", "", "T"}},
    TableRow{"Temporary", "SELECT * FROM #T", {"", "", "#T"}}),
    [](const auto& row) { return std::string(row.param.name); });
// clang-format on

TEST(QueryOfOneTableTest, IsNoneThatMixes) {
  for (const char* sql : {"SELECT * FROM T A JOIN U B ON A.ID = B.ID",
                          "SELECT * FROM T, U",
                          "SELECT * FROM T A, T B",
                          "SELECT * FROM T UNION SELECT * FROM U",
                          "SELECT DISTINCT A FROM T",
                          "SELECT A FROM T GROUP BY A",
                          "SELECT * FROM (SELECT * FROM T) A",
                          "SELECT * FROM T WHERE ID IN (SELECT ID FROM T)",
                          "SELECT * FROM T CROSS APPLY F(T.ID)",
                          "SELECT * FROM T EXCEPT SELECT * FROM U",
                          "SELECT MAX(A) FROM T HAVING COUNT(*) > 1",
                          "SELECT * FROM F(1)",
                          "SELECT * FROM T WITH (NOLOCK)",
                          "SELECT * FROM a.b.c.d",
                          "SELECT * FROM 'T'",
                          "SELECT * FROM",
                          "SELECT 1",
                          "(SELECT * FROM T)",
                          "DELETE FROM T",
                          ""}) {
    EXPECT_FALSE(plain_query(sql)) << sql;
  }
}

struct ColumnsRow {
  const char* name;
  std::string_view query;
  std::vector<std::string> result_names;
  std::vector<std::string> columns;
};

class SourceColumnsOf : public testing::TestWithParam<ColumnsRow> {};

TEST_P(SourceColumnsOf, ThoseThatAreTheTablesOwn) {
  const auto plain = plain_query(GetParam().query);
  ASSERT_TRUE(plain);
  EXPECT_EQ(source_columns(*plain, GetParam().result_names), GetParam().columns);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Queries, SourceColumnsOf, testing::Values(
    ColumnsRow{"All", "SELECT * FROM T", {"ID", "NAME"}, {"ID", "NAME"}},
    ColumnsRow{"AllOfTheTable", "SELECT TOP (3) X.* FROM T X", {"ID", "NAME"}, {"ID", "NAME"}},
    ColumnsRow{"Some", "SELECT id, X.[NAME], dbo.T.C FROM dbo.T X", {"ID", "NAME", "C"}, {"ID", "NAME", "C"}},
    ColumnsRow{"Top", "SELECT TOP 3 ID FROM T", {"ID"}, {"ID"}},
    ColumnsRow{"Expressions", "SELECT ID, NAME + '!', F(A, B), (C), 1, 'x' D FROM T", {"ID", "", "", "C", "", "D"}, {"ID", "", "", "", "", ""}},
    ColumnsRow{"OtherNames", "SELECT ID AS NAME, NAME ID, X = NAME FROM T", {"NAME", "ID", "X"}, {"", "", ""}},
    ColumnsRow{"NamesOfNoColumn", "SELECT ID, NULL, CURRENT_USER FROM T", {"ID", "", ""}, {"ID", "", ""}},
    ColumnsRow{"AllAndMore", "SELECT *, NAME FROM T", {"ID", "NAME", "NAME"}, {"", "", ""}},
    ColumnsRow{"AnotherNumber", "SELECT ID, NAME FROM T", {"ID", "NAME", "X"}, {"", "", ""}}),
    [](const auto& row) { return std::string(row.param.name); });
// clang-format on

}  // namespace
}  // namespace kestrova::odbc
