#include "tools/criteria_check.h"

#include <string>

#include "platform/error.h"
#include "platform/text.h"
#include "tools/sql_pieces.h"

namespace kestrova::tool {
namespace {

bool begins_comment(const SqlPiece& piece, const SqlPiece& next) {
  return (piece.is_symbol('-') && next.is_symbol('-')) ||
         (piece.is_symbol('/') && next.is_symbol('*'));
}

// What is wrong with a record, "" for nothing.
std::string_view fault_of(std::string_view record) {
  const std::vector<SqlPiece> pieces = split_sql(record);
  int depth = 0;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (!pieces[i].closed) return "its quote is not closed; a value cannot hold \";\"";
    if (i + 1 < pieces.size() && begins_comment(pieces[i], pieces[i + 1])) {
      return "it holds a comment";
    }
    if (pieces[i].is_symbol('(')) ++depth;
    if (pieces[i].is_symbol(')') && --depth < 0) return "a \")\" has no \"(\" before it";
  }
  return depth > 0 ? "a \")\" is missing" : "";
}

}  // namespace

void check_criteria(std::string_view criteria, std::string_view or_line) {
  std::size_t number = 0;
  for (const std::string_view record : text::split(criteria, ';')) {
    ++number;
    if (record == or_line) continue;
    if (const std::string_view fault = fault_of(record); !fault.empty()) {
      throw BadCriterion("criterion " + std::to_string(number) + " (" + std::string(record) +
                         "): " + std::string(fault));
    }
  }
}

}  // namespace kestrova::tool
