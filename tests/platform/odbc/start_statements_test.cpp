// What a connection begins with.
#include "platform/odbc/start_statements.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/error.h"

namespace kestrova::odbc {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Kind, IsWhatTheDriverAnswers) {
  EXPECT_EQ(kind_of("Microsoft SQL Server"), ConnectionKind::kSqlServer);
  EXPECT_EQ(kind_of("SQL Server"), ConnectionKind::kSqlServer);
  EXPECT_EQ(kind_of("Oracle"), ConnectionKind::kOracle);
  EXPECT_EQ(kind_of("ORACLE RDB"), ConnectionKind::kOracle);
  EXPECT_EQ(kind_of("PostgreSQL"), ConnectionKind::kOther);
  EXPECT_EQ(kind_of("SQLite"), ConnectionKind::kOther);
  EXPECT_EQ(kind_of(""), ConnectionKind::kOther);
}

TEST(StartStatements, SetTheOrderOfDatesOnSqlServerUnlessToldOtherwise) {
  EXPECT_THAT(start_statements({}, ConnectionKind::kSqlServer),
              ElementsAre("SET NOCOUNT OFF", "SET DATEFORMAT dmy"));
  OdbcOptions as_the_login_has;
  as_the_login_has.date_format = "";
  EXPECT_THAT(start_statements(as_the_login_has, ConnectionKind::kSqlServer),
              ElementsAre("SET NOCOUNT OFF"));
}

TEST(StartStatements, SetTheLanguageFirstAndEndWithTheHostsOwn) {
  OdbcOptions options;
  options.language = "Deutsch'";
  options.date_format = "ymd";
  options.lock_timeout = milliseconds(1500);
  options.start_statements = {"SET ANSI_NULLS ON", "SET NOCOUNT OFF"};
  EXPECT_THAT(start_statements(options, ConnectionKind::kSqlServer),
              ElementsAre("SET NOCOUNT OFF", "SET LANGUAGE N'Deutsch'''", "SET DATEFORMAT ymd",
                          "SET LOCK_TIMEOUT 1500", "SET ANSI_NULLS ON", "SET NOCOUNT OFF"));
}

TEST(StartStatements, AreOnlyTheHostsOwnOnOtherDatabases) {
  OdbcOptions options;
  options.language = "Deutsch";
  options.start_statements = {"SET DATESTYLE TO 'German'"};
  EXPECT_THAT(start_statements(options, ConnectionKind::kOther),
              ElementsAre("SET DATESTYLE TO 'German'"));
  EXPECT_THAT(start_statements({}, ConnectionKind::kOracle), IsEmpty());
}

TEST(StartStatements, OptionsThatMakeNoSenseAreRefused) {
  const auto refused = [](auto change) {
    OdbcOptions options;
    change(options);
    EXPECT_THROW(start_statements(options, ConnectionKind::kSqlServer), InvalidArgument);
  };
  refused([](OdbcOptions& o) { o.date_format = "dmy; DROP TABLE LOGS"; });
  refused([](OdbcOptions& o) { o.date_format = "DMY"; });
  refused([](OdbcOptions& o) { o.login_timeout = seconds(-1); });
  refused([](OdbcOptions& o) { o.query_timeout = seconds(-1); });
  refused([](OdbcOptions& o) { o.lock_timeout = milliseconds(-1); });
}

}  // namespace
}  // namespace kestrova::odbc
