// The embedded database keeps the contract of platform/database.h.
#include <string>

#include "platform/sqlite/sqlite_connection.h"
#include "tests/support/database_contract.h"

namespace kestrova::test {
namespace {

std::shared_ptr<Connection> connect(const std::vector<ContractTable>& tables) {
  auto connection = open_sqlite(":memory:");
  for (const ContractTable& table : tables) {
    for (const std::string& statement : contract_statements(table, {})) {
      connection->execute(statement);
    }
  }
  return connection;
}

const ContractAdapter kSqlite{.name = "Sqlite", .connect = &connect};

INSTANTIATE_TEST_SUITE_P(Sqlite, DatabaseContract, testing::Values(kSqlite), contract_adapter_name);
INSTANTIATE_TEST_SUITE_P(Sqlite, SqlDatabaseContract, testing::Values(kSqlite),
                         contract_adapter_name);

}  // namespace
}  // namespace kestrova::test
