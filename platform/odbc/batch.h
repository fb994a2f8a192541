// Reads a batch of statements, for databases that do not do so themselves.
#pragma once

#include <string_view>
#include <vector>

namespace kestrova::odbc {

// The statements of a batch, which CR LF outside of quotes and comments joins; for databases that
// do not run batches themselves. Raises DatabaseError (42000) when a quote or comment is not
// closed.
std::vector<std::string_view> split_batch(std::string_view batch);

// Whether the statement changes rows, so that its row count counts.
bool changes_rows(std::string_view statement);

}  // namespace kestrova::odbc
