// Which tables stand in a FROM text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestrova::standalone {

// A table of a FROM text, in upper case: the table itself without its schema ("" for a sub-select),
// and the name under which conditions refer to it, which is its alias where one is given.
struct FromTable {
  std::string table;
  std::string name;

  friend bool operator==(const FromTable&, const FromTable&) = default;
};

// The tables in table position: at the start, behind JOIN, APPLY or a comma, and inside the
// parentheses of a join group. A name in an ON condition, in a text literal or in a sub-select is
// none. Also reads the fragment of a FROM text that begins with JOIN words.
std::vector<FromTable> tables_in(std::string_view from_text);

}  // namespace kestrova::standalone
