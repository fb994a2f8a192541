// Reads in a query whose rows it answers, for drivers that do not tell, or not enough.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/odbc/searched_update.h"

namespace kestrova::odbc {

// A query each row of which is a row of one table, as far as the text tells: it does not join,
// unite, group, nor ask for a table in two places. Errs on the side of no.
struct PlainQuery {
  TableName table;  // as the query spells it
  // "*" only: the columns are those of the table.
  bool all_columns = false;
  // Else the columns by position; "" for an expression, and for a column under another name.
  std::vector<std::string> columns;
};

std::optional<PlainQuery> plain_query(std::string_view query);

// The columns of the query's table that the result columns with these names show; "" for one that
// cannot be told, and for all when the query does not name as many.
std::vector<std::string> source_columns(const PlainQuery& query,
                                        const std::vector<std::string>& result_names);

}  // namespace kestrova::odbc
