// Scripts are split as the server's command line tools split them, and a failure says where it was.
#include "examples/forest/sql_script.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/error.h"
#include "tests/support/recording_connection.h"

namespace kestrova {
namespace {

using test::RecordingConnection;

std::vector<std::string> texts_of(std::string_view script) {
  std::vector<std::string> texts;
  for (const ScriptStatement& statement : split_script(script)) texts.push_back(statement.text);
  return texts;
}

using Texts = std::vector<std::string>;

TEST(SplitScript, EndsAStatementAtASemicolonAtTheEndOfALine) {
  EXPECT_EQ(texts_of("SELECT 1;\nSELECT 2\nFROM T;\n"), (Texts{"SELECT 1;", "SELECT 2\nFROM T;"}));
}

TEST(SplitScript, KeepsASemicolonInsideALine) {
  EXPECT_EQ(texts_of("INSERT INTO T VALUES ('3 = 1;', 2),\n  ('4 = 2;', 3);\n"),
            (Texts{"INSERT INTO T VALUES ('3 = 1;', 2),\n  ('4 = 2;', 3);"}));
}

TEST(SplitScript, EndsAStatementAtGoAndAtTheEnd) {
  EXPECT_EQ(texts_of("SELECT 1\nGO\nSELECT 2"), (Texts{"SELECT 1", "SELECT 2"}));
}

TEST(SplitScript, LeavesOutCommentsEmptyLinesAndCarriageReturns) {
  EXPECT_EQ(texts_of("-- first\r\n\r\nSELECT 1\r\n-- between\r\nFROM T;\r\nGO\r\n"),
            (Texts{"SELECT 1\nFROM T;"}));
}

TEST(SplitScript, TakesAGoOnlyOnALineOfItsOwn) {
  EXPECT_EQ(texts_of("SELECT GO\nFROM T;"), (Texts{"SELECT GO\nFROM T;"}));
}

TEST(SplitScript, CountsTheLineOnWhichAStatementBegins) {
  const auto statements = split_script("-- comment\nSELECT 1\nFROM T;\nGO\n\nSELECT 2;\n");
  ASSERT_EQ(statements.size(), 2U);
  EXPECT_EQ(statements[0].line, 2);
  EXPECT_EQ(statements[1].line, 6);
}

TEST(RunScript, RunsStatementAfterStatement) {
  RecordingConnection connection;
  run_script(connection, "two.sql", "SELECT 1;\nGO\nSELECT 2;\n");
  EXPECT_EQ(connection.statements(), (Texts{"SELECT 1;", "SELECT 2;"}));
}

TEST(RunScript, NamesScriptLineAndStatementOfAFailureAndStops) {
  RecordingConnection connection;
  connection.fail("DROP TABLE T\nCASCADE;", DatabaseError("no such table: T", "42S02", 3701));
  try {
    run_script(connection, "drop.sql", "SELECT 1;\n\nDROP TABLE T\nCASCADE;\nSELECT 2;\n");
    FAIL() << "the failure was lost";
  } catch (const DatabaseError& error) {
    EXPECT_STREQ(error.what(), "drop.sql, line 3 (DROP TABLE T): no such table: T");
    EXPECT_EQ(error.sqlstate(), "42S02");
    EXPECT_EQ(error.native_code(), 3701);
  }
  EXPECT_EQ(connection.statements(), (Texts{"SELECT 1;", "DROP TABLE T\nCASCADE;"}));
}

}  // namespace
}  // namespace kestrova
