// An error in the middle of a result, which a driver may tell as a note of the rows before it, is
// never taken for the end; neither is one that any other function notes beside its success.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/odbc/odbc_connection.h"
#include "tests/platform/odbc/data_sources.h"

namespace kestrova::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kDrivers[] = {kDialectDriver, kDriverLikeFreeTds};

std::string driver_name(const std::string& connection_string) {
  return connection_string.ends_with("FreeTDS") ? "LikeFreeTds" : "Plain";
}

// A table of 2,500 rows, which are read in blocks of 1,000, or row by row with a long text.
class ErrorsInResults : public testing::TestWithParam<const char*> {
 protected:
  ErrorsInResults() : connection_(open_odbc(GetParam())) {
    std::string batch =
        "CREATE TABLE T (ID int NOT NULL PRIMARY KEY, LANG ntext, NAME nvarchar(50))";
    for (int block = 0; block < 5; ++block) {
      batch += "\r\nINSERT INTO T (ID, LANG) VALUES ";
      for (int i = 1; i <= 500; ++i) {
        batch += std::string(i == 1 ? "" : ", ") + "(" + std::to_string(block * 500 + i) + ", 'x')";
      }
    }
    connection_->execute(batch);
  }

  std::string opened(const std::string& query, LockType lock = LockType::kReadOnly) {
    return database_error([&] { connection_->open(query, CursorType::kKeyset, lock); });
  }

  std::shared_ptr<Connection> connection_;
};

INSTANTIATE_TEST_SUITE_P(Drivers, ErrorsInResults, testing::ValuesIn(kDrivers),
                         [](const auto& test) { return driver_name(test.param); });

TEST_P(ErrorsInResults, AreRaisedAtEveryRowInBlocksAndInPieces) {
  for (const std::string columns : {"ID", "ID, LANG"}) {
    for (const int row : {1, 2, 999, 1000, 1001, 1250, 2000, 2001, 2499, 2500}) {
      const std::string query =
          "SELECT " + columns + ", 1/(ID-" + std::to_string(row) + ") AS X FROM T ORDER BY ID";
      for (const LockType lock : {LockType::kReadOnly, LockType::kOptimistic}) {
        EXPECT_THAT(opened(query, lock),
                    AllOf(StartsWith("22012 "), HasSubstr("[statement 1: " + query + "]")));
      }
    }
    EXPECT_EQ(column_of(*connection_, "SELECT " + columns + ", 1/(ID-2501) AS X FROM T").size(),
              2500U);
  }
}

// The function notes an error behind a warning.
TEST_P(ErrorsInResults, AreRaisedWhicheverFunctionNotesThem) {
  EXPECT_EQ(opened("SELECT ID FROM T /* (SQLExecDirect fails) */").substr(0, 6), "22012 ");
  EXPECT_EQ(opened("SELECT ID FROM T /* (SQLFetch fails) */").substr(0, 6), "22012 ");
  EXPECT_EQ(opened("SELECT ID, LANG FROM T /* (SQLFetch fails) */").substr(0, 6), "22012 ");
  EXPECT_EQ(opened("SELECT ID, LANG FROM T /* (SQLGetData fails) */").substr(0, 6), "22012 ");
  EXPECT_EQ(opened("SELECT ID FROM T /* (SQLMoreResults fails) */").substr(0, 6), "22012 ");
  for (const std::string function : {"SQLExecDirect", "SQLMoreResults"}) {
    EXPECT_EQ(
        database_error([&] {
          connection_->execute("UPDATE T SET NAME = NULL WHERE ID = 1 /* (" + function +
                               " fails) */");
        }),
        "22012 [Dialect]Null value is eliminated by an aggregate (01003, 8153); [Dialect]Divide by "
        "zero error encountered. (22012, 8134) [statement 1: UPDATE T SET NAME = NULL WHERE ID = 1 "
        "/* (" +
            function + " fails) */]");
  }
}

TEST_P(ErrorsInResults, AreRaisedByAnUpdate) {
  const bool has_cursor = driver_name(GetParam()) == "Plain";
  const auto rows = connection_->open(
      std::string("SELECT * FROM T WHERE ID = 1") + (has_cursor ? " /* (SQLSetPos fails) */" : ""),
      CursorType::kKeyset, LockType::kOptimistic);
  rows->set_value("NAME", "(SQLExecDirect fails)");
  EXPECT_THAT(database_error([&] { rows->update(); }), StartsWith("22012 "));
  EXPECT_EQ(column_of(*connection_, "SELECT ID FROM T WHERE ID < 3"), (Row{1, 2}));
}

TEST_P(ErrorsInResults, WarningsAreNone) {
  connection_->execute("UPDATE T SET NAME = 'lang' WHERE ID = 1");
  EXPECT_EQ(column_of(*connection_, "SELECT MAX(NAME) FROM T"), Row{"lang"});
}

}  // namespace
}  // namespace kestrova::test
