// Writes the current row of a row set: through the driver's cursor, or by a searched UPDATE.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/odbc/row_reader.h"

namespace kestrova::odbc {

using Changes = std::map<std::size_t, Value>;  // new values by position

// Asks the driver for a cursor that can be updated, before the statement is run.
void ask_for_cursor(Session& session, const StatementHandle& statement, LockType lock);

// Whether the driver has granted one.
bool has_cursor(const StatementHandle& statement);

// Both return the row as the database holds it afterwards, and raise DatabaseError when not exactly
// this row, as it was read, could be written; nothing is written then.

// position is the row's in the result, counted from 1.
Row write_through_cursor(Session& session, const StatementHandle& cursor,
                         const std::vector<ResultColumn>& columns, std::size_t position,
                         const Row& row, const Changes& changes, const std::string& name);

// The one table that a row set shows, and where its key stands among the columns.
struct UpdateTarget {
  TableName table;
  std::vector<std::size_t> key;
  std::vector<std::string> columns;  // their names in the table; "" for one of no table

  bool has_column(std::size_t position) const { return !columns[position].empty(); }
};

// From what the driver names, or else from the query. Raises DatabaseError (HY092) when the rows
// cannot be told apart.
UpdateTarget find_target(Session& session, std::string_view query,
                         const std::vector<ResultColumn>& columns,
                         const std::vector<SourceColumn>& sources);

Row write_by_key(Session& session, const UpdateTarget& target,
                 const std::vector<ResultColumn>& columns, const Row& row, const Changes& changes);

}  // namespace kestrova::odbc
