// A line of a session, taken apart: the name of a command and what stands behind it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestrova::tool {

struct CommandText {
  std::string_view name;      // "" for a line that is empty or a comment ("# ...")
  std::string_view argument;  // trimmed; both refer to the line
};

CommandText split_command(std::string_view line);

// The text that an argument means: the argument as it stands, since values hold apostrophes and
// blanks, or what stands between double quotes, where "" means one. Raises UsageError for an open
// quote and for text behind the closing one.
std::string unquoted_argument(std::string_view argument);

// Whole numbers between blanks, exactly count of them. Raises UsageError.
std::vector<int> number_arguments(std::string_view argument, std::size_t count);

// "on" or "off". Raises UsageError.
bool switch_argument(std::string_view argument);

}  // namespace kestrova::tool
