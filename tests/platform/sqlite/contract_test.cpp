// The embedded database keeps the contract of platform/database.h.
#include <string>

#include "platform/sqlite/sqlite_connection.h"
#include "tests/support/database_contract.h"

namespace kestrova::test {
namespace {

// The contract owns its connections alone; open_sqlite shares them.
class Owned final : public Connection {
 public:
  explicit Owned(std::shared_ptr<Connection> shared) : shared_(std::move(shared)) {}
  std::unique_ptr<Recordset> open(std::string_view source, CursorType cursor,
                                  LockType lock) override {
    return shared_->open(source, cursor, lock);
  }
  std::int64_t execute(std::string_view batch) override { return shared_->execute(batch); }
  ConnectionKind kind() const override { return shared_->kind(); }

 private:
  std::shared_ptr<Connection> shared_;
};

std::string literal(const Value& value) {
  if (value.is_null()) return "NULL";
  if (value.get_if<Bytes>()) return "0x" + value.text();
  if (!value.get_if<std::string>() && !value.get_if<DateTime>()) return value.text();
  std::string quoted = "N'";
  for (const char c : value.text()) quoted += c == '\'' ? "''" : std::string(1, c);
  return quoted + "'";
}

std::string script(const ContractTable& table) {
  std::string columns;
  for (const ContractColumn& column : table.columns) {
    columns += (columns.empty() ? "" : ", ") + column.name + " " + column.sql_type;
  }
  std::string result = "CREATE TABLE " + table.name + " (" + columns + ")\r\n";
  for (const Row& row : table.rows) {
    std::string values;
    for (const Value& value : row) values += (values.empty() ? "" : ", ") + literal(value);
    result += "INSERT INTO " + table.name + " VALUES (" + values + ")\r\n";
  }
  return result;
}

std::unique_ptr<Connection> connect(const std::vector<ContractTable>& tables) {
  auto connection = std::make_unique<Owned>(open_sqlite(":memory:"));
  for (const ContractTable& table : tables) connection->execute(script(table));
  return connection;
}

const ContractAdapter kSqlite{"Sqlite", &connect};

INSTANTIATE_TEST_SUITE_P(Sqlite, DatabaseContract, testing::Values(kSqlite), contract_adapter_name);
INSTANTIATE_TEST_SUITE_P(Sqlite, SqlDatabaseContract, testing::Values(kSqlite),
                         contract_adapter_name);

}  // namespace
}  // namespace kestrova::test
