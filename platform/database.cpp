#include "platform/database.h"

#include <charconv>
#include <cmath>
#include <optional>

#include "platform/error.h"
#include "platform/text.h"

namespace kestrova {
namespace {

[[noreturn]] void reject(std::string_view criterion) {
  throw BadCriterion("The search criterion cannot be read: " + std::string(criterion));
}

bool is_column_name(std::string_view name) {
  return !name.empty() && name.find_first_of(" '=<>") == std::string_view::npos;
}

std::optional<double> to_number(std::string_view digits) {
  double number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool all_read = result.ptr == digits.data() + digits.size();
  // The words for infinity and for no number would be read, too.
  if (result.ec != std::errc() || !all_read || !std::isfinite(number)) return std::nullopt;
  return number;
}

std::string_view without_trailing_blanks(std::string_view s) {
  return s.substr(0, s.find_last_not_of(' ') + 1);
}

}  // namespace

FindCriterion parse_find_criterion(std::string_view criterion) {
  const std::size_t equals = criterion.find('=');
  if (equals == std::string_view::npos) reject(criterion);
  FindCriterion result;
  result.column = text::trim(criterion.substr(0, equals));
  const std::string_view operand = text::trim(criterion.substr(equals + 1));
  if (!is_column_name(result.column)) reject(criterion);
  if (operand.size() >= 2 && operand.front() == '\'' && operand.back() == '\'') {
    result.operand = operand.substr(1, operand.size() - 2);
    if (result.operand.find('\'') != std::string::npos) reject(criterion);
  } else {
    if (!to_number(operand)) reject(criterion);
    result.operand = operand;
    result.is_number = true;
  }
  return result;
}

bool meets(const FindCriterion& criterion, const Value& value) {
  if (value.is_null()) return false;
  const std::string text = value.text();
  if (criterion.is_number) {
    const auto number = to_number(text);
    return number && *number == to_number(criterion.operand);
  }
  return text::equal_ignoring_case(without_trailing_blanks(text),
                                   without_trailing_blanks(criterion.operand));
}

}  // namespace kestrova
