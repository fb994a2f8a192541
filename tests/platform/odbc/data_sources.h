// The data sources of the tests: drivers that the system has installed, and the PostgreSQL server
// that scripts/with-postgresql runs.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/database.h"
#include "platform/error.h"
#include "tests/support/recording_connection.h"

namespace kestrova::test {

// An empty database in memory.
inline constexpr const char* kSqliteDriver = "Driver=SQLite3;Database=:memory:";

// The driver for tests that speaks the server's dialect (dialect_driver.cpp), with an empty
// database in memory.
inline constexpr const char* kDialectDriver = "Driver=" KESTROVA_DIALECT_DRIVER;

// The same with FreeTDS's limits: no cursors that can be updated, no names of tables and columns.
inline constexpr const char* kDriverLikeFreeTds = "Driver=" KESTROVA_DIALECT_DRIVER ";Like=FreeTDS";

// Raises std::runtime_error, which fails the test, when the server is not there.
std::string postgresql();

// A connection to the server with a schema of its own, which goes with it.
std::shared_ptr<Connection> connect_postgresql(const std::string& more_attributes = "");

// "SQLSTATE message" of the DatabaseError that the call raises.
template <class Call>
std::string database_error(Call call) {
  try {
    call();
  } catch (const DatabaseError& error) {
    return error.sqlstate() + " " + error.what();
  }
  return "no error";
}

// The values of a query's first column.
Row column_of(Connection& connection, const std::string& query);

}  // namespace kestrova::test
