// Reads a result whole: in blocks of rows, or row by row and piece by piece where a value has no
// upper bound.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/odbc/column_types.h"
#include "platform/odbc/odbc_session.h"
#include "platform/value.h"

namespace kestrova::odbc {

struct ResultColumn {
  std::string name;
  ColumnType type;
  std::size_t size = 0;
  int digits = 0;
};

// The columns of the statement's present result.
std::vector<ResultColumn> read_columns(Session& session, const StatementHandle& statement,
                                       const std::string& name);

// All rows, value behind value.
struct ResultRows {
  std::vector<Value> values;
  std::vector<std::size_t> positions;  // of each row in the result, counted from 1
};

ResultRows read_rows(Session& session, const StatementHandle& statement,
                     const std::vector<ResultColumn>& columns, const std::string& name);

// A value of the row on which the statement stands, in pieces.
Value read_value(Session& session, const StatementHandle& statement, const ResultColumn& column,
                 std::size_t position, const std::string& name);

}  // namespace kestrova::odbc
