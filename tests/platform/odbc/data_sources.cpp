#include "tests/platform/odbc/data_sources.h"

#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "platform/odbc/odbc_connection.h"

namespace kestrova::test {

std::string postgresql() {
  const char* connection_string = std::getenv("KESTROVA_TEST_POSTGRESQL");
  if (connection_string == nullptr) {
    throw std::runtime_error(
        "There is no PostgreSQL server: run the tests under scripts/with-postgresql.");
  }
  return connection_string;
}

std::shared_ptr<Connection> connect_postgresql(const std::string& more_attributes) {
  static int count = 0;
  const std::string schema = "test_" + std::to_string(getpid()) + "_" + std::to_string(++count);
  const auto shared = open_odbc(postgresql() + ";" + more_attributes);
  shared->execute("CREATE SCHEMA " + schema);
  shared->execute("SET search_path TO " + schema);
  return {shared.get(), [shared, schema](Connection*) {
            try {
              shared->execute("DROP SCHEMA " + schema + " CASCADE");
            } catch (const DatabaseError&) {
              // The test has taken the connection away; the server goes with all that it holds.
            }
          }};
}

Row column_of(Connection& connection, const std::string& query) {
  const auto rows = connection.open(query, CursorType::kForwardOnly, LockType::kReadOnly);
  Row values;
  for (; !rows->eof(); rows->move_next()) values.push_back(rows->value(std::size_t{0}));
  return values;
}

}  // namespace kestrova::test
