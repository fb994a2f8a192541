// How a batch falls into statements.
#include "platform/odbc/batch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/error.h"

namespace kestrova::odbc {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Batch, CrLfOutsideOfQuotesAndCommentsEndsAStatement) {
  EXPECT_THAT(split_batch("A\r\nB"), ElementsAre("A", "B"));
  EXPECT_THAT(split_batch("\r\n A \r\n\r\n;\r\nB\n C\r\n"), ElementsAre("A", "B\n C"));
  EXPECT_THAT(split_batch("INSERT INTO T VALUES ('x\r\n''y')\r\nB"),
              ElementsAre("INSERT INTO T VALUES ('x\r\n''y')", "B"));
  EXPECT_THAT(split_batch("SELECT \"a\r\nb\"\r\nB"), ElementsAre("SELECT \"a\r\nb\"", "B"));
  EXPECT_THAT(split_batch("A /* '\r\n */ B\r\nC"), ElementsAre("A /* '\r\n */ B", "C"));
  EXPECT_THAT(split_batch("A -- it's\r\nB"), ElementsAre("A -- it's", "B"));
  EXPECT_THAT(split_batch("SELECT [a\r\nb]\r\nB"), ElementsAre("SELECT [a\r\nb]", "B"));
  EXPECT_THAT(split_batch("A /* /* */ \r\n */ B\r\nC"), ElementsAre("A /* /* */ \r\n */ B", "C"));
  EXPECT_THAT(split_batch(" \r\n "), IsEmpty());
}

TEST(Batch, WhatIsNotClosedCannotBeRead) {
  for (const char* batch : {"A\r\nB 'x", "A\r\nB \"x", "A\r\nB /*"}) {
    try {
      split_batch(batch);
      ADD_FAILURE() << batch;
    } catch (const DatabaseError& error) {
      EXPECT_EQ(error.sqlstate(), "42000");
      EXPECT_STREQ(error.what(),
                   "The batch cannot be read: a quote or comment that begins at position 6 is not "
                   "closed.");
    }
  }
}

TEST(ChangingStatement, IsToldByItsFirstWord) {
  for (const char* sql :
       {"INSERT INTO T VALUES (1)", " update T SET X = 1", "/* x */ DELETE FROM T", "MERGE INTO T",
        "WITH A AS (SELECT 1) UPDATE T SET X = 1"}) {
    EXPECT_TRUE(changes_rows(sql)) << sql;
  }
  for (const char* sql : {"", "CREATE TABLE INSERT_T (ID int)", "SELECT 'INSERT'", "DROP TABLE T",
                          "-- DELETE", "UPDATED"}) {
    EXPECT_FALSE(changes_rows(sql)) << sql;
  }
}

}  // namespace
}  // namespace kestrova::odbc
