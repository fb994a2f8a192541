// The tokens of an SQL text: enough to tell names, key words and parentheses from what merely looks
// like them inside a text literal or a quoted name.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kestrova::standalone {

struct SqlToken {
  enum class Kind { kWord, kQuotedName, kLiteral, kSymbol, kEnd };

  Kind kind = Kind::kEnd;
  // A word in upper case, a quoted name in upper case without its quotes, a symbol as one byte; ""
  // for a literal and at the end.
  std::string text;

  bool is_word(std::string_view word) const { return kind == Kind::kWord && text == word; }
  bool is_symbol(char symbol) const { return kind == Kind::kSymbol && text.front() == symbol; }
  bool is_end() const { return kind == Kind::kEnd; }
};

// Reads one token after another. A quote that is never closed reaches to the end of the text.
class SqlTokens {
 public:
  // The text must stay in place while it is read.
  explicit SqlTokens(std::string_view sql) : sql_(sql) { advance(); }

  const SqlToken& current() const { return current_; }
  void advance();

  // From an opening parenthesis to behind the one that closes it, or to the end.
  void skip_parentheses();

 private:
  SqlToken read();
  SqlToken read_quoted(char closing, SqlToken::Kind kind);

  std::string_view sql_;
  std::size_t offset_ = 0;
  SqlToken current_;
};

}  // namespace kestrova::standalone
