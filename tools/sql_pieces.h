// A SQL text cut into pieces that can be put together again: words, quoted texts and names, blanks
// and single symbols.
#pragma once

#include <string_view>
#include <vector>

namespace kestrova::tool {

struct SqlPiece {
  enum class Kind { kWord, kLiteral, kQuotedName, kBlanks, kSymbol };

  Kind kind;
  std::string_view text;
  bool closed = true;  // false for a quote that reaches to the end of the text

  // Key words are compared without regard to case.
  bool is_word(std::string_view upper_case_word) const;
  bool is_symbol(char symbol) const { return kind == Kind::kSymbol && text.front() == symbol; }
};

// The pieces of sql in order; they refer to sql and together are the whole of it. A qualified name
// "A.B" is one word, a doubled apostrophe belongs to its literal.
std::vector<SqlPiece> split_sql(std::string_view sql);

// The table with which a FROM text begins, under the name by which conditions refer to it (its
// alias when it has one). "" when the text is not of that form.
std::string_view main_table(std::string_view from_where);

}  // namespace kestrova::tool
