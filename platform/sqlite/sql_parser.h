// Reads a batch of SQL text into statements.
#pragma once

#include <string_view>
#include <vector>

#include "platform/sqlite/sql_ast.h"

namespace kestrova::sql {

// Nesting (parentheses, subqueries, blocks) and operator chains beyond these are refused.
inline constexpr int kMaxNesting = 80;
inline constexpr int kMaxDepth = 250;
// The embedded database joins no more tables.
inline constexpr int kMaxJoined = 64;

// The statements refer to the batch. Raises DatabaseError 42000 with the position and the offending
// piece. Statements need no separator: where one ends follows from the grammar.
std::vector<Statement> parse_batch(std::string_view batch);

}  // namespace kestrova::sql
