// The contract of platform/database.h as a test suite. Every adapter, real or fake, passes it:
//
//   INSTANTIATE_TEST_SUITE_P(Embedded, DatabaseContract,
//                            testing::Values(ContractAdapter{.name = "Embedded",
//                                                            .connect = &connect_with_tables}),
//                            contract_adapter_name);
//
// and in the same way SqlDatabaseContract, which holds what needs a database that runs statements;
// a fake that answers table names only leaves it out.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "tests/support/recording_connection.h"

namespace kestrova::test {

struct ContractColumn {
  std::string name;
  std::string sql_type;  // in the server's dialect, as in CREATE TABLE ("int NOT NULL PRIMARY KEY")
  FieldType type;        // what the adapter answers for it
};

struct ContractTable {
  std::string name;
  std::vector<ContractColumn> columns;
  Rows rows;
};

// What a database of another dialect or with other types makes of the contract's tables and texts.
struct ContractDialect {
  // How it declares a column, and how the adapter names and types it.
  std::function<ContractColumn(const ContractColumn&)> column = [](const ContractColumn& c) {
    return c;
  };
  // What a value is when it comes back.
  std::function<Value(const Value&)> value = [](const Value& v) { return v; };
  // A value in a statement.
  std::function<std::string(const Value&)> literal;
  // A query or batch of the server's dialect in its own.
  std::function<std::string(std::string_view)> sql = [](std::string_view s) {
    return std::string(s);
  };
  // What to open to read a table in the order of its key after rows of it were written. (A table's
  // rows have no order of their own on some databases.)
  std::function<std::string(std::string_view)> in_order = [](std::string_view table) {
    return std::string(table);
  };

  ContractDialect();
};

struct ContractAdapter {
  std::string name;  // letters and digits

  // A fresh connection to a database of its own that holds these tables, loaded without the help
  // of set_value. Read as a whole, a table answers its rows in the given order.
  std::function<std::shared_ptr<Connection>(const std::vector<ContractTable>&)> connect;

  ContractDialect dialect{};
};

// The statements that make a table and fill it.
std::vector<std::string> contract_statements(const ContractTable& table,
                                             const ContractDialect& dialect);

void PrintTo(const ContractAdapter& adapter, std::ostream* out);
std::string contract_adapter_name(const testing::TestParamInfo<ContractAdapter>& info);

// Each test starts with a connection that holds the tables described in the source file.
class DatabaseContract : public testing::TestWithParam<ContractAdapter> {
 protected:
  DatabaseContract();

  std::unique_ptr<Recordset> open(std::string_view source) {
    return connection_->open(dialect().sql(source), CursorType::kStatic, LockType::kReadOnly);
  }
  std::unique_ptr<Recordset> open_in_order(std::string_view table) {
    return connection_->open(dialect().in_order(table), CursorType::kStatic, LockType::kReadOnly);
  }
  std::unique_ptr<Recordset> open_forward_only(std::string_view source) {
    return connection_->open(dialect().sql(source), CursorType::kForwardOnly, LockType::kReadOnly);
  }
  std::unique_ptr<Recordset> open_for_update(std::string_view source) {
    return connection_->open(dialect().sql(source), CursorType::kKeyset, LockType::kOptimistic);
  }
  std::int64_t execute(std::string_view batch) {
    return connection_->execute(dialect().sql(batch));
  }

  static const ContractDialect& dialect() { return GetParam().dialect; }
  // What becomes of these values in the database.
  static Row stored(Row values);

  std::shared_ptr<Connection> connection_;
};

class SqlDatabaseContract : public DatabaseContract {};

}  // namespace kestrova::test
