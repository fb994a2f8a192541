// What becomes of a driver's diagnostic records.
#include "platform/odbc/diagnostics.h"

#include <gtest/gtest.h>

namespace kestrova::odbc {
namespace {

TEST(Diagnostics, AllRecordsAndTheStatementAreTold) {
  const DatabaseError error =
      error_of({{"42000", 8180, "[Driver][SQL Server]Statement(s) could not be prepared."},
                {"42S02", 208, "[Driver][SQL Server]Invalid object name 'X'."}},
               "statement 2: SELECT * FROM X");
  EXPECT_STREQ(error.what(),
               "[Driver][SQL Server]Statement(s) could not be prepared. (42000, 8180); "
               "[Driver][SQL Server]Invalid object name 'X'. (42S02, 208) "
               "[statement 2: SELECT * FROM X]");
  EXPECT_EQ(error.sqlstate(), "42000");
  EXPECT_EQ(error.native_code(), 8180);
}

TEST(Diagnostics, ATextOfSeveralLinesBecomesOne) {
  EXPECT_STREQ(
      error_of({{"42601", 1, "ERROR: syntax error;\nError while\texecuting the query\r\n"}}, "")
          .what(),
      "ERROR: syntax error; Error while executing the query (42601, 1)");
}

TEST(Diagnostics, NoRecordIsStillAnError) {
  const DatabaseError error = error_of({}, "statement 1: X");
  EXPECT_STREQ(error.what(), "The driver tells no reason. [statement 1: X]");
  EXPECT_EQ(error.sqlstate(), "HY000");
  EXPECT_EQ(error.native_code(), 0);
}

TEST(Diagnostics, AStatementIsNamedWithItsNumberAndItsFirst300Characters) {
  EXPECT_EQ(statement_name(1, "SELECT 'ä'"), "statement 2: SELECT 'ä'");
  std::string long_text;
  for (int i = 0; i < 301; ++i) long_text += "ä";
  EXPECT_EQ(statement_name(0, long_text), "statement 1: " + long_text.substr(0, 600) + " ...");
  EXPECT_EQ(statement_name(0, long_text.substr(2)), "statement 1: " + long_text.substr(2));
}

TEST(Diagnostics, TheRecordThatIsAnErrorGivesTheNumber) {
  EXPECT_EQ(error_of({{"01003", 8153, "a"}, {"22012", 8134, "b"}}, "").native_code(), 8134);
  EXPECT_EQ(error_of({{"01003", 8153, "a"}, {"01000", 1, "b"}}, "").native_code(), 8153);
}

TEST(Diagnostics, EveryStateButThoseOfACompletionIsAnError) {
  EXPECT_FALSE(hold_error({}));
  EXPECT_FALSE(
      hold_error({{"01000", 0, ""}, {"01S02", 0, ""}, {"00000", 0, ""}, {"02000", 0, ""}}));
  for (const char* state : {"22012", "HY000", "08S01", "42000", "S1000", ""}) {
    EXPECT_TRUE(hold_error({{state, 0, ""}})) << state;
    EXPECT_TRUE(hold_error({{"01000", 0, ""}, {state, 0, ""}})) << state;
  }
}

struct StateCase {
  const char* name;
  std::vector<DiagnosticRecord> records;
  const char* standard;
};

class SqlState : public testing::TestWithParam<StateCase> {};

TEST_P(SqlState, IsTheStandardOne) {
  EXPECT_EQ(standard_sqlstate(GetParam().records), GetParam().standard);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Records, SqlState, testing::Values(
    StateCase{"SqlServerMissingTable", {{"42S02", 208, "Invalid object name 'X'."}}, "42S02"},
    StateCase{"SqlServerDeadlock", {{"40001", 1205, "Transaction was deadlocked."}}, "40001"},
    StateCase{"PostgresqlMissingTable", {{"42P01", 1, "relation \"x\" does not exist"}}, "42S02"},
    StateCase{"PostgresqlMissingColumn", {{"42703", 1, "column \"x\" does not exist"}}, "42S22"},
    StateCase{"PostgresqlTableExists", {{"42P07", 1, "relation \"x\" already exists"}}, "42S01"},
    StateCase{"PostgresqlSyntax", {{"42601", 1, "syntax error"}}, "42000"},
    StateCase{"PostgresqlDuplicate", {{"23505", 1, "duplicate key"}}, "23000"},
    StateCase{"PostgresqlTimeout", {{"57014", 1, "canceling statement due to statement timeout"}}, "HYT00"},
    StateCase{"PostgresqlCancelled", {{"57014", 1, "canceling statement due to user request"}}, "57014"},
    StateCase{"PostgresqlPassword", {{"28P01", 101, "password authentication failed"}}, "28000"},
    StateCase{"PostgresqlLogin", {{"08001", 101, "FATAL: password authentication failed for user \"x\""}}, "28000"},
    StateCase{"PostgresqlRefused", {{"08001", 101, "Connection refused"}}, "08001"},
    StateCase{"PostgresqlTerminated", {{"57P01", 1, "terminating connection due to administrator command"}}, "08S01"},
    StateCase{"LossBehindAnotherRecord", {{"HY000", 1, "no reply"}, {"08S01", 26, "gone"}}, "08S01"},
    StateCase{"SqliteMissingTable", {{"HY000", 1, "[SQLite]no such table: X (1)"}}, "42S02"},
    StateCase{"SqliteMissingColumn", {{"HY000", 1, "[SQLite]no such column: X (1)"}}, "42S22"},
    StateCase{"SqliteSyntax", {{"HY000", 1, "[SQLite]near \"FORM\": syntax error (1)"}}, "42000"},
    StateCase{"SqliteDuplicate", {{"HY000", 19, "[SQLite]UNIQUE constraint failed: T.ID (19)"}}, "23000"},
    StateCase{"SqliteOther", {{"HY000", 8, "[SQLite]attempt to write a readonly database (8)"}}, "HY000"},
    StateCase{"SqlServerLogin", {{"42000", 18456, "[FreeTDS][SQL Server]Login failed for user 'x'."}}, "28000"},
    StateCase{"SqlServerLoginBehindAnotherRecord", {{"08001", 0, "[FreeTDS][SQL Server]Unable to connect"}, {"42000", 18456, "[FreeTDS][SQL Server]Login failed for user 'x'."}}, "28000"},
    StateCase{"SqlServerOverflow", {{"HY019", 8115, "[FreeTDS][SQL Server]Arithmetic overflow"}}, "22003"},
    StateCase{"SqlServerSmallOverflow", {{"42000", 220, "[FreeTDS][SQL Server]Arithmetic overflow for data type tinyint"}}, "22003"},
    StateCase{"NumbersOfOthers", {{"HY000", 220, "[Oracle]name"}}, "HY000"},
    StateCase{"ErrorBehindAWarning", {{"01003", 8153, "Null value is eliminated."}, {"22012", 8134, "Divide by zero."}}, "22012"},
    StateCase{"OnlyWarnings", {{"01000", 0, "Can't open lib"}, {"01003", 0, ""}}, "01000"},
    StateCase{"OldDriverMissingTable", {{"S0002", 0, ""}}, "42S02"}),
    [](const auto& test) { return std::string(test.param.name); });
// clang-format on

}  // namespace
}  // namespace kestrova::odbc
