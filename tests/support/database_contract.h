// The contract of platform/database.h as a test suite. Every adapter, real or fake, passes it:
//
//   INSTANTIATE_TEST_SUITE_P(Embedded, DatabaseContract,
//                            testing::Values(ContractAdapter{"Embedded", &connect_with_tables}),
//                            contract_adapter_name);
//
// and in the same way SqlDatabaseContract, which holds what needs a database that runs statements;
// a fake that answers table names only leaves it out.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>
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

struct ContractAdapter {
  std::string name;  // letters and digits

  // A fresh connection to a database of its own that holds these tables, loaded without the help
  // of set_value. Read as a whole, a table answers its rows in the given order.
  std::function<std::unique_ptr<Connection>(const std::vector<ContractTable>&)> connect;
};

void PrintTo(const ContractAdapter& adapter, std::ostream* out);
std::string contract_adapter_name(const testing::TestParamInfo<ContractAdapter>& info);

// Each test starts with a connection that holds the tables described in the source file.
class DatabaseContract : public testing::TestWithParam<ContractAdapter> {
 protected:
  DatabaseContract();

  std::unique_ptr<Recordset> open(std::string_view source) {
    return connection_->open(source, CursorType::kStatic, LockType::kReadOnly);
  }
  std::unique_ptr<Recordset> open_forward_only(std::string_view source) {
    return connection_->open(source, CursorType::kForwardOnly, LockType::kReadOnly);
  }
  std::unique_ptr<Recordset> open_for_update(std::string_view source) {
    return connection_->open(source, CursorType::kKeyset, LockType::kOptimistic);
  }

  std::unique_ptr<Connection> connection_;
};

class SqlDatabaseContract : public DatabaseContract {};

}  // namespace kestrova::test
