// SQLite's driver: no UTF-16 functions, no updatable cursors, one statement at a time, columns
// whose values may be longer than they say. And the driver manager's own failures.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/odbc/odbc_connection.h"
#include "tests/platform/odbc/data_sources.h"

namespace kestrova::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class SqliteDriver : public testing::Test {
 protected:
  SqliteDriver() {
    connection_->execute(
        "CREATE TABLE T (ID int NOT NULL PRIMARY KEY, NAME nvarchar(5), GEAENDERT datetime)\r\n"
        "INSERT INTO T VALUES (1, 'Föhre', '2024-02-29 13:45:10')\r\n"
        "INSERT INTO T VALUES (2, 'länger als fünf 🌲', NULL)");
  }
  std::shared_ptr<Connection> connection_ = open_odbc(kSqliteDriver);
};

TEST_F(SqliteDriver, LettersPassThroughStatementsNamesAndValues) {
  const auto rows =
      connection_->open("SELECT 'äłЖ🌲' AS größe", CursorType::kStatic, LockType::kReadOnly);
  EXPECT_EQ(rows->column_name(0), "größe");
  EXPECT_EQ(rows->value("größe"), Value("äłЖ🌲"));
}

TEST_F(SqliteDriver, AValueLongerThanItsColumnIsReadWhole) {
  EXPECT_EQ(column_of(*connection_, "SELECT NAME FROM T ORDER BY ID"),
            (Row{"Föhre", "länger als fünf 🌲"}));
}

TEST_F(SqliteDriver, ErrorsHaveStandardStatesAndNameTheStatement) {
  EXPECT_EQ(database_error([&] { connection_->execute("DELETE FROM NIX"); }),
            "42S02 [SQLite]no such table: NIX (1) (HY000, 1) [statement 1: DELETE FROM NIX]");
  EXPECT_EQ(database_error([&] {
              connection_->execute("SELECT 1\r\nINSERT INTO T (ID) VALUES (1)");
            }).substr(0, 6),
            "23000 ");
}

TEST_F(SqliteDriver, AnUpdateByKeyWritesDatesAndNothingElse) {
  const auto rows =
      connection_->open("SELECT * FROM T ORDER BY ID", CursorType::kKeyset, LockType::kPessimistic);
  rows->set_value("GEAENDERT", DateTime{2025, 1, 2, 3, 4, 5});
  rows->update();
  EXPECT_EQ(column_of(*connection_, "SELECT GEAENDERT FROM T ORDER BY ID"),
            (Row{DateTime{2025, 1, 2, 3, 4, 5}, Value()}));
}

TEST(OdbcConnection, ADriverThatIsNotThereIsToldWithoutSecrets) {
  EXPECT_THAT(database_error([] { open_odbc("Driver={No such driver};UID=anna;PWD=geheim"); }),
              AllOf(StartsWith("01000 "), HasSubstr("Can't open lib 'No such driver'"),
                    Not(HasSubstr("geheim"))));
}

TEST(OdbcConnection, AStatementIsNamedWithoutSecrets) {
  const auto connection = open_odbc("Driver=SQLite3;Database=:memory:;PWD=geheim");
  const auto opened = [&connection](const std::string& sql) {
    return database_error(
        [&] { connection->open(sql, CursorType::kForwardOnly, LockType::kReadOnly); });
  };
  EXPECT_EQ(opened("SELECT 'geheim' FROM NIX"),
            "42S02 [SQLite]no such table: NIX (1) (HY000, 1) [statement 1: SELECT '***' FROM NIX]");
  // Also where the text is cut.
  const std::string cut = "SELECT '" + std::string(589, 'x') + "geheim' FROM NOWHERE";
  EXPECT_THAT(opened(cut), Not(HasSubstr("gehe")));
}

TEST(OdbcConnection, ADataSourceThatIsNotThereIsTold) {
  EXPECT_THAT(database_error([] { open_odbc("DSN=no_such_source;PWD=geheim"); }),
              AllOf(StartsWith("IM002 "), HasSubstr("Data source name not found"),
                    Not(HasSubstr("geheim"))));
}

TEST(OdbcConnection, AStringThatCannotBeReadIsNotQuoted) {
  try {
    open_odbc("Driver=SQLite3;PWD={geheim");
    ADD_FAILURE();
  } catch (const InvalidArgument& error) {
    EXPECT_STREQ(error.what(), "The connection string cannot be read: a \"}\" is missing.");
  }
}

TEST(OdbcConnection, OptionsAreCheckedBeforeConnecting) {
  OdbcOptions options;
  options.date_format = "dd.mm.yyyy";
  EXPECT_THROW(open_odbc("Driver={No such driver}", options), InvalidArgument);
}

TEST(OdbcConnection, ARowSetKeepsItsConnectionOpen) {
  auto connection = open_odbc(kSqliteDriver);
  const auto rows = connection->open("SELECT 1 AS X UNION ALL SELECT 2", CursorType::kForwardOnly,
                                     LockType::kReadOnly);
  connection.reset();
  rows->move_next();
  EXPECT_EQ(rows->value(0), Value(2));
  rows->move_first();
  EXPECT_EQ(rows->value(0), Value(1));
}

}  // namespace
}  // namespace kestrova::test
