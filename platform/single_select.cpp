#include "platform/single_select.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/error.h"
#include "platform/sql_text.h"
#include "platform/text.h"

namespace kestrova {
namespace {

constexpr std::string_view kBlanks = " \t\r\n\v\f";
constexpr std::string_view kOperators = ",.+-*/%=<>!&|^~:";
constexpr std::size_t kNotClosed = std::string_view::npos;

enum class Meaning {
  kNone,  // a name, or a word without a part in this
  kSelect,
  kUnites,       // a SELECT may follow
  kAll,          // behind UNION as if it were not there, else as the next
  kBeforeQuery,  // a query in parentheses may follow
  kCase,
  kEnd,
  kRefused
};

struct WordRow {
  std::string_view word;
  Meaning meaning;
};

// clang-format off
// All words are reserved on the server, but for APPLY.
constexpr std::array kWords = {
    WordRow{"SELECT", Meaning::kSelect},
    WordRow{"UNION", Meaning::kUnites}, WordRow{"EXCEPT", Meaning::kUnites}, WordRow{"INTERSECT", Meaning::kUnites},
    WordRow{"ALL", Meaning::kAll},
    WordRow{"CASE", Meaning::kCase}, WordRow{"END", Meaning::kEnd},

    WordRow{"AND", Meaning::kBeforeQuery}, WordRow{"ANY", Meaning::kBeforeQuery}, WordRow{"APPLY", Meaning::kBeforeQuery},
    WordRow{"BETWEEN", Meaning::kBeforeQuery}, WordRow{"BY", Meaning::kBeforeQuery}, WordRow{"DISTINCT", Meaning::kBeforeQuery},
    WordRow{"ELSE", Meaning::kBeforeQuery}, WordRow{"EXISTS", Meaning::kBeforeQuery}, WordRow{"FROM", Meaning::kBeforeQuery},
    WordRow{"HAVING", Meaning::kBeforeQuery}, WordRow{"IN", Meaning::kBeforeQuery}, WordRow{"JOIN", Meaning::kBeforeQuery},
    WordRow{"LIKE", Meaning::kBeforeQuery}, WordRow{"NOT", Meaning::kBeforeQuery}, WordRow{"ON", Meaning::kBeforeQuery},
    WordRow{"OR", Meaning::kBeforeQuery}, WordRow{"SOME", Meaning::kBeforeQuery}, WordRow{"THEN", Meaning::kBeforeQuery},
    WordRow{"WHEN", Meaning::kBeforeQuery}, WordRow{"WHERE", Meaning::kBeforeQuery},

    // Rows and definitions.
    WordRow{"ADD", Meaning::kRefused}, WordRow{"ALTER", Meaning::kRefused}, WordRow{"BULK", Meaning::kRefused},
    WordRow{"CREATE", Meaning::kRefused}, WordRow{"DELETE", Meaning::kRefused}, WordRow{"DROP", Meaning::kRefused},
    WordRow{"INSERT", Meaning::kRefused}, WordRow{"INTO", Meaning::kRefused}, WordRow{"MERGE", Meaning::kRefused},
    WordRow{"READTEXT", Meaning::kRefused}, WordRow{"TRIGGER", Meaning::kRefused}, WordRow{"TRUNCATE", Meaning::kRefused},
    WordRow{"UPDATE", Meaning::kRefused}, WordRow{"UPDATETEXT", Meaning::kRefused}, WordRow{"WRITETEXT", Meaning::kRefused},
    // Programs.
    WordRow{"BEGIN", Meaning::kRefused}, WordRow{"BREAK", Meaning::kRefused}, WordRow{"CLOSE", Meaning::kRefused},
    WordRow{"CONTINUE", Meaning::kRefused}, WordRow{"DEALLOCATE", Meaning::kRefused}, WordRow{"DECLARE", Meaning::kRefused},
    WordRow{"EXEC", Meaning::kRefused}, WordRow{"EXECUTE", Meaning::kRefused}, WordRow{"FETCH", Meaning::kRefused},
    WordRow{"GOTO", Meaning::kRefused}, WordRow{"IF", Meaning::kRefused}, WordRow{"OPEN", Meaning::kRefused},
    WordRow{"PRINT", Meaning::kRefused}, WordRow{"RAISERROR", Meaning::kRefused}, WordRow{"RETURN", Meaning::kRefused},
    WordRow{"WAITFOR", Meaning::kRefused}, WordRow{"WHILE", Meaning::kRefused},
    // The session and its transaction.
    WordRow{"COMMIT", Meaning::kRefused}, WordRow{"LINENO", Meaning::kRefused}, WordRow{"REVERT", Meaning::kRefused},
    WordRow{"ROLLBACK", Meaning::kRefused}, WordRow{"SAVE", Meaning::kRefused}, WordRow{"SET", Meaning::kRefused},
    WordRow{"SETUSER", Meaning::kRefused}, WordRow{"USE", Meaning::kRefused},
    // The server and its rights.
    WordRow{"BACKUP", Meaning::kRefused}, WordRow{"CHECKPOINT", Meaning::kRefused}, WordRow{"DBCC", Meaning::kRefused},
    WordRow{"DENY", Meaning::kRefused}, WordRow{"DISK", Meaning::kRefused}, WordRow{"DUMP", Meaning::kRefused},
    WordRow{"GRANT", Meaning::kRefused}, WordRow{"KILL", Meaning::kRefused}, WordRow{"LOAD", Meaning::kRefused},
    WordRow{"RECONFIGURE", Meaning::kRefused}, WordRow{"RESTORE", Meaning::kRefused}, WordRow{"REVOKE", Meaning::kRefused},
    WordRow{"SHUTDOWN", Meaning::kRefused},
    // Texts that run elsewhere.
    WordRow{"OPENDATASOURCE", Meaning::kRefused}, WordRow{"OPENQUERY", Meaning::kRefused}, WordRow{"OPENROWSET", Meaning::kRefused},
};
// clang-format on

// Short words first: a length is compared faster than letters.
constexpr bool by_word(const WordRow& a, const WordRow& b) {
  return a.word.size() != b.word.size() ? a.word.size() < b.word.size() : a.word < b.word;
}

constexpr auto kSortedWords = [] {
  auto sorted = kWords;
  std::sort(sorted.begin(), sorted.end(), by_word);
  return sorted;
}();

static_assert(std::adjacent_find(kSortedWords.begin(), kSortedWords.end(),
                                 [](const WordRow& a, const WordRow& b) {
                                   return a.word == b.word;
                                 }) == kSortedWords.end(),
              "a word stands twice");

constexpr std::size_t kLongestWord = kSortedWords.back().word.size();

Meaning meaning_of(std::string_view word) {
  if (word.size() > kLongestWord) return Meaning::kNone;
  std::array<char, kLongestWord> upper{};
  std::transform(word.begin(), word.end(), upper.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  const WordRow wanted{{upper.data(), word.size()}, Meaning::kNone};
  const auto* const row =
      std::lower_bound(kSortedWords.begin(), kSortedWords.end(), wanted, by_word);
  return row != kSortedWords.end() && row->word == wanted.word ? row->meaning : Meaning::kNone;
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// How many bytes a character of a word has, by its first one; 0 for what is no part of a word.
// Beyond ASCII these are the letters of Latin, Greek and Cyrillic script: what else is there may be
// a blank to the server, and part a word that is one here.
constexpr auto kWordCharacters = [] {
  std::array<std::uint8_t, 256> bytes{};
  for (const char c : std::string_view("0123456789_#@$")) bytes[static_cast<std::uint8_t>(c)] = 1;
  for (std::size_t c = 'A'; c <= 'Z'; ++c) bytes[c] = bytes[c - 'A' + 'a'] = 1;
  for (std::size_t c = 0xC3; c <= 0xC9; ++c) bytes[c] = 2;
  for (std::size_t c = 0xCE; c <= 0xD3; ++c) bytes[c] = 2;
  return bytes;
}();

std::size_t word_character(std::string_view sql, std::size_t at) {
  if (at >= sql.size()) return 0;
  const std::size_t length = kWordCharacters[static_cast<std::uint8_t>(sql[at])];
  if (length < 2) return length;
  const bool is_whole = at + 1 < sql.size() && (static_cast<std::uint8_t>(sql[at + 1]) >> 6U) == 2;
  return is_whole ? 2 : 0;
}

std::size_t end_of_word(std::string_view sql, std::size_t at) {
  while (const std::size_t length = word_character(sql, at)) at += length;
  return at;
}

// A number takes the letters behind it along, which the server may read as a word of their own:
// "1DELETE", "0xUPDATE", "1.eDROP".
std::size_t end_of_number(std::string_view sql, std::size_t at) {
  for (;;) {
    at = end_of_word(sql, at);
    if (at >= sql.size() || sql[at] != '.') return at;
    ++at;
  }
}

class SelectReader {
 public:
  explicit SelectReader(std::string_view sql) : sql_(sql) {}

  void read() {
    while ((at_ = sql_.find_first_not_of(kBlanks, at_)) != std::string_view::npos) read_token();
    at_ = sql_.size();
    if (!has_select_) refuse("the end before a SELECT");
    if (!nesting_.empty()) refuse("the end before a closing parenthesis or END");
  }

 private:
  enum class Token { kStart, kOpening, kUniting, kBeforeOperand, kName, kOperand };

  void read_token() {
    const char c = sql_[at_];
    if (has_ended_) refuse("what follows \";\"");
    if (begins_comment(sql_, at_)) return skip_comment();
    if (c == '(') return open_parenthesis();
    if (is_digit(c) || c == '$') return read_number();
    if (word_character(sql_, at_) > 0) return read_word();
    if (!has_select_) refuse("what stands before SELECT");
    if (c == '\'' || c == '"' || c == '[') return read_quoted();
    if (c == ')') return close_parenthesis();
    if (c != ';' && kOperators.find(c) == std::string_view::npos)
      refuse("a character that is none of SQL's");
    has_ended_ = c == ';';
    accept(Token::kBeforeOperand, at_ + 1);
  }

  void skip_comment() {
    if (sql_[at_] == '-') refuse("the comment mark --");
    const std::size_t end = end_of_comment(sql_, at_);
    if (end == kNotClosed) refuse("a comment that is not closed");
    if (sql_.substr(at_ + 2, end - at_ - 4).find("/*") != std::string_view::npos) {
      refuse("a comment in a comment");
    }
    at_ = end;
  }

  void read_quoted() {
    const std::size_t end = end_of_quoted(sql_, at_);
    if (end == kNotClosed) refuse("a quote that is not closed");
    accept(sql_[at_] == '\'' ? Token::kOperand : Token::kName, end);
  }

  void read_number() {
    const std::size_t end = end_of_number(sql_, at_);
    const std::size_t longest = std::min(end - at_, kLongestWord);
    for (std::size_t length = longest; length > 0; --length) {
      const Meaning meaning = meaning_of(sql_.substr(end - length, length));
      if (meaning == Meaning::kRefused || meaning == Meaning::kSelect) {
        refuse_word(end - length, end);
      }
    }
    if (!has_select_) refuse("what stands before SELECT");
    accept(Token::kOperand, end);
  }

  void read_word() {
    const std::size_t end = end_of_word(sql_, at_);
    const Meaning meaning = meaning_of(sql_.substr(at_, end - at_));
    if (meaning == Meaning::kRefused) refuse_word(at_, end);
    if (meaning == Meaning::kSelect) return read_select(end);
    if (!has_select_) refuse("what stands before SELECT");
    switch (meaning) {
      case Meaning::kUnites:
        return accept(Token::kUniting, end);
      case Meaning::kAll:
        return accept(last_ == Token::kUniting ? Token::kUniting : Token::kBeforeOperand, end);
      case Meaning::kCase:
        nesting_ += 'C';
        return accept(Token::kBeforeOperand, end);
      case Meaning::kEnd:
        close('C');
        return accept(Token::kOperand, end);
      case Meaning::kBeforeQuery:
        return accept(Token::kBeforeOperand, end);
      default:
        return accept(Token::kName, end);
    }
  }

  void read_select(std::size_t end) {
    const bool may_stand_here =
        !has_select_ || last_ == Token::kUniting || (last_ == Token::kOpening && holds_query_);
    if (!may_stand_here) refuse("a second SELECT");
    has_select_ = true;
    accept(Token::kBeforeOperand, end);
  }

  // "(SELECT" behind a name or a value is a statement of its own, while between a function and its
  // arguments another parenthesis follows.
  void open_parenthesis() {
    holds_query_ = last_ == Token::kOpening ? holds_query_ || last_was_name_
                                            : last_ != Token::kName && last_ != Token::kOperand;
    last_was_name_ = last_ == Token::kName;
    nesting_ += '(';
    accept(Token::kOpening, at_ + 1);
  }

  void close_parenthesis() {
    close('(');
    accept(Token::kOperand, at_ + 1);
  }

  void close(char opened) {
    if (nesting_.empty() || nesting_.back() != opened) {
      refuse("a closing parenthesis or END that closes nothing");
    }
    nesting_.pop_back();
  }

  void accept(Token token, std::size_t end) {
    last_ = token;
    at_ = end;
  }

  [[noreturn]] void refuse_word(std::size_t begin, std::size_t end) {
    at_ = begin;
    refuse("the word " + text::upper(sql_.substr(begin, end - begin)));
  }

  [[noreturn]] void refuse(const std::string& what) const {
    throw DatabaseError("Only one SELECT can be opened; refused is " + what + " at position " +
                            std::to_string(text::length(sql_.substr(0, at_)) + 1) + ".",
                        "42000");
  }

  std::string_view sql_;
  std::size_t at_ = 0;
  Token last_ = Token::kStart;
  bool has_select_ = false;
  bool has_ended_ = false;
  bool holds_query_ = false;    // the parenthesis opened last may begin with SELECT
  bool last_was_name_ = false;  // it stands behind a name
  std::string nesting_;         // '(' and 'C' for CASE, the innermost last
};

bool is_plain_name(std::string_view source) {
  constexpr std::string_view kNoNameBegins = "'@$";
  std::size_t at = 0;
  for (;;) {
    if (at >= source.size() || is_digit(source[at])) return false;
    if (kNoNameBegins.find(source[at]) != std::string_view::npos) return false;
    std::size_t end = end_of_quoted(source, at);
    if (end == kNotClosed) return false;
    if (end == at) end = end_of_word(source, at);
    if (end == source.size()) return true;
    if (source[end] != '.') return false;
    at = end + 1;
  }
}

}  // namespace

std::string single_select(std::string_view source) {
  std::string query(source);
  if (source.find_first_of(kBlanks) == std::string_view::npos) {
    if (!is_plain_name(source)) {
      throw DatabaseError("A table can be opened by its plain name only.", "42000");
    }
    query = "SELECT * FROM " + query;
  }
  SelectReader(query).read();
  return query;
}

}  // namespace kestrova
