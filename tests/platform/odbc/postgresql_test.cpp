// A real server on the other side: values, row sets and every way in which it lets go. The server
// is the one of scripts/with-postgresql.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "platform/odbc/odbc_connection.h"
#include "platform/text.h"
#include "tests/platform/odbc/data_sources.h"

namespace kestrova::test {
namespace {

using std::chrono::seconds;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// Cursors of the driver, and searched updates.
class Postgresql : public testing::TestWithParam<const char*> {
 protected:
  Postgresql() {
    connection_->execute(
        "CREATE TABLE T (ID int PRIMARY KEY, NAME varchar(10), PREIS numeric(38,10))\r\n"
        "INSERT INTO T VALUES (1, 'eins', 1.5), (2, 'zwei', NULL), (3, NULL, 3)");
  }

  std::unique_ptr<Recordset> open_for_update(const std::string& query) {
    return connection_->open(query, CursorType::kKeyset, LockType::kOptimistic);
  }

  std::string value_of(const std::string& query) {
    return column_of(*connection_, query).at(0).text_or_empty();
  }

  // A cursor cannot tell why its row is no longer there as it was.
  static std::string conflict(const std::string& what) {
    const std::string told = GetParam() == std::string("1") ? "changed or deleted" : what;
    return "01001 The row has been " + told + " in the meantime; nothing was written.";
  }

  std::shared_ptr<Connection> connection_ =
      connect_postgresql(std::string("UpdatableCursors=") + GetParam());
};

INSTANTIATE_TEST_SUITE_P(Updates, Postgresql, testing::Values("1", "0"), [](const auto& test) {
  return std::string(test.param) == "1" ? "ThroughCursors" : "ByKey";
});

class PostgresqlOnce : public Postgresql {};
INSTANTIATE_TEST_SUITE_P(Server, PostgresqlOnce, testing::Values("1"),
                         [](const auto&) { return "Once"; });

// --- Values

TEST_P(PostgresqlOnce, IsNoServerOfTheSuitesOwnKind) {
  EXPECT_EQ(connection_->kind(), ConnectionKind::kOther);
}

TEST_P(PostgresqlOnce, ValuesOfAllTypesAreReadWithoutLoss) {
  const auto rows = connection_->open(
      "SELECT true A, 9223372036854775807::bigint B, 12345678901234567890123456.0123456789 C,"
      " -0.5::numeric(5,2) D, 0.1::float8 E, 0.5::real F, '2024-02-29'::date G,"
      " '2024-02-29 13:45:10.123456'::timestamp H, '13:45:10.25'::time I,"
      " '\\x0001ff'::bytea J, '6f9619ff-8b86-d011-b42d-00c04fc964ff'::uuid K,"
      " 'a🌲'::char(4) L, NULL::int M, ''::varchar(5) N, 'NaN'::numeric O",
      CursorType::kForwardOnly, LockType::kReadOnly);
  const Row expected = {true,
                        std::int64_t{9223372036854775807},
                        Decimal{"12345678901234567890123456.0123456789"},
                        Decimal{"-0.50"},
                        0.1,
                        0.5,
                        DateTime{2024, 2, 29},
                        DateTime{2024, 2, 29, 13, 45, 10, 123456000},
                        DateTime{1899, 12, 30, 13, 45, 10, 250000000},
                        Bytes{std::byte{0}, std::byte{1}, std::byte{255}},
                        "6F9619FF-8B86-D011-B42D-00C04FC964FF",
                        "a🌲  ",
                        Value(),
                        "",
                        "NaN"};
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(rows->value(i), expected[i]) << rows->column_name(i);
  }
}

TEST_P(PostgresqlOnce, AValueLongerThanItsColumnSaysIsReadWhole) {
  // The driver gives a text without a limit 255 characters; two rows, so that it is one of a block.
  const Row values =
      column_of(*connection_, "SELECT repeat('ä🌲', 1000)::varchar FROM generate_series(1, 2)");
  std::string expected;
  for (int i = 0; i < 1000; ++i) expected += "ä🌲";
  ASSERT_EQ(values.size(), 2U);
  EXPECT_TRUE(values[0] == Value(expected));
  EXPECT_TRUE(values[1] == Value(expected));
}

TEST_P(PostgresqlOnce, ManyRowsComeInBlocks) {
  const Row values = column_of(*connection_, "SELECT * FROM generate_series(1, 2501)");
  ASSERT_EQ(values.size(), 2501U);
  for (int i = 0; i < 2501; ++i) ASSERT_EQ(values[static_cast<std::size_t>(i)], Value(i + 1));
}

TEST_P(PostgresqlOnce, BytesAndLongTextsComeInPieces) {
  const auto rows = connection_->open(
      "SELECT convert_to(repeat('x', 200000), 'UTF8')::bytea A, repeat('🌲', 100000)::text B",
      CursorType::kForwardOnly, LockType::kReadOnly);
  std::string trees;
  for (int i = 0; i < 100'000; ++i) trees += "🌲";
  EXPECT_TRUE(rows->value("A") == Value(Bytes(200'000, std::byte{'x'})));
  EXPECT_TRUE(rows->value("B") == Value(trees));
}

TEST_P(PostgresqlOnce, AForwardOnlyRowSetAsksAgainForItsFirstRow) {
  const auto rows = connection_->open("SELECT NAME FROM T WHERE ID = 1", CursorType::kForwardOnly,
                                      LockType::kReadOnly);
  rows->move_next();
  connection_->execute("UPDATE T SET NAME = 'neu' WHERE ID = 1");
  rows->move_first();
  EXPECT_EQ(rows->value("NAME"), Value("neu"));
}

// --- Updates

TEST_P(Postgresql, AnUpdateShowsWhatTheDatabaseMadeOfTheValue) {
  const auto rows = open_for_update("SELECT * FROM T ORDER BY ID");
  rows->set_value("PREIS", Decimal{"2.5"});
  rows->set_value("NAME", 7);
  rows->update();
  EXPECT_EQ(rows->value("PREIS"), Value(Decimal{"2.5000000000"}));
  EXPECT_EQ(rows->value("NAME"), Value("7"));
  rows->set_value("NAME", "sieben");
  rows->update();
  EXPECT_EQ(value_of("SELECT NAME FROM T WHERE ID = 1"), "sieben");
}

TEST_P(Postgresql, TheKeyItselfCanBeWritten) {
  const auto rows = open_for_update("SELECT * FROM T WHERE ID = 2");
  rows->set_value("ID", 20);
  rows->update();
  rows->set_value("NAME", "zwanzig");
  rows->update();
  EXPECT_EQ(value_of("SELECT NAME FROM T WHERE ID = 20"), "zwanzig");
}

TEST_P(Postgresql, AMissingKeyValueIsFoundAsNull) {
  const auto rows = open_for_update("SELECT * FROM T ORDER BY ID");
  rows->find("ID = 3");
  rows->set_value("NAME", "drei");
  rows->update();
  EXPECT_EQ(value_of("SELECT NAME FROM T WHERE ID = 3"), "drei");
}

TEST_P(Postgresql, ARowThatWasChangedMeanwhileIsNotWritten) {
  const auto rows = open_for_update("SELECT * FROM T ORDER BY ID");
  connection_->execute("UPDATE T SET NAME = 'anders' WHERE ID = 1");
  rows->set_value("PREIS", Decimal{"9"});
  EXPECT_EQ(database_error([&] { rows->update(); }), conflict("changed"));
  EXPECT_EQ(value_of("SELECT NAME || PREIS FROM T WHERE ID = 1"), "anders1.5000000000");
  rows->move_next();
  rows->set_value("PREIS", Decimal{"9"});
  rows->update();
  EXPECT_EQ(value_of("SELECT NAME || PREIS FROM T WHERE ID = 2"), "zwei9.0000000000");
}

TEST_P(Postgresql, ARowThatWasDeletedMeanwhileIsNotWritten) {
  const auto rows = open_for_update("SELECT * FROM T ORDER BY ID");
  connection_->execute("DELETE FROM T WHERE ID = 1");
  rows->set_value("NAME", "weg");
  EXPECT_EQ(database_error([&] { rows->update(); }), conflict("deleted"));
  EXPECT_EQ(value_of("SELECT COUNT(*) FROM T WHERE NAME = 'weg'"), "0");
  EXPECT_EQ(value_of("SELECT COUNT(*) FROM T"), "2");
}

TEST_P(Postgresql, AValueThatIsTooLongIsRefusedAndTheRowStays) {
  const auto rows = open_for_update("SELECT * FROM T ORDER BY ID");
  rows->set_value("NAME", "viel zu lang");
  EXPECT_THAT(
      database_error([&] { rows->update(); }),
      AllOf(StartsWith("22001 "), HasSubstr("value too long for type character varying(10)"),
            HasSubstr("(22001, ")));
  EXPECT_EQ(value_of("SELECT NAME FROM T WHERE ID = 1"), "eins");
  rows->set_value("NAME", "kurz");
  rows->update();
  EXPECT_EQ(value_of("SELECT NAME FROM T WHERE ID = 1"), "kurz");
}

TEST_P(Postgresql, AnExpressionCannotBeWritten) {
  const auto rows = open_for_update("SELECT ID, NAME || '!' AS laut FROM T ORDER BY ID");
  EXPECT_EQ(database_error([&] { rows->set_value("laut", "x"); }),
            "HY092 The column 'laut' cannot be changed through this row set.");
}

class PostgresqlByKey : public Postgresql {};
INSTANTIATE_TEST_SUITE_P(Updates, PostgresqlByKey, testing::Values("0"),
                         [](const auto&) { return "ByKey"; });

TEST_P(PostgresqlByKey, AKeyThatNamesSeveralRowsWritesNone) {
  // The rows of a table that inherits count as rows of both, and share no key.
  connection_->execute(
      "CREATE TABLE ERBE () INHERITS (T)\r\nINSERT INTO ERBE VALUES (1, 'eins', 1.5)");
  const auto rows = open_for_update("SELECT * FROM T WHERE ID = 1");
  rows->set_value("NAME", "x");
  EXPECT_EQ(database_error([&] { rows->update(); }),
            "HY000 The key of the row names 2 rows of t; nothing was written.");
  EXPECT_EQ(value_of("SELECT COUNT(*) FROM T WHERE NAME = 'eins'"), "2");
}

TEST_P(PostgresqlByKey, ARowThatWasChangedOrDeletedIsToldApart) {
  const auto rows = open_for_update("SELECT * FROM T ORDER BY ID");
  rows->set_value("NAME", "x");
  connection_->execute("UPDATE T SET PREIS = 7 WHERE ID = 1");
  EXPECT_EQ(database_error([&] { rows->update(); }),
            "01001 The row has been changed in the meantime; nothing was written.");
  connection_->execute("DELETE FROM T WHERE ID = 1");
  EXPECT_EQ(database_error([&] { rows->update(); }),
            "01001 The row has been deleted in the meantime; nothing was written.");
}

TEST_P(PostgresqlByKey, RowsWithoutTheirKeyOrOfSeveralTablesAreRefused) {
  connection_->execute("CREATE TABLE OHNE (NAME varchar(10))\r\nINSERT INTO OHNE VALUES ('x')");
  const std::string prefix = "HY092 The rows of this row set cannot be told apart: ";
  const std::string mixed = prefix + "the query does not answer the rows of one table.";
  const std::pair<std::string, std::string> kCases[] = {
      {"SELECT NAME FROM T", prefix + "the column id of the key of t is not among them."},
      {"SELECT NAME FROM OHNE", prefix + "the driver names no primary key of ohne."},
      {"SELECT A.* FROM T A, T B", mixed},
      {"SELECT DISTINCT * FROM T", mixed},
      {"SELECT A.ID, A.NAME FROM T A INNER JOIN T B ON A.ID = B.ID", mixed},
      {"SELECT * FROM T UNION ALL SELECT * FROM T", mixed}};
  for (const auto& [query, error] : kCases) {
    const auto rows = open_for_update(query);
    EXPECT_EQ(database_error([&] { rows->set_value("NAME", "x"); }), error) << query;
    EXPECT_EQ(database_error([&] { rows->update(); }), error) << query;
  }
}

// --- Errors

TEST_P(PostgresqlOnce, ARefusedStatementTellsRecordsAndStatement) {
  EXPECT_EQ(database_error([&] { connection_->execute("SELECT 1\r\nDELETE FROM NICHT_DA"); }),
            "42S02 ERROR: relation \"nicht_da\" does not exist; Error while executing the query "
            "(42P01, 1) [statement 2: DELETE FROM NICHT_DA]");
  EXPECT_EQ(
      database_error([&] { connection_->execute("INSERT INTO T (ID) VALUES (1)"); }).substr(0, 6),
      "23000 ");
}

TEST_P(PostgresqlOnce, ANoticeIsNoError) {
  EXPECT_EQ(connection_->execute("DROP TABLE IF EXISTS NICHT_DA"), 0);
}

TEST_P(PostgresqlOnce, ATextThatIsNoUtf8NeverReachesTheServer) {
  EXPECT_EQ(database_error([&] { connection_->execute("DELETE FROM T WHERE NAME = '\xFF'"); }),
            "22021 The text is no UTF-8 at byte 29.");
  EXPECT_EQ(value_of("SELECT COUNT(*) FROM T"), "3");
}

TEST(PostgresqlFailure, AWrongPasswordIsToldWithoutThePassword) {
  const std::string right = postgresql();
  const std::string wrong =
      right.substr(0, right.find("PWD=")) + "PWD={geheim;1}" + right.substr(right.find(";Bools"));
  const std::string error = database_error([&] { open_odbc(wrong); });
  EXPECT_THAT(error, AllOf(StartsWith("28000 "), HasSubstr("password authentication failed"),
                           Not(HasSubstr("geheim"))));
}

TEST(PostgresqlFailure, ASecretInAStatementIsNotTold) {
  const auto connection = open_odbc(postgresql());
  const std::string s = postgresql();
  const std::size_t begin = s.find("PWD=") + 4;
  const std::string password = s.substr(begin, s.find(';', begin) - begin);
  EXPECT_THAT(database_error([&] { connection->execute("SELEKT '" + password + "'"); }),
              AllOf(StartsWith("42000 "), HasSubstr("[statement 1: SELEKT '***']"),
                    Not(HasSubstr(password))));
}

TEST(PostgresqlFailure, AClosedPortIsRefusedAtOnce) {
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_THAT(database_error([] {
                open_odbc("Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=1;UID=u;PWD=geheim");
              }),
              AllOf(StartsWith("08001 "), HasSubstr("refused"), Not(HasSubstr("geheim"))));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, seconds(5));
}

TEST(PostgresqlFailure, AStatementThatTakesTooLongIsATimeout) {
  OdbcOptions options;
  options.query_timeout = seconds(1);
  const auto connection = open_odbc(postgresql(), options);
  EXPECT_THAT(database_error([&] { connection->execute("SELECT pg_sleep(30)"); }),
              AllOf(StartsWith("HYT00 "), HasSubstr("[statement 1: SELECT pg_sleep(30)]")));
  EXPECT_EQ(column_of(*connection, "SELECT 1"), Row{1});
}

TEST(PostgresqlFailure, ALostConnectionIsToldApartFromABadStatement) {
  const auto victim = open_odbc(postgresql());
  const std::string process = column_of(*victim, "SELECT pg_backend_pid()").at(0).text();
  const auto rows = victim->open("SELECT * FROM generate_series(1, 3) AS N", CursorType::kStatic,
                                 LockType::kReadOnly);
  const auto other = open_odbc(postgresql());
  std::thread killer([&] {
    other->execute("SELECT pg_sleep(0.5)\r\nSELECT pg_terminate_backend(" + process + ")");
  });
  EXPECT_THAT(database_error([&] { victim->execute("SELECT pg_sleep(30)"); }),
              AllOf(StartsWith("08S01 The connection to the database is lost: "),
                    HasSubstr("[statement 1: SELECT pg_sleep(30)]")));
  killer.join();
  EXPECT_THAT(database_error([&] { victim->execute("SELECT 1"); }), StartsWith("08S01 "));
  EXPECT_THAT(
      database_error([&] { victim->open("T", CursorType::kKeyset, LockType::kOptimistic); }),
      StartsWith("08S01 "));
  // What was read is there all the same.
  rows->find("N = 3");
  EXPECT_EQ(rows->value(0), Value(3));
  EXPECT_EQ(column_of(*other, "SELECT 1"), Row{1});
}

TEST(PostgresqlFailure, AStartStatementThatFailsMakesNoConnection) {
  OdbcOptions options;
  options.start_statements = {"SET DATESTYLE TO 'German'", "SET NO_SUCH_OPTION TO 1"};
  EXPECT_THAT(database_error([&] { open_odbc(postgresql(), options); }),
              HasSubstr("[statement 2: SET NO_SUCH_OPTION TO 1]"));
}

TEST(PostgresqlOptions, StartStatementsDecideWhatDatesMean) {
  OdbcOptions options;
  options.start_statements = {"SET DATESTYLE TO 'ISO, DMY'"};
  const auto connection = open_odbc(postgresql(), options);
  EXPECT_EQ(column_of(*connection, "SELECT '01.02.2024'::date"), Row{(DateTime{2024, 2, 1})});
}

TEST(PostgresqlOptions, AReadOnlyConnectionReads) {
  OdbcOptions options;
  options.read_only = true;
  EXPECT_EQ(column_of(*open_odbc(postgresql(), options), "SELECT 1"), Row{1});
}

TEST(PostgresqlConnection, MayBeClosedWithATransactionOpen) {
  const auto first = connect_postgresql();
  first->execute("CREATE TABLE U (ID int)");
  const std::string table = column_of(*first, "SELECT current_schema() || '.U'").at(0).text();
  open_odbc(postgresql())->execute("BEGIN\r\nINSERT INTO " + table + " VALUES (1)");
  EXPECT_EQ(column_of(*first, "SELECT COUNT(*) FROM U"), Row{std::int64_t{0}});
}

}  // namespace
}  // namespace kestrova::test
