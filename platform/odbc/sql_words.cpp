#include "platform/odbc/sql_words.h"

#include <algorithm>

#include "platform/sql_text.h"
#include "platform/text.h"

namespace kestrova::odbc {
namespace {

constexpr std::string_view kBlanks = " \t\r\n\v\f";
constexpr std::size_t kNotClosed = std::string_view::npos;

bool is_word_character(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
         c == '#' || c == '$' || c == '@' || (static_cast<unsigned char>(c) & 0x80U) != 0;
}

SqlWord quoted_word(std::string_view quoted) {
  const char closing = quoted.back();
  const std::string inner(quoted.substr(1, quoted.size() - 2));
  const auto kind = closing == '\'' ? SqlWord::Kind::kLiteral : SqlWord::Kind::kQuotedName;
  return {kind, text::replace_all(inner, std::string(2, closing), std::string(1, closing))};
}

}  // namespace

bool SqlWord::is(std::string_view wanted) const {
  return (kind == Kind::kWord || kind == Kind::kMark) && text::equal_ignoring_case(text, wanted);
}

std::vector<SqlWord> words_of(std::string_view sql) {
  std::vector<SqlWord> words;
  std::size_t at = 0;
  while ((at = sql.find_first_not_of(kBlanks, at)) != std::string_view::npos) {
    if (begins_comment(sql, at)) {
      at = end_of_comment(sql, at);
      if (at == kNotClosed) break;
      continue;
    }
    std::size_t end = end_of_quoted(sql, at);
    if (end == kNotClosed) break;
    if (end > at) {
      words.push_back(quoted_word(sql.substr(at, end - at)));
    } else {
      while (end < sql.size() && is_word_character(sql[end])) ++end;
      const bool is_word = end > at;
      if (!is_word) ++end;
      words.push_back({is_word ? SqlWord::Kind::kWord : SqlWord::Kind::kMark,
                       std::string(sql.substr(at, end - at))});
    }
    at = end;
  }
  return words;
}

}  // namespace kestrova::odbc
