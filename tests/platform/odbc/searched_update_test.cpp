// The UPDATE by key, word for word.
#include "platform/odbc/searched_update.h"

#include <gtest/gtest.h>

namespace kestrova::odbc {
namespace {

TEST(QuotedName, IsWrittenAsTheDatabaseWritesIt) {
  EXPECT_EQ(quoted_name("a]b", "["), "[a]]b]");
  EXPECT_EQ(quoted_name("a\"b", "\""), "\"a\"\"b\"");
  EXPECT_EQ(quoted_name("a b", "`"), "`a b`");
  EXPECT_EQ(quoted_name("AB", " "), "AB");
  EXPECT_EQ(quoted_name("AB", ""), "AB");
}

TEST(QuotedName, OfATableHasTheCatalogAndSchemaThatAreKnown) {
  EXPECT_EQ(quoted_name(TableName{"", "", "T"}, "\""), "\"T\"");
  EXPECT_EQ(quoted_name(TableName{"", "public", "T"}, "\""), "\"public\".\"T\"");
  EXPECT_EQ(quoted_name(TableName{"FOREST", "dbo", "#t"}, "["), "[FOREST].[dbo].[#t]");
  EXPECT_EQ(quoted_name(TableName{"FOREST", "", "T"}, "["), "[FOREST]..[T]");
  EXPECT_EQ(quoted_name(TableName{"forest", "", "T"}, "`"), "`forest`.`T`");
}

TEST(SearchedUpdate, AsksThatTheKeyNamesOneRow) {
  const SearchedUpdate update{.table = {"", "dbo", "LOGS"},
                              .changed = {"NAME", "PREIS"},
                              .key = {{"ID"}},
                              .others = {{"NAME"}, {"PREIS", true}}};
  EXPECT_EQ(update_text(update, "["),
            "UPDATE [dbo].[LOGS] SET [NAME] = ?, [PREIS] = ? WHERE [ID] = ? AND [NAME] = ? AND "
            "[PREIS] IS NULL AND (SELECT COUNT(*) FROM [dbo].[LOGS] WHERE [ID] = ?) = 1");
  EXPECT_EQ(count_text(update, "["), "SELECT COUNT(*) FROM [dbo].[LOGS] WHERE [ID] = ?");
}

TEST(SearchedUpdate, KnowsKeysOfSeveralColumns) {
  const SearchedUpdate update{
      .table = {"", "", "T"}, .changed = {"X"}, .key = {{"A"}, {"B"}}, .others = {}};
  EXPECT_EQ(update_text(update, "\""),
            "UPDATE \"T\" SET \"X\" = ? WHERE \"A\" = ? AND \"B\" = ? AND (SELECT COUNT(*) FROM "
            "\"T\" WHERE \"A\" = ? AND \"B\" = ?) = 1");
}

TEST(SelectByKey, ReadsTheRowAgain) {
  EXPECT_EQ(select_text({"", "", "T"}, {"A", "X"}, {{"A"}}, "\""),
            "SELECT \"A\", \"X\" FROM \"T\" WHERE \"A\" = ?");
}

}  // namespace
}  // namespace kestrova::odbc
