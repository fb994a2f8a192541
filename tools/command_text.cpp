#include "tools/command_text.h"

#include <algorithm>
#include <limits>

#include "platform/text.h"
#include "tools/options.h"

namespace kestrova::tool {
namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view trim_blanks(std::string_view s) {
  const std::size_t begin = std::min(s.find_first_not_of(kBlanks), s.size());
  const std::size_t end = s.find_last_not_of(kBlanks);
  return end == std::string_view::npos ? std::string_view() : s.substr(begin, end + 1 - begin);
}

int whole_number(std::string_view word) {
  const auto number = text::to_integer(word);
  if (!number || *number < std::numeric_limits<int>::min() ||
      *number > std::numeric_limits<int>::max()) {
    throw UsageError("'" + std::string(word) + "' is no number");
  }
  return static_cast<int>(*number);
}

}  // namespace

CommandText split_command(std::string_view line) {
  line = trim_blanks(line);
  if (line.starts_with('#')) return {};
  const std::size_t end = std::min(line.find_first_of(kBlanks), line.size());
  return {line.substr(0, end), trim_blanks(line.substr(end))};
}

std::string unquoted_argument(std::string_view argument) {
  constexpr char kQuote = '"';
  if (!argument.starts_with(kQuote)) return std::string(argument);
  std::string result;
  for (std::size_t i = 1; i < argument.size(); ++i) {
    if (argument[i] != kQuote) {
      result += argument[i];
    } else if (i + 1 < argument.size() && argument[i + 1] == kQuote) {
      result += kQuote;
      ++i;
    } else if (i + 1 == argument.size()) {
      return result;
    } else {
      throw UsageError("there is text behind the closing quote: " +
                       std::string(argument.substr(i + 1)));
    }
  }
  throw UsageError("the closing quote is missing: " + std::string(argument));
}

std::vector<int> number_arguments(std::string_view argument, std::size_t count) {
  std::vector<int> numbers;
  for (CommandText rest = split_command(argument); !rest.name.empty();
       rest = split_command(rest.argument)) {
    numbers.push_back(whole_number(rest.name));
  }
  if (numbers.size() != count) {
    throw UsageError(count == 1 ? "it takes one number"
                                : "it takes " + std::to_string(count) + " numbers");
  }
  return numbers;
}

bool switch_argument(std::string_view argument) {
  if (argument == "on") return true;
  if (argument == "off") return false;
  throw UsageError("'" + std::string(argument) + "' is neither 'on' nor 'off'");
}

}  // namespace kestrova::tool
