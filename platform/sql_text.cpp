#include "platform/sql_text.h"

#include <algorithm>

namespace kestrova {
namespace {

constexpr std::size_t kNotClosed = std::string_view::npos;

// The quote that closes what the character opens; 0 for a character that opens nothing.
char closing_quote(char c) {
  if (c == '\'' || c == '"') return c;
  return c == '[' ? ']' : '\0';
}

bool is_at(std::string_view sql, std::size_t offset, std::string_view mark) {
  return sql.substr(offset, mark.size()) == mark;
}

}  // namespace

std::size_t end_of_quoted(std::string_view sql, std::size_t offset) {
  const char closing = closing_quote(sql[offset]);
  if (closing == '\0') return offset;
  std::size_t at = sql.find(closing, offset + 1);
  while (at != kNotClosed && at + 1 < sql.size() && sql[at + 1] == closing) {
    at = sql.find(closing, at + 2);
  }
  return at == kNotClosed ? kNotClosed : at + 1;
}

bool begins_comment(std::string_view sql, std::size_t offset) {
  return is_at(sql, offset, "--") || is_at(sql, offset, "/*");
}

std::size_t end_of_comment(std::string_view sql, std::size_t offset) {
  if (is_at(sql, offset, "--")) return std::min(sql.find_first_of("\r\n", offset), sql.size());
  std::size_t depth = 1;
  std::size_t at = offset + 2;
  while (depth > 0) {
    at = sql.find_first_of("*/", at);
    if (at == kNotClosed) return kNotClosed;
    if (is_at(sql, at, "/*") || is_at(sql, at, "*/")) {
      depth = is_at(sql, at, "/*") ? depth + 1 : depth - 1;
      at += 2;
    } else {
      ++at;
    }
  }
  return at;
}

}  // namespace kestrova
