// How the fixed tables test a relation code.
#pragma once

#include <string_view>

#include "platform/text.h"

namespace kestrova {

enum class Match {
  kExact,          // the whole code; "#" in it stands for one digit from 1 to 8
  kPrefix,         // the code begins with it, case included
  kPrefixAnyCase,  // the upper-cased code begins with it
};

struct CodeTest {
  Match match;
  std::string_view code;
};

constexpr CodeTest exact(std::string_view code) { return {Match::kExact, code}; }
constexpr CodeTest prefix(std::string_view code) { return {Match::kPrefix, code}; }
constexpr CodeTest prefix_any_case(std::string_view code) { return {Match::kPrefixAnyCase, code}; }

// The numbered groups always run from 1 to 8.
constexpr bool is_run_digit(char c) { return c >= '1' && c <= '8'; }

constexpr bool equals_code(std::string_view pattern, std::string_view code) {
  if (pattern.size() != code.size()) return false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] == '#' ? !is_run_digit(code[i]) : pattern[i] != code[i]) return false;
  }
  return true;
}

inline bool matches(const CodeTest& test, std::string_view code) {
  switch (test.match) {
    case Match::kExact:
      return equals_code(test.code, code);
    case Match::kPrefix:
      return code.starts_with(test.code);
    case Match::kPrefixAnyCase:
      return text::starts_with_ignoring_case(code, test.code);
  }
  return false;
}

// Whether some code could meet both tests: for checking the tables at compile time. Prefixes that
// differ only in how they compare count as overlapping; two exact codes are compared with their
// runs, an exact code and a prefix are allowed to overlap (the exact row is tested first).
constexpr bool overlap(const CodeTest& a, const CodeTest& b) {
  const bool exact_a = a.match == Match::kExact;
  const bool exact_b = b.match == Match::kExact;
  if (exact_a && exact_b) {
    return a.code == b.code || equals_code(a.code, b.code) || equals_code(b.code, a.code);
  }
  if (exact_a != exact_b) return false;
  return a.code.starts_with(b.code) || b.code.starts_with(a.code);
}

// Whether no two rows of a table overlap, where code_of answers the test of a row.
template <class Table, class CodeOf>
constexpr bool rows_are_distinct(const Table& table, CodeOf code_of) {
  for (std::size_t i = 0; i < table.size(); ++i) {
    for (std::size_t j = i + 1; j < table.size(); ++j) {
      if (overlap(code_of(table[i]), code_of(table[j]))) return false;
    }
  }
  return true;
}

}  // namespace kestrova
