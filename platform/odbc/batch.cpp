#include "platform/odbc/batch.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "platform/error.h"
#include "platform/text.h"

namespace kestrova::odbc {
namespace {

constexpr std::string_view kBlanks = " \t\r\n\v\f;";

// Words of queries whose rows are no longer rows of one table.
constexpr std::array<std::string_view, 8> kMixingWords = {"JOIN",  "UNION", "INTERSECT", "EXCEPT",
                                                          "MINUS", "GROUP", "DISTINCT",  "APPLY"};

// What ends the tables of a query.
constexpr std::array<std::string_view, 4> kBehindTables = {"WHERE", "ORDER", "HAVING", "OPTION"};

constexpr std::array<std::string_view, 5> kChangingWords = {"INSERT", "UPDATE", "DELETE", "MERGE",
                                                            "WITH"};

std::string_view trimmed(std::string_view s) {
  const std::size_t begin = s.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return s.substr(begin, s.find_last_not_of(" \t\r\n\v\f") - begin + 1);
}

// Where a quoted text or comment that begins at the position ends; the position itself where none
// begins. npos when it is not closed.
std::size_t end_of_quoted(std::string_view sql, std::size_t position) {
  const auto behind = [&](std::string_view end, std::size_t from) {
    const std::size_t found = sql.find(end, from);
    return found == std::string_view::npos ? found : found + end.size();
  };
  const std::string_view rest = sql.substr(position);
  if (rest.starts_with('\'') || rest.starts_with('"')) {
    return behind(rest.substr(0, 1), position + 1);  // a doubled quote begins the next text
  }
  if (rest.starts_with("/*")) return behind("*/", position + 2);
  if (rest.starts_with("--")) return std::min(sql.find_first_of("\r\n", position), sql.size());
  return position;
}

bool is_word_character(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '#' || c == '$' ||
         (static_cast<unsigned char>(c) & 0x80U) != 0;
}

// The words and commas outside of texts and comments; names in double quotes count as words.
std::vector<std::string_view> words_of(std::string_view sql) {
  std::vector<std::string_view> words;
  for (std::size_t i = 0; i < sql.size();) {
    const std::size_t end = end_of_quoted(sql, i);
    if (end == std::string_view::npos) break;
    if (end > i) {
      if (sql[i] == '"') words.push_back(sql.substr(i + 1, end - i - 2));
      i = end;
      continue;
    }
    const auto stop = std::find_if_not(sql.begin() + static_cast<std::ptrdiff_t>(i), sql.end(),
                                       is_word_character);
    const auto length = static_cast<std::size_t>(stop - sql.begin()) - i;
    if (length > 0 || sql[i] == ',')
      words.push_back(sql.substr(i, std::max<std::size_t>(length, 1)));
    i += std::max<std::size_t>(length, 1);
  }
  return words;
}

template <class Words>
bool holds(const Words& words, std::string_view word) {
  return std::any_of(words.begin(), words.end(), [word](std::string_view candidate) {
    return text::equal_ignoring_case(candidate, word);
  });
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
    const std::size_t end = end_of_quoted(batch, i);
    if (end == std::string_view::npos) {
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
  const std::vector<std::string_view> words = words_of(statement.substr(0, 1000));
  return !words.empty() && holds(kChangingWords, words.front());
}

bool answers_rows_of_one_table(std::string_view query, std::string_view table) {
  const std::vector<std::string_view> words = words_of(query);
  if (std::any_of(words.begin(), words.end(),
                  [](std::string_view word) { return holds(kMixingWords, word); })) {
    return false;
  }
  const auto is = [](std::string_view expected) {
    return [expected](std::string_view word) { return text::equal_ignoring_case(word, expected); };
  };
  if (std::count_if(words.begin(), words.end(), is("FROM")) != 1) return false;
  const auto from = std::find_if(words.begin(), words.end(), is("FROM"));
  const auto end = std::find_if(from, words.end(),
                                [](std::string_view word) { return holds(kBehindTables, word); });
  const std::vector<std::string_view> tables(from + 1, end);
  return holds(tables, table) && !holds(tables, ",");
}

}  // namespace kestrova::odbc
