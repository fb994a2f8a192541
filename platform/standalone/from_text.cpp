#include "platform/standalone/from_text.h"

#include <algorithm>
#include <array>

#include "platform/standalone/sql_tokens.h"

namespace kestrova::standalone {
namespace {

// Words that follow a table without being its alias, or precede one without being a table.
constexpr std::array<std::string_view, 20> kKeyWords = {
    "APPLY", "AS",    "CROSS",   "FULL",  "GROUP",       "HAVING", "INNER",
    "JOIN",  "LEFT",  "NATURAL", "ON",    "ORDER",       "OUTER",  "PIVOT",
    "RIGHT", "UNION", "USING",   "WHERE", "TABLESAMPLE", "WITH"};

constexpr std::array<std::string_view, 2> kWordsBeforeTable = {"JOIN", "APPLY"};
constexpr std::array<std::string_view, 3> kWordsOfSubSelect = {"SELECT", "VALUES", "WITH"};

template <std::size_t Size>
bool is_one_of(const std::array<std::string_view, Size>& words, const SqlToken& token) {
  return token.kind == SqlToken::Kind::kWord &&
         std::find(words.begin(), words.end(), token.text) != words.end();
}

bool is_name(const SqlToken& token) {
  return token.kind == SqlToken::Kind::kQuotedName ||
         (token.kind == SqlToken::Kind::kWord && !is_one_of(kKeyWords, token));
}

class FromReader {
 public:
  explicit FromReader(std::string_view from_text) : tokens_(from_text) {}

  std::vector<FromTable> read() {
    bool table_expected = true;
    while (!tokens_.current().is_end()) table_expected = step(table_expected);
    return std::move(tables_);
  }

 private:
  // Reads on by one table or token; answers whether a table may stand next.
  bool step(bool table_expected) {
    const SqlToken& token = tokens_.current();
    if (table_expected && token.is_symbol('(')) return read_parenthesis();
    if (table_expected && is_name(token)) {
      read_table();
      return false;
    }
    if (token.is_symbol('(')) {
      tokens_.skip_parentheses();
      return false;
    }
    const bool table_follows = token.is_symbol(',') || is_one_of(kWordsBeforeTable, token);
    const bool parenthesis_ends = token.is_symbol(')');
    tokens_.advance();
    if (parenthesis_ends) read_name_of_parenthesis();
    return table_follows;
  }

  // A parenthesis in table position opens a join group, where a table may stand next, or holds a
  // sub-select, which is one table itself.
  bool read_parenthesis() {
    SqlTokens inside = tokens_;
    inside.advance();
    const SqlToken& first = inside.current();
    const bool is_group =
        first.is_symbol('(') || (is_name(first) && !is_one_of(kWordsOfSubSelect, first));
    if (is_group) {
      tokens_ = std::move(inside);
      return true;
    }
    tokens_.skip_parentheses();
    read_name_of_parenthesis();
    return false;
  }

  // Only a sub-select can have a name behind its parenthesis, a join group cannot.
  void read_name_of_parenthesis() {
    const std::string alias = read_alias();
    if (!alias.empty()) tables_.push_back({"", alias});
  }

  void read_table() {
    std::string table = tokens_.current().text;
    tokens_.advance();
    while (tokens_.current().is_symbol('.')) {
      tokens_.advance();
      if (!is_name(tokens_.current())) continue;
      table = tokens_.current().text;
      tokens_.advance();
    }
    if (tokens_.current().is_symbol('(')) tokens_.skip_parentheses();  // a table-valued function
    const std::string alias = read_alias();
    tables_.push_back({table, alias.empty() ? table : alias});
  }

  std::string read_alias() {
    if (tokens_.current().is_word("AS")) tokens_.advance();
    if (!is_name(tokens_.current())) return {};
    std::string alias = tokens_.current().text;
    tokens_.advance();
    return alias;
  }

  SqlTokens tokens_;
  std::vector<FromTable> tables_;
};

}  // namespace

std::vector<FromTable> tables_in(std::string_view from_text) {
  return FromReader(from_text).read();
}

}  // namespace kestrova::standalone
