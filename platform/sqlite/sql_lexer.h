// Splits a batch of SQL text into tokens. Comments and white space are skipped.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestrova::sql {

enum class TokenKind {
  kWord,        // name or keyword
  kQuotedName,  // [name] or "name"
  kText,        // 'text'
  kWideText,    // N'text'
  kInteger,     // 12
  kDecimal,     // 12.5
  kFloat,       // 1e3
  kBinary,      // 0xAB
  kSymbol,      // operator or punctuation
  kBatchEnd,    // GO on a line of its own
  kEnd,         // behind the last token
};

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::string_view text;   // as it stands in the batch
  std::size_t offset = 0;  // byte offset in the batch

  // Whether this is the keyword or symbol; upper must be upper case.
  bool is(std::string_view upper) const;
};

// The last token is always a kEnd. Raises DatabaseError 42000 for text that is no SQL. The tokens
// refer to the batch.
std::vector<Token> tokenize(std::string_view batch);

// The name or text that a quoted token stands for: without its quotes, doubled ones halved.
std::string unquoted(const Token& token);

// The inverse: the text between quotes, each quote in it doubled.
std::string quoted(std::string_view text, char quote);

// Throws DatabaseError 42000 with the message and the position (characters from 1) in the batch.
[[noreturn]] void throw_syntax_error(const std::string& message, std::string_view batch,
                                     std::size_t offset, int native_code = 102);

}  // namespace kestrova::sql
