// Whether an SQL text ends where it seems to end: read anew here, so that the tests do not ask the
// code that they test.
#pragma once

#include <string>
#include <string_view>

namespace kestrova::test {

// A text that the server would read beyond its end, or that leaves the parentheses around it: a
// quote or bracket that is not closed, a parenthesis without its partner, a comment mark or a ";"
// outside quotes.
bool is_open(std::string_view sql);

// The text without these characters where they stand outside quotes.
std::string without_outer(std::string_view sql, std::string_view characters = " ");

// A control character, or bytes that are no UTF-8.
bool is_unprintable(std::string_view text);

}  // namespace kestrova::test
