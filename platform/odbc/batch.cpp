#include "platform/odbc/batch.h"

#include <algorithm>
#include <array>

#include "platform/error.h"
#include "platform/odbc/sql_words.h"
#include "platform/sql_text.h"

namespace kestrova::odbc {
namespace {

constexpr std::string_view kBlanks = " \t\r\n\v\f;";
constexpr std::size_t kNotClosed = std::string_view::npos;

constexpr std::array<std::string_view, 5> kChangingWords = {"INSERT", "UPDATE", "DELETE", "MERGE",
                                                            "WITH"};

std::string_view trimmed(std::string_view s) {
  const std::size_t begin = s.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return s.substr(begin, s.find_last_not_of(" \t\r\n\v\f") - begin + 1);
}

// Where a quoted text or name or a comment that begins at the position ends; the position itself
// where none begins. npos when it is not closed.
std::size_t end_of_hidden(std::string_view sql, std::size_t position) {
  return begins_comment(sql, position) ? end_of_comment(sql, position)
                                       : end_of_quoted(sql, position);
}

}  // namespace

std::vector<std::string_view> split_batch(std::string_view batch) {
  std::vector<std::string_view> statements;
  std::size_t begin = 0;
  const auto finish = [&](std::size_t end) {
    const std::string_view statement = trimmed(batch.substr(begin, end - begin));
    if (!statement.empty()) statements.push_back(statement);
  };
  for (std::size_t i = 0; i < batch.size();) {
    const std::size_t end = end_of_hidden(batch, i);
    if (end == kNotClosed) {
      throw DatabaseError("The batch cannot be read: a quote or comment that begins at position " +
                              std::to_string(i + 1) + " is not closed.",
                          "42000");
    }
    if (end > i) {
      i = end;
    } else if (batch.substr(i).starts_with("\r\n")) {
      finish(i);
      i += 2;
      begin = i;
    } else {
      ++i;
    }
  }
  finish(batch.size());
  return statements;
}

bool changes_rows(std::string_view statement) {
  const std::vector<SqlWord> words = words_of(statement.substr(0, 1000));
  return !words.empty() &&
         std::any_of(kChangingWords.begin(), kChangingWords.end(),
                     [&words](std::string_view word) { return words.front().is(word); });
}

}  // namespace kestrova::odbc
