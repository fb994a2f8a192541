// The words of an SQL text, for the little that the adapter reads in SQL itself.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestrova::odbc {

struct SqlWord {
  enum class Kind { kWord, kQuotedName, kLiteral, kMark };
  Kind kind = Kind::kMark;
  std::string text;  // a name without its quotes; a mark is one character

  bool is_name() const { return kind == Kind::kWord || kind == Kind::kQuotedName; }
  // A word that is not quoted, without regard to case; or the mark.
  bool is(std::string_view wanted) const;
};

// Comments are left out; what follows a quote or comment that is not closed, too.
std::vector<SqlWord> words_of(std::string_view sql);

}  // namespace kestrova::odbc
