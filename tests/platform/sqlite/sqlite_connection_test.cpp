// What only a connection to the embedded database shows: files, clocks, limits, several connections
// and row sets.
#include "platform/sqlite/sqlite_connection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/error.h"
#include "tests/platform/sqlite/sqlite_fixture.h"

namespace kestrova {
namespace {

using test::column_of;
using test::database_error;
using test::rows_of;
using test::TemporaryFile;
using testing::ElementsAre;

std::string error_of(Connection& connection, std::string_view batch) {
  return database_error([&] { connection.execute(batch); });
}

std::string open_error_of(Connection& connection, std::string_view source) {
  return database_error([&] { rows_of(connection, source); });
}

class SqliteConnection : public testing::Test {
 protected:
  SqliteConnection() {
    connection_->execute(
        "CREATE TABLE T (ID int NOT NULL PRIMARY KEY, N nvarchar(20), D datetime)"
        " INSERT INTO T VALUES (1, 'eins', '01.02.2024'), (2, 'zwei', NULL), (3, 'drei', NULL)");
  }

  std::shared_ptr<Connection> connection_ = open_sqlite(":memory:");
};

// --- Files

TEST(SqliteFile, AMissingFileIsAnErrorUnlessItMayBeCreated) {
  const TemporaryFile file;
  EXPECT_EQ(
      database_error([&] { open_sqlite(file.name()); }),
      "08001 Cannot open the database file '" + file.name() + "': unable to open database file.");
  EXPECT_FALSE(std::filesystem::exists(file.name()));
  SqliteOptions options;
  options.create = true;
  open_sqlite(file.name(), options)->execute("CREATE TABLE T (ID int) INSERT INTO T VALUES (7)");
  EXPECT_THAT(column_of(*open_sqlite(file.name()), "T"), ElementsAre("7"));
}

TEST(SqliteFile, AReadOnlyConnectionChangesNothing) {
  const TemporaryFile file;
  SqliteOptions options;
  options.create = true;
  open_sqlite(file.name(), options)->execute("CREATE TABLE T (ID int) INSERT INTO T VALUES (7)");
  options.read_only = true;
  const auto connection = open_sqlite(file.name(), options);
  EXPECT_EQ(error_of(*connection, "DELETE FROM T"),
            "25006 attempt to write a readonly database. [statement 1: DELETE FROM T]");
  EXPECT_THAT(column_of(*connection, "T"), ElementsAre("7"));
}

TEST(SqliteFile, AFileThatIsNoDatabaseIsAnError) {
  EXPECT_EQ(database_error([] { open_sqlite(KESTROVA_SOURCE_DIR "/CMakeLists.txt"); }),
            "HY000 The embedded database cannot run the statement: file is not a database.");
}

TEST(SqliteFile, TemporaryTablesBelongToTheirConnection) {
  const TemporaryFile file;
  SqliteOptions options;
  options.create = true;
  const auto first = open_sqlite(file.name(), options);
  const auto second = open_sqlite(file.name(), options);
  first->execute("CREATE TABLE #T (ID int) INSERT INTO #T VALUES (1)");
  EXPECT_EQ(open_error_of(*second, "#T"),
            "42S02 Invalid object name '#T'. [statement 1: SELECT * FROM #T]");
  second->execute("CREATE TABLE #T (ID int) INSERT INTO #T VALUES (2)");
  EXPECT_THAT(column_of(*first, "#T"), ElementsAre("1"));
  EXPECT_THAT(column_of(*second, "#T"), ElementsAre("2"));
}

TEST(SqliteFile, AConnectionSeesTheTablesThatAnotherOneMakes) {
  const TemporaryFile file;
  SqliteOptions options;
  options.create = true;
  const auto first = open_sqlite(file.name(), options);
  const auto second = open_sqlite(file.name(), options);
  first->execute("CREATE TABLE T (ID int)");
  second->execute("INSERT INTO T VALUES (1)");
  first->execute("DROP TABLE T CREATE TABLE T (NAME nvarchar(5)) INSERT INTO T VALUES ('a')");
  EXPECT_THAT(column_of(*second, "SELECT NAME FROM T"), ElementsAre("a"));
}

// --- Clock

TEST(SqliteClock, GetdateStandsStillWithinOneStatement) {
  int second = 0;
  SqliteOptions options;
  options.clock = [&] { return DateTime{2024, 1, 1, 0, 0, second++, 0}; };
  const auto connection = open_sqlite(":memory:", options);
  const auto rows =
      rows_of(*connection, "SELECT GETDATE() A, GETDATE() B UNION ALL SELECT GETDATE(), GETDATE()");
  const Value first = rows->value("A");
  EXPECT_EQ(rows->value("B"), first);
  rows->move_next();
  EXPECT_EQ(rows->value("A"), first);
  EXPECT_NE(rows_of(*connection, "SELECT GETDATE()")->value(0), first);
}

// --- Row sets and statements

TEST_F(SqliteConnection, IsAServerConnection) {
  EXPECT_EQ(connection_->kind(), ConnectionKind::kSqlServer);
}

TEST_F(SqliteConnection, StatementsRunWhileRowSetsAreOpen) {
  const auto all = rows_of(*connection_, "SELECT ID FROM T ORDER BY ID");
  const auto names = rows_of(*connection_, "SELECT N FROM T ORDER BY N DESC");
  connection_->execute("DELETE FROM T WHERE ID = 2");
  all->move_next();
  connection_->execute("DROP TABLE T");
  EXPECT_EQ(all->value(0), Value(2));
  all->move_next();
  EXPECT_EQ(all->value(0), Value(3));
  names->move_next();
  EXPECT_EQ(names->value(0), Value("eins"));
  all->move_next();
  EXPECT_TRUE(all->eof());
}

TEST_F(SqliteConnection, MoveFirstRunsAForwardOnlyQueryAgain) {
  const auto rows = rows_of(*connection_, "SELECT ID FROM T");
  rows->move_next();
  connection_->execute("DELETE FROM T WHERE ID = 1");
  rows->move_first();
  EXPECT_EQ(rows->value(0), Value(2));
}

TEST_F(SqliteConnection, AnErrorInALaterRowIsRaisedWhenItIsReached) {
  connection_->execute("UPDATE T SET N = '5' WHERE ID < 3");
  const auto rows = rows_of(*connection_, "SELECT ID FROM T WHERE N = 5");
  rows->move_next();
  EXPECT_EQ(
      database_error([&] { rows->move_next(); }),
      "22018 Conversion failed when converting the value 'drei' to data type int. [statement 1: "
      "SELECT ID FROM T WHERE N = 5]");
  EXPECT_TRUE(rows->eof());
  EXPECT_THAT(column_of(*connection_, "SELECT ID FROM T"), ElementsAre("1", "2", "3"));
}

TEST_F(SqliteConnection, AnErrorInALaterRowIsKeptWhileStatementsRun) {
  connection_->execute("UPDATE T SET N = '5' WHERE ID < 3");
  const auto rows = rows_of(*connection_, "SELECT ID FROM T WHERE N = 5");
  EXPECT_EQ(connection_->execute("DELETE FROM T"), 3);
  rows->move_next();
  EXPECT_EQ(rows->value(0), Value(2));
  EXPECT_THROW(rows->move_next(), DatabaseError);
}

TEST_F(SqliteConnection, ARowSetWritesItsOwnRowOnly) {
  const auto rows = connection_->open("SELECT * FROM T X WHERE X.ID > 1", CursorType::kKeyset,
                                      LockType::kOptimistic);
  rows->set_value("n", "Größe");
  rows->set_value("D", "15.3.24 10:00");
  rows->update();
  EXPECT_EQ(rows->value("D"), Value(DateTime{2024, 3, 15, 10, 0, 0, 0}));
  EXPECT_THAT(
      column_of(*connection_, "SELECT N + ISNULL(CONVERT(nvarchar(20), D, 104), '') FROM T"),
      ElementsAre("eins01.02.2024", "Größe15.03.2024", "drei"));
}

TEST_F(SqliteConnection, ARowSetRefusesValuesThatItsColumnCannotHold) {
  const auto rows = connection_->open("T", CursorType::kKeyset, LockType::kOptimistic);
  EXPECT_EQ(database_error([&] { rows->set_value("D", "31.02.2024"); }),
            "22007 Conversion failed when converting date and/or time from character string.");
  rows->set_value("N", "123456789012345678901");
  EXPECT_EQ(database_error([&] { rows->update(); }),
            "22001 String or binary data would be truncated in column 'N'.");
}

TEST_F(SqliteConnection, RowsThatAreNoRowsOfOneTableCannotBeWritten) {
  for (const std::string source :
       {"SELECT DISTINCT N FROM T", "SELECT A.N FROM T A, T B",
        "SELECT N FROM T UNION ALL SELECT N FROM T", "SELECT N FROM T GROUP BY N",
        "SELECT * FROM (SELECT N FROM T) A"}) {
    const auto rows = connection_->open(source, CursorType::kKeyset, LockType::kOptimistic);
    EXPECT_EQ(database_error([&] { rows->set_value("N", "x"); }),
              "HY092 The column 'N' cannot be changed through this row set.")
        << source;
  }
  const auto rows =
      connection_->open("SELECT N + '!' AS N FROM T", CursorType::kKeyset, LockType::kOptimistic);
  EXPECT_THROW(rows->set_value("N", "x"), DatabaseError);
}

TEST_F(SqliteConnection, ErrorsNameTheStatement) {
  EXPECT_EQ(error_of(*connection_,
                     "DELETE FROM T WHERE ID = 1\r\nDELETE FROM T WHERE X = 1\r\nDELETE FROM T"),
            "42S22 Invalid column name 'X'. [statement 2: DELETE FROM T WHERE X = 1]");
  EXPECT_THAT(column_of(*connection_, "SELECT ID FROM T"), ElementsAre("2", "3"));
}

TEST_F(SqliteConnection, ATransactionIsTheConnectionsOwn) {
  connection_->execute("BEGIN TRAN DELETE FROM T");
  EXPECT_THAT(column_of(*connection_, "SELECT ID FROM T"), ElementsAre());
  connection_->execute("ROLLBACK");
  EXPECT_THAT(column_of(*connection_, "SELECT ID FROM T"), ElementsAre("1", "2", "3"));
}

// --- Checking without running

TEST_F(SqliteConnection, CheckingFindsErrorsAndRunsNothing) {
  check_sqlite(*connection_, "DELETE FROM T INSERT INTO T (ID) SELECT ID FROM T DROP TABLE T");
  EXPECT_EQ(database_error([&] { check_sqlite(*connection_, "SELECT ID FROM T WHERE D > 'x'"); }),
            "22007 Conversion failed when converting date and/or time from character string. "
            "[statement 1: SELECT ID FROM T WHERE D > 'x']");
  EXPECT_EQ(database_error([&] { check_sqlite(*connection_, "DELETE FROM T UPDATE T SET Y = 1"); }),
            "42S22 Invalid column name 'Y'. [statement 2: UPDATE T SET Y = 1]");
  EXPECT_THAT(column_of(*connection_, "SELECT ID FROM T"), ElementsAre("1", "2", "3"));
}

// --- Size

std::string repeated(int count, const std::string& separator, std::string (*member)(int)) {
  std::string result;
  for (int i = 0; i < count; ++i) result += (i > 0 ? separator : "") + member(i);
  return result;
}

class Size : public testing::TestWithParam<int> {
 protected:
  Size() {
    connection_->execute(
        "CREATE TABLE SELEKTION (ID_SELEKTION int NOT NULL PRIMARY KEY, SQLVALUE nvarchar(50))"
        " INSERT INTO SELEKTION VALUES (0, 'a'), (1, 'b'), (2, 'c')");
  }
  std::shared_ptr<Connection> connection_ = open_sqlite(":memory:");
};

TEST_P(Size, AUnionHasAnyNumberOfMembers) {
  const std::string query = repeated(GetParam(), " UNION ", [](int i) {
    return "SELECT " + std::to_string(i) +
           " AS XXX,* FROM SELEKTION WHERE ID_SELEKTION = " + std::to_string(i % 3);
  });
  const auto rows = rows_of(*connection_, query + " ORDER BY XXX");
  int count = 0;
  for (; !rows->eof(); rows->move_next(), ++count) {
    ASSERT_EQ(rows->value("XXX"), Value(count));
    ASSERT_EQ(rows->value("ID_SELEKTION"), Value(count % 3));
  }
  EXPECT_EQ(count, GetParam());
}

TEST_P(Size, AUnionAllHasAnyNumberOfMembers) {
  const std::string query =
      repeated(GetParam(), " UNION ALL ", [](int) -> std::string { return "SELECT 1 AS X"; });
  EXPECT_THAT(column_of(*connection_, "SELECT SUM(X) FROM (" + query + ") A"),
              ElementsAre(std::to_string(GetParam())));
}

TEST_P(Size, AConditionHasAnyNumberOfTerms) {
  const std::string all = repeated(
      GetParam(), " AND ", [](int i) { return "ID_SELEKTION <> " + std::to_string(i + 2); });
  EXPECT_THAT(column_of(*connection_, "SELECT ID_SELEKTION FROM SELEKTION WHERE " + all),
              ElementsAre("0", "1"));
  const std::string any = repeated(GetParam(), " OR ", [](int i) {
    return "SQLVALUE = 'b" + std::string(i % 2 == 0 ? "" : "x") + "'";
  });
  EXPECT_THAT(column_of(*connection_, "SELECT ID_SELEKTION FROM SELEKTION WHERE (" + any + ")"),
              ElementsAre("1"));
}

INSTANTIATE_TEST_SUITE_P(Members, Size, testing::Values(1, 2, 400, 401, 5'000, 32'767));

TEST_F(SqliteConnection, ALiteralMayBeAMegabyteLong) {
  const std::string text(1'000'000, 'x');
  connection_->execute("CREATE TABLE L (T ntext)");
  EXPECT_EQ(connection_->execute("INSERT INTO L VALUES (N'" + text + "''ä')"), 1);
  EXPECT_EQ(rows_of(*connection_, "L")->value(0), Value(text + "'ä"));
  EXPECT_THAT(column_of(*connection_, "SELECT ID FROM T WHERE N = '" + text + "'"), ElementsAre());
}

TEST_F(SqliteConnection, NestingHasALimit) {
  const auto nested = [](std::size_t depth) {
    return "SELECT ID FROM T WHERE ID = " + std::string(depth, '(') + "2" + std::string(depth, ')');
  };
  EXPECT_THAT(column_of(*connection_, nested(35)), ElementsAre("2"));
  EXPECT_EQ(open_error_of(*connection_, nested(100'000)),
            "42000 The statement is nested more than 80 levels deep at position 68.");
}

TEST_F(SqliteConnection, NestingOfConditionsHasALimit) {
  const auto nested = [](std::size_t depth, const std::string& opening,
                         const std::string& closing) {
    std::string condition = "ID = 2";
    std::string begin;
    for (std::size_t i = 0; i < depth; ++i) {
      begin += opening;
      condition += closing;
    }
    return "SELECT ID FROM T WHERE " + begin + condition;
  };
  const std::string refusal = "42000 The statement is nested more than 80 levels deep at position ";
  EXPECT_THAT(column_of(*connection_, nested(35, "(", ")")), ElementsAre("2"));
  EXPECT_EQ(open_error_of(*connection_, nested(32'767, "(", ")")), refusal + "63.");
  EXPECT_THAT(column_of(*connection_, nested(34, "NOT ", "")), ElementsAre("2"));
  EXPECT_EQ(open_error_of(*connection_, nested(32'767, "NOT ", "")), refusal + "332.");
  EXPECT_THAT(column_of(*connection_, nested(15, "(ID = 2 AND (ID > 5 OR ", "))")),
              ElementsAre("2"));
  EXPECT_EQ(open_error_of(*connection_, nested(32'767, "(ID = 2 AND (ID > 5 OR ", "))"))
                .substr(0, refusal.size()),
            refusal);
}

TEST_F(SqliteConnection, JoinsHaveALimit) {
  const auto joined = [](int tables) {
    std::string sql = "SELECT T1.ID FROM T T1";
    for (int i = 2; i <= tables; ++i) {
      const std::string name = "T" + std::to_string(i);
      sql += " JOIN T " + name + " ON " + name + ".ID = T1.ID";
    }
    return sql;
  };
  EXPECT_THAT(column_of(*connection_, joined(64)), ElementsAre("1", "2", "3"));
  EXPECT_EQ(open_error_of(*connection_, joined(65)),
            "42000 More than 64 tables are joined at position 1835.");
  EXPECT_EQ(open_error_of(*connection_, joined(100'000)),
            "42000 More than 64 tables are joined at position 1835.");
}

TEST_F(SqliteConnection, ChainsOfOperatorsHaveALimit) {
  const auto sum = [](int count) {
    return "SELECT " + repeated(count, " + ", [](int) -> std::string { return "1"; });
  };
  EXPECT_THAT(column_of(*connection_, sum(90)), ElementsAre("90"));
  EXPECT_EQ(open_error_of(*connection_, sum(100'000)),
            "42000 The expression has more than 250 levels at position 1006.");
}

TEST_F(SqliteConnection, WhatTakesLongerThanTheTimeLimitIsBrokenOff) {
  std::string batch = "CREATE TABLE L (ID int)";
  for (int i = 0; i < 300; ++i) batch += "\r\nINSERT INTO L VALUES (" + std::to_string(i) + ")";
  connection_->execute(batch);
  const std::string endless =
      "SELECT COUNT(*) FROM L A, L B, L C, L D WHERE A.ID + B.ID + C.ID + D.ID = -1";
  ASSERT_TRUE(connection_->set_time_limit(std::chrono::milliseconds(20)));
  EXPECT_EQ(open_error_of(*connection_, endless),
            "HYT00 The statement takes longer than its time limit. [statement 1: " + endless + "]");
  // The connection goes on, and the limit is one for each row.
  EXPECT_EQ(column_of(*connection_, "SELECT A.ID FROM L A, L B").size(), 90'000U);
  ASSERT_TRUE(connection_->set_time_limit(std::chrono::milliseconds(0)));
  EXPECT_THAT(column_of(*connection_, "SELECT COUNT(*) FROM L A, L B, L C WHERE A.ID = -1"),
              ElementsAre("0"));
}

TEST_F(SqliteConnection, ThousandsOfRowScriptsLoadInOneBatch) {
  std::string batch =
      "CREATE TABLE L (ID int NOT NULL PRIMARY KEY, N nvarchar(20), P numeric(8,2))";
  for (int i = 0; i < 10'000; ++i) {
    batch += "\r\nINSERT INTO L (ID,N,P) VALUES (" + std::to_string(i) + ",'Nr " +
             std::to_string(i) + "',1.5)";
  }
  EXPECT_EQ(connection_->execute(batch), 1);
  EXPECT_THAT(column_of(*connection_, "SELECT COUNT(*) FROM L"), ElementsAre("10000"));
}

}  // namespace
}  // namespace kestrova
