#include "platform/sqlite/sql_lexer.h"

#include <array>

#include "platform/error.h"
#include "platform/text.h"

namespace kestrova::sql {
namespace {

// Longest first, so that "<=" is not read as "<".
constexpr std::array<std::string_view, 24> kSymbols = {
    "<=", ">=", "<>", "!=", "!<", "!>", "(", ")", ",", ".", ";", "+",
    "-",  "*",  "/",  "%",  "=",  "<",  ">", "&", "|", "^", "~", ":"};

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool is_name_start(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '#' || c == '@' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool is_name_part(char c) { return is_name_start(c) || is_digit(c) || c == '$'; }

bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool is_hex(char c) { return is_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

class Lexer {
 public:
  explicit Lexer(std::string_view batch) : batch_(batch) {}

  std::vector<Token> run() {
    std::vector<Token> tokens;
    skip_blanks();
    while (at_ < batch_.size()) {
      tokens.push_back(next());
      skip_blanks();
    }
    tokens.push_back({TokenKind::kEnd, batch_.substr(batch_.size()), batch_.size()});
    return tokens;
  }

 private:
  bool starts(std::string_view what) const { return batch_.substr(at_).starts_with(what); }
  char peek(std::size_t ahead) const {
    return at_ + ahead < batch_.size() ? batch_[at_ + ahead] : '\0';
  }

  void skip_blanks() {
    for (;;) {
      while (at_ < batch_.size() && is_space(batch_[at_])) ++at_;
      if (starts("--")) {
        at_ = std::min(batch_.find('\n', at_), batch_.size());
      } else if (starts("/*")) {
        skip_block_comment();
      } else {
        return;
      }
    }
  }

  // Block comments nest.
  void skip_block_comment() {
    const std::size_t begin = at_;
    std::size_t open = 0;
    do {
      if (starts("/*")) {
        ++open;
        at_ += 2;
      } else if (starts("*/")) {
        --open;
        at_ += 2;
      } else if (at_ < batch_.size()) {
        ++at_;
      } else {
        throw_syntax_error("Missing end comment mark '*/'", batch_, begin, 113);
      }
    } while (open > 0);
  }

  Token take(TokenKind kind, std::size_t length) {
    const Token token{kind, batch_.substr(at_, length), at_};
    at_ += length;
    return token;
  }

  Token next() {
    const char c = batch_[at_];
    if (c == '\'') return quoted(TokenKind::kText, 0, '\'');
    if ((c == 'N' || c == 'n') && peek(1) == '\'') return quoted(TokenKind::kWideText, 1, '\'');
    if (c == '[') return quoted(TokenKind::kQuotedName, 0, ']');
    if (c == '"') return quoted(TokenKind::kQuotedName, 0, '"');
    if (is_digit(c) || (c == '.' && is_digit(peek(1)))) return number();
    if (is_name_start(c)) return word();
    for (const std::string_view symbol : kSymbols) {
      if (starts(symbol)) return take(TokenKind::kSymbol, symbol.size());
    }
    throw_syntax_error(
        "Incorrect syntax near '" + std::string(text::left(batch_.substr(at_), 1)) + "'", batch_,
        at_);
  }

  // A text or name up to the closing character, which stands for itself when doubled.
  Token quoted(TokenKind kind, std::size_t prefix, char close) {
    std::size_t end = batch_.find(close, at_ + prefix + 1);
    while (end != std::string_view::npos && batch_.substr(end + 1).starts_with(close)) {
      end = batch_.find(close, end + 2);
    }
    if (end == std::string_view::npos) unclosed(prefix);
    const Token token = take(kind, end + 1 - at_);
    if (token.text.find('\0') != std::string_view::npos) {
      throw_syntax_error("A text or name holds a character with the code 0", batch_, token.offset);
    }
    if (kind == TokenKind::kQuotedName && token.text.size() == 2) {
      throw_syntax_error("An object or column name is missing or empty", batch_, token.offset,
                         1038);
    }
    return token;
  }

  [[noreturn]] void unclosed(std::size_t prefix) {
    const std::string_view rest = batch_.substr(at_ + prefix + 1);
    throw_syntax_error("Unclosed quotation mark after the character string '" +
                           std::string(text::left(rest, 60)) + "'",
                       batch_, at_, 105);
  }

  Token word() {
    std::size_t length = 1;
    while (is_name_part(peek(length))) ++length;
    const Token token = take(TokenKind::kWord, length);
    if (token.text.front() == '@') {
      throw_syntax_error("Variables are not supported: '" + std::string(token.text) + "'", batch_,
                         token.offset);
    }
    if (token.is("GO") && stands_alone(token))
      return {TokenKind::kBatchEnd, token.text, token.offset};
    return token;
  }

  bool stands_alone(const Token& token) const {
    const std::size_t line_begin = batch_.find_last_of('\n', token.offset) + 1;  // npos + 1 is 0
    const std::size_t line_end = std::min(batch_.find('\n', at_), batch_.size());
    for (std::size_t i = line_begin; i < line_end; ++i) {
      const bool inside = i >= token.offset && i < at_;
      if (!inside && !is_space(batch_[i])) return false;
    }
    return true;
  }

  Token number() {
    if (peek(0) == '0' && (peek(1) == 'x' || peek(1) == 'X')) {
      std::size_t length = 2;
      while (is_hex(peek(length))) ++length;
      return finish_number(TokenKind::kBinary, length);
    }
    TokenKind kind = TokenKind::kInteger;
    std::size_t length = 0;
    while (is_digit(peek(length))) ++length;
    if (peek(length) == '.') {
      kind = TokenKind::kDecimal;
      ++length;
      while (is_digit(peek(length))) ++length;
    }
    if (peek(length) == 'e' || peek(length) == 'E') {
      const std::size_t sign = peek(length + 1) == '+' || peek(length + 1) == '-' ? 1 : 0;
      if (is_digit(peek(length + 1 + sign))) {
        kind = TokenKind::kFloat;
        length += 1 + sign;
        while (is_digit(peek(length))) ++length;
      }
    }
    return finish_number(kind, length);
  }

  // A name may not begin where a number ends: "1X" is a slip, never "1" named X.
  Token finish_number(TokenKind kind, std::size_t length) {
    if (is_name_part(peek(length))) {
      while (is_name_part(peek(length))) ++length;
      throw_syntax_error("Incorrect syntax near '" + std::string(batch_.substr(at_, length)) + "'",
                         batch_, at_);
    }
    return take(kind, length);
  }

  std::string_view batch_;
  std::size_t at_ = 0;
};

}  // namespace

bool Token::is(std::string_view upper) const {
  if (text.size() != upper.size() || (kind != TokenKind::kWord && kind != TokenKind::kSymbol)) {
    return false;
  }
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c =
        text[i] >= 'a' && text[i] <= 'z' ? static_cast<char>(text[i] - 'a' + 'A') : text[i];
    if (c != upper[i]) return false;
  }
  return true;
}

std::vector<Token> tokenize(std::string_view batch) { return Lexer(batch).run(); }

std::string unquoted(const Token& token) {
  std::string_view inner = token.text;
  if (token.kind == TokenKind::kWideText) inner.remove_prefix(1);
  const char close = inner.back();
  inner = inner.substr(1, inner.size() - 2);
  return text::replace_all(inner, std::string(2, close), std::string(1, close));
}

std::string quoted(std::string_view text, char quote) {
  std::string result(1, quote);
  for (const char c : text) result.append(c == quote ? 2 : 1, c);
  return result += quote;
}

void throw_syntax_error(const std::string& message, std::string_view batch, std::size_t offset,
                        int native_code) {
  const std::size_t position = text::length(batch.substr(0, offset)) + 1;
  throw DatabaseError(message + " at position " + std::to_string(position) + ".", "42000",
                      native_code);
}

}  // namespace kestrova::sql
