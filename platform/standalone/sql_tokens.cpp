#include "platform/standalone/sql_tokens.h"

#include "platform/text.h"

namespace kestrova::standalone {
namespace {

bool is_space(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// Letters of any alphabet (every byte beyond ASCII), digits and what names may hold besides.
bool is_word_byte(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '#' || c == '@' || c == '$' || static_cast<unsigned char>(c) >= 0x80;
}

}  // namespace

void SqlTokens::advance() { current_ = read(); }

void SqlTokens::skip_parentheses() {
  int depth = 0;
  do {
    if (current_.is_symbol('(')) ++depth;
    if (current_.is_symbol(')')) --depth;
    advance();
  } while (depth > 0 && !current_.is_end());
}

SqlToken SqlTokens::read() {
  while (offset_ < sql_.size() && is_space(sql_[offset_])) ++offset_;
  if (offset_ == sql_.size()) return {};
  const char first = sql_[offset_];
  if (first == '\'') return read_quoted('\'', SqlToken::Kind::kLiteral);
  if (first == '"') return read_quoted('"', SqlToken::Kind::kQuotedName);
  if (first == '[') return read_quoted(']', SqlToken::Kind::kQuotedName);
  if (!is_word_byte(first)) {
    ++offset_;
    return {SqlToken::Kind::kSymbol, std::string(1, first)};
  }
  const std::size_t begin = offset_;
  while (offset_ < sql_.size() && is_word_byte(sql_[offset_])) ++offset_;
  return {SqlToken::Kind::kWord, text::upper(sql_.substr(begin, offset_ - begin))};
}

SqlToken SqlTokens::read_quoted(char closing, SqlToken::Kind kind) {
  std::string content;
  for (++offset_; offset_ < sql_.size(); ++offset_) {
    if (sql_[offset_] == closing) {
      ++offset_;
      // A doubled closing quote stands for itself.
      if (offset_ == sql_.size() || sql_[offset_] != closing) break;
    }
    content += sql_[offset_];
  }
  if (kind == SqlToken::Kind::kLiteral) return {kind, {}};
  return {kind, text::upper(content)};
}

}  // namespace kestrova::standalone
