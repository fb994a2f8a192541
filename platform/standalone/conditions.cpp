#include "platform/standalone/conditions.h"

#include "platform/standalone/sql_tokens.h"
#include "platform/text.h"

namespace kestrova::standalone {
namespace {

bool has_open_or(std::string_view condition) {
  int open_cases = 0;
  SqlTokens tokens(condition);
  while (!tokens.current().is_end()) {
    const SqlToken& token = tokens.current();
    if (token.is_symbol('(')) {
      tokens.skip_parentheses();
      continue;
    }
    if (token.is_word("OR") && open_cases == 0) return true;
    if (token.is_word("CASE")) ++open_cases;
    if (token.is_word("END")) --open_cases;
    tokens.advance();
  }
  return false;
}

}  // namespace

std::string guarded(std::string_view condition) {
  if (!has_open_or(condition)) return std::string(condition);
  return "(" + std::string(condition) + ")";
}

std::string joined_by_and(std::string_view condition, std::string_view further) {
  if (text::trim(condition).empty()) return std::string(further);
  if (text::trim(further).empty()) return std::string(condition);
  return guarded(condition) + " AND " + guarded(further);
}

}  // namespace kestrova::standalone
