// Refuses filters whose values would change the rest of the SQL text. The library inserts values as
// they were typed, so an unclosed quote would swallow the criteria behind it, and a stray ")" would
// lead out of the parentheses that keep the base condition in force: SQL that runs, and selects
// something else.
#pragma once

#include <string_view>

namespace kestrova::tool {

// Raises BadCriterion, naming the record, for a quote or parenthesis without its partner and for
// the beginning of a comment. or_line is skipped.
void check_criteria(std::string_view criteria, std::string_view or_line);

}  // namespace kestrova::tool
