#include "tools/sql_pieces.h"

#include <algorithm>
#include <array>

#include "platform/text.h"

namespace kestrova::tool {
namespace {

using Kind = SqlPiece::Kind;

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool is_symbol_char(char c) {
  return std::string_view("(),;=<>+-*/%'\"[]").find(c) != std::string_view::npos;
}

bool is_word_char(char c) { return !is_blank(c) && !is_symbol_char(c); }

template <class Predicate>
std::size_t run_length(std::string_view s, Predicate belongs) {
  return static_cast<std::size_t>(std::find_if_not(s.begin(), s.end(), belongs) - s.begin());
}

// From an opening quote to its closing one; doubled closing quotes belong to the text.
SqlPiece quoted(std::string_view s, char closing, Kind kind) {
  std::size_t at = 1;
  while ((at = s.find(closing, at)) != std::string_view::npos) {
    if (s.substr(at + 1, 1) != std::string_view(&closing, 1)) {
      return {.kind = kind, .text = s.substr(0, at + 1)};
    }
    at += 2;
  }
  return {.kind = kind, .text = s, .closed = false};
}

SqlPiece next_piece(std::string_view s) {
  const char c = s.front();
  if (c == '\'') return quoted(s, '\'', Kind::kLiteral);
  if (c == '"') return quoted(s, '"', Kind::kQuotedName);
  if (c == '[') return quoted(s, ']', Kind::kQuotedName);
  if (is_blank(c)) return {.kind = Kind::kBlanks, .text = s.substr(0, run_length(s, is_blank))};
  if (is_symbol_char(c)) return {.kind = Kind::kSymbol, .text = s.substr(0, 1)};
  return {.kind = Kind::kWord, .text = s.substr(0, run_length(s, is_word_char))};
}

// Words that follow a table in a FROM text, and are no table and no alias.
bool follows_table(const SqlPiece& piece) {
  constexpr std::array<std::string_view, 10> kWords = {"INNER", "LEFT",  "RIGHT", "FULL",  "CROSS",
                                                       "JOIN",  "WHERE", "ON",    "GROUP", "ORDER"};
  return std::any_of(kWords.begin(), kWords.end(),
                     [&piece](std::string_view word) { return piece.is_word(word); });
}

}  // namespace

bool SqlPiece::is_word(std::string_view upper_case_word) const {
  return kind == Kind::kWord && text::equal_ignoring_case(text, upper_case_word);
}

std::vector<SqlPiece> split_sql(std::string_view sql) {
  std::vector<SqlPiece> pieces;
  while (!sql.empty()) {
    pieces.push_back(next_piece(sql));
    sql.remove_prefix(pieces.back().text.size());
  }
  return pieces;
}

std::string_view main_table(std::string_view from_where) {
  std::vector<SqlPiece> pieces = split_sql(from_where);
  std::erase_if(pieces, [](const SqlPiece& piece) {
    return piece.kind == Kind::kBlanks || piece.is_symbol('(');
  });
  const auto is_name = [](const SqlPiece& piece) {
    return piece.kind == Kind::kWord || piece.kind == Kind::kQuotedName;
  };
  if (pieces.size() < 2 || !pieces[0].is_word("FROM")) return {};
  if (!is_name(pieces[1]) || follows_table(pieces[1])) return {};
  const std::size_t alias = pieces.size() > 2 && pieces[2].is_word("AS") ? 3 : 2;
  const bool has_alias =
      alias < pieces.size() && is_name(pieces[alias]) && !follows_table(pieces[alias]);
  return pieces[has_alias ? alias : 1].text;
}

}  // namespace kestrova::tool
