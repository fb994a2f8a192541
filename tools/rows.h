// Rows of a query as an answer shows them.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "tools/session.h"

namespace kestrova::tool {

struct ResultColumn {
  std::string name;
  FieldType type = FieldType::kEmpty;
};

struct ResultRows {
  std::vector<ResultColumn> columns;
  std::vector<std::vector<Value>> rows;
};

// All rows of the query; what bounds them is its TOP clause.
ResultRows read_rows(const Session& session, std::string_view sql);

void print_rows(std::ostream& out, const ValueFormat& format, const ResultRows& result);

// "columns" and "rows" of an answer for programs.
void add_rows(Json& answer, const ResultRows& result);

}  // namespace kestrova::tool
