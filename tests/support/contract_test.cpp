#include "tests/support/database_contract.h"
#include "tests/support/recording_connection.h"

namespace kestrova::test {
namespace {

std::shared_ptr<Connection> connect_recording(const std::vector<ContractTable>& tables) {
  auto connection = std::make_shared<RecordingConnection>();
  for (const ContractTable& table : tables) {
    Columns columns;
    for (const ContractColumn& column : table.columns) {
      columns.push_back({column.name, column.type});
    }
    connection->table(table.name, columns, table.rows);
  }
  return connection;
}

INSTANTIATE_TEST_SUITE_P(Recording, DatabaseContract,
                         testing::Values(ContractAdapter{.name = "Recording",
                                                         .connect = &connect_recording}),
                         contract_adapter_name);

}  // namespace
}  // namespace kestrova::test
