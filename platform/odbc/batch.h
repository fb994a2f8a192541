// What the adapter reads in SQL itself, as little as possible.
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

// Whether each row that a query answers is a row of one table, as far as the text tells: it does
// not join, unite, group, nor ask for the table in two places. Errs on the side of no.
bool answers_rows_of_one_table(std::string_view query, std::string_view table);

}  // namespace kestrova::odbc
