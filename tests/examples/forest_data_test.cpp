// The size of the sample database, that equal options make equal databases, and that a failure
// leaves nothing behind.
#include <gtest/gtest.h>

#include <string>

#include "platform/error.h"
#include "platform/sqlite/sqlite_connection.h"
#include "tests/examples/forest_fixture.h"

namespace kestrova::test {
namespace {

std::string all_of(std::string_view table) {
  return "SELECT * FROM " + std::string(table) + " ORDER BY 1";
}

std::int64_t count(Connection& connection, std::string_view table) {
  return number(connection, "SELECT COUNT(*) FROM " + std::string(table));
}

// Every value of every table, one text per row.
std::vector<std::string> contents(Connection& connection) {
  std::vector<std::string> lines;
  for (const std::string& table : table_names()) {
    for (const auto& row : rows(connection, all_of(table))) {
      std::string& line = lines.emplace_back(table);
      for (const std::string& value : row) line += "|" + value;
    }
  }
  return lines;
}

TEST(ForestData, HasAboutTenThousandRowsAndNoEmptyTable) {
  std::int64_t total = 0;
  for (const std::string& table : table_names()) {
    const std::int64_t size = count(*forest(), table);
    EXPECT_GT(size, 0) << table;
    total += size;
  }
  EXPECT_GE(total, 9'000);
  EXPECT_LE(total, 12'000);
}

TEST(ForestData, IsEqualForEqualOptions) {
  EXPECT_EQ(contents(*make_forest(50)), contents(*make_forest(50)));
}

TEST(ForestData, DiffersBySeedAndByDay) {
  const auto original = contents(*make_forest(50));
  EXPECT_NE(original, contents(*make_forest(50, 2)));
  EXPECT_NE(original, contents(*make_forest(50, 1, {2025, 3, 16})));
}

TEST(ForestData, GrowsWithTheNumberOfLots) {
  const auto big = make_forest(2'000);
  EXPECT_EQ(count(*big, "LOGS"), 2'000);
  EXPECT_EQ(count(*big, "LISTENKOPF"), 200);
  EXPECT_EQ(count(*big, "HEADERRECH"), 400);
  EXPECT_NEAR(static_cast<double>(count(*big, "LOGS_RECH")), 1'800, 80);
  EXPECT_EQ(count(*big, "PERSONAL"), count(*forest(), "PERSONAL"));
}

TEST(ForestData, LiesAroundTheGivenDay) {
  EXPECT_GT(number(*forest(), "SELECT COUNT(*) FROM LOGS WHERE EINSCHLAG >= '20250213'"), 0);
  EXPECT_EQ(number(*forest(), "SELECT COUNT(*) FROM LOGS WHERE EINSCHLAG > '20250315'"), 0);
  EXPECT_GT(number(*forest(), "SELECT COUNT(*) FROM VERTRAEGE WHERE LAUFZEIT_BIS > '20250315'"), 0);
}

TEST(ForestData, HoldsUmlautsApostrophesAndNulls) {
  EXPECT_EQ(rows(*forest(), "SELECT NAME, VORNAME FROM PERSONAL WHERE ID IN (2, 17) ORDER BY ID"),
            (std::vector<std::vector<std::string>>{{"O'Brien Holzhandel", "(null)"},
                                                   {"Müller", "Georg"}}));
}

TEST(ForestData, NeedsAtLeastOneLot) {
  const std::shared_ptr<Connection> connection = open_sqlite(":memory:");
  try {
    build_forest_database(*connection, {0, 1, kForestDay});
    FAIL() << "an empty forest was made";
  } catch (const InvalidArgument& error) {
    EXPECT_STREQ(error.what(), "The sample database needs at least one lot, not 0.");
  }
}

TEST(ForestData, LeavesADatabaseThatIsInUseAsItWas) {
  const std::shared_ptr<Connection> connection = open_sqlite(":memory:");
  connection->execute("CREATE TABLE LOGS (ID int)");
  try {
    build_forest_database(*connection, {1, 1, kForestDay});
    FAIL() << "an existing table was overwritten";
  } catch (const DatabaseError& error) {
    const std::string message = error.what();
    EXPECT_EQ(message.substr(0, message.find(':')), "schema.sql, line 206 (CREATE TABLE LOGS ()");
  }
  EXPECT_EQ(count(*connection, "LOGS"), 0);
  EXPECT_THROW(count(*connection, "STRINGS"), DatabaseError);
}

}  // namespace
}  // namespace kestrova::test
