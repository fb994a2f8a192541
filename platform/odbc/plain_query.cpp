#include "platform/odbc/plain_query.h"

#include <algorithm>
#include <array>
#include <span>

#include "platform/odbc/sql_words.h"
#include "platform/text.h"

namespace kestrova::odbc {
namespace {

// Words of queries whose rows are no longer rows of one table.
constexpr std::array<std::string_view, 9> kMixingWords = {
    "JOIN", "UNION", "INTERSECT", "EXCEPT", "MINUS", "GROUP", "HAVING", "DISTINCT", "APPLY"};

// What ends the tables of a query.
constexpr std::array<std::string_view, 7> kBehindTables = {"WHERE", "ORDER",  "OPTION", "LIMIT",
                                                           "FOR",   "OFFSET", ";"};

using Words = std::span<const SqlWord>;

template <class Wanted>
bool is_one_of(const SqlWord& word, const Wanted& wanted) {
  return std::any_of(wanted.begin(), wanted.end(),
                     [&word](std::string_view candidate) { return word.is(candidate); });
}

// The parts of "a.b.c" at the beginning of the words; taken off them.
std::vector<std::string> take_name(Words& words) {
  std::vector<std::string> parts;
  while (!words.empty() && words.front().is_name()) {
    parts.push_back(words.front().text);
    words = words.subspan(1);
    if (words.size() < 2 || !words.front().is(".")) break;
    words = words.subspan(1);
    if (words.front().is(".")) {  // the schema of the login: "FOREST..LOGS"
      parts.emplace_back();
      words = words.subspan(1);
    }
  }
  return parts;
}

// FROM holds one name, and maybe another one for it.
std::optional<TableName> only_table(Words words) {
  const std::vector<std::string> parts = take_name(words);
  if (!words.empty() && words.front().is("AS")) words = words.subspan(1);
  if (!words.empty() && words.front().is_name()) words = words.subspan(1);
  if (!words.empty() || parts.empty() || parts.size() > 3) return std::nullopt;
  const auto part = [&parts](std::size_t from_behind) {
    return from_behind < parts.size() ? parts[parts.size() - 1 - from_behind] : "";
  };
  return TableName{part(2), part(1), part(0)};
}

// "TOP n" and "TOP (n)" in front of the columns.
Words without_top(Words words) {
  if (words.empty() || !words.front().is("TOP")) return words;
  const bool has_parentheses = words.size() > 3 && words[1].is("(") && words[3].is(")");
  return words.subspan(std::min<std::size_t>(words.size(), has_parentheses ? 4 : 2));
}

bool is_all(Words item) {
  return !item.empty() && item.back().is("*") &&
         (item.size() == 1 || (item.size() == 3 && item[0].is_name() && item[1].is(".")));
}

std::string column_of(Words item) {
  const std::vector<std::string> parts = take_name(item);
  return item.empty() && !parts.empty() ? parts.back() : "";
}

std::vector<Words> items_of(Words list) {
  std::vector<Words> items;
  std::size_t begin = 0;
  int depth = 0;
  for (std::size_t i = 0; i <= list.size(); ++i) {
    if (i == list.size() || (depth == 0 && list[i].is(","))) {
      items.push_back(list.subspan(begin, i - begin));
      begin = i + 1;
    } else {
      depth += list[i].is("(") ? 1 : list[i].is(")") ? -1 : 0;
    }
  }
  return items;
}

}  // namespace

std::optional<PlainQuery> plain_query(std::string_view query) {
  const std::vector<SqlWord> all = words_of(query);
  const Words words(all);
  if (words.empty() || !words.front().is("SELECT")) return std::nullopt;
  const auto mixes = [](const SqlWord& word) { return is_one_of(word, kMixingWords); };
  if (std::any_of(words.begin(), words.end(), mixes)) return std::nullopt;
  const auto is_from = [](const SqlWord& word) { return word.is("FROM"); };
  if (std::count_if(words.begin(), words.end(), is_from) != 1) return std::nullopt;
  const auto from =
      static_cast<std::size_t>(std::find_if(words.begin(), words.end(), is_from) - words.begin());
  const auto end = static_cast<std::size_t>(
      std::find_if(words.begin() + static_cast<std::ptrdiff_t>(from), words.end(),
                   [](const SqlWord& word) { return is_one_of(word, kBehindTables); }) -
      words.begin());
  std::optional<TableName> table = only_table(words.subspan(from + 1, end - from - 1));
  if (!table) return std::nullopt;
  PlainQuery result;
  result.table = std::move(*table);
  const std::vector<Words> items = items_of(without_top(words.subspan(1, from - 1)));
  result.all_columns = items.size() == 1 && is_all(items.front());
  if (result.all_columns) return result;
  // With "*" among others their places are not known.
  const bool is_mixed = std::any_of(items.begin(), items.end(), is_all);
  for (const Words item : items) result.columns.push_back(is_mixed ? "" : column_of(item));
  return result;
}

std::vector<std::string> source_columns(const PlainQuery& query,
                                        const std::vector<std::string>& result_names) {
  if (query.all_columns) return result_names;
  std::vector<std::string> columns(result_names.size());
  if (query.columns.size() != columns.size()) return columns;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    // "NULL" and "CURRENT_USER" look like columns but are none; the result names them otherwise.
    const bool is_named_so = text::equal_ignoring_case(query.columns[i], result_names[i]);
    if (is_named_so) columns[i] = result_names[i];
  }
  return columns;
}

}  // namespace kestrova::odbc
