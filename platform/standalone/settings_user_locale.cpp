#include "platform/standalone/settings_user_locale.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "platform/error.h"
#include "platform/standalone/date_text.h"
#include "platform/text.h"

namespace kestrova {
namespace standalone {

struct LanguageSettings {
  std::string_view language;
  std::string_view decimal_separator;
  // Each of these groups digits; unused places are empty.
  std::array<std::string_view, 3> group_separators;
  std::string_view word_true;
  std::string_view word_false;
};

}  // namespace standalone

namespace {

using standalone::LanguageSettings;

// clang-format off
constexpr std::array<LanguageSettings, 3> kLanguages = {{
    {"DE", ",", {"."}, "Wahr", "Falsch"},
    {"EN", ".", {","}, "True", "False"},
    // French groups by a blank: the plain one, the no-break and the narrow no-break space.
    {"FR", ",", {" ", "\u00A0", "\u202F"}, "Vrai", "Faux"},
}};
// clang-format on

const LanguageSettings& settings_of(std::string_view language) {
  const std::string wanted = text::upper(language);
  const auto found = std::find_if(kLanguages.begin(), kLanguages.end(),
                                  [&](const LanguageSettings& l) { return l.language == wanted; });
  if (found == kLanguages.end()) {
    throw InvalidArgument("There are no regional settings for the language '" +
                          std::string(language) + "'. Known are DE, EN and FR.");
  }
  return *found;
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Cuts text off the front of rest, if it stands there.
bool take(std::string_view& rest, std::string_view text) {
  if (text.empty() || !rest.starts_with(text)) return false;
  rest.remove_prefix(text.size());
  return true;
}

// Moves the digits at the front of rest to the end of result; false when there are none.
bool take_digits(std::string_view& rest, std::string& result) {
  const auto end = std::find_if_not(rest.begin(), rest.end(), is_digit);
  const auto count = static_cast<std::size_t>(end - rest.begin());
  result += rest.substr(0, count);
  rest.remove_prefix(count);
  return count > 0;
}

bool take_group_separator(std::string_view& rest, const LanguageSettings& settings) {
  return std::any_of(settings.group_separators.begin(), settings.group_separators.end(),
                     [&](std::string_view separator) { return take(rest, separator); });
}

// The digits of the whole part with their group separators, which stand between digits only. False
// when the part ends in a separator.
bool take_whole_part(std::string_view& rest, const LanguageSettings& settings,
                     std::string& result) {
  bool ends_in_digit = take_digits(rest, result);
  if (!ends_in_digit) return true;  // ",5" has no whole part
  while (take_group_separator(rest, settings)) ends_in_digit = take_digits(rest, result);
  return ends_in_digit;
}

// The number in the notation of programs ("-1234.5e6"), or nothing.
std::optional<std::string> plain_notation(std::string_view text, const LanguageSettings& settings) {
  std::string_view rest = text::trim(text);
  std::string result;
  if (take(rest, "-")) {
    result = "-";
  } else {
    take(rest, "+");
  }
  const std::size_t sign_length = result.size();
  if (!take_whole_part(rest, settings, result)) return std::nullopt;
  bool has_digits = result.size() > sign_length;
  if (take(rest, settings.decimal_separator)) {
    result += '.';
    has_digits = take_digits(rest, result) || has_digits;
  }
  if (!has_digits) return std::nullopt;
  if (take(rest, "e") || take(rest, "E")) {
    result += 'e';
    if (take(rest, "-")) {
      result += '-';
    } else {
      take(rest, "+");
    }
    if (!take_digits(rest, result)) return std::nullopt;
  }
  if (!rest.empty()) return std::nullopt;
  return result;
}

// A pattern of "0" and at most one ".", read: how many digits stand on either side of the point.
struct NumberPattern {
  std::size_t whole_digits;
  std::size_t fraction_digits;
};

NumberPattern read_pattern(std::string_view pattern) {
  const std::size_t point = std::min(pattern.find('.'), pattern.size());
  const std::string_view whole = pattern.substr(0, point);
  const std::string_view fraction = pattern.substr(std::min(point + 1, pattern.size()));
  if (whole.empty() || whole.find_first_not_of('0') != std::string_view::npos ||
      fraction.find_first_not_of('0') != std::string_view::npos) {
    throw InvalidArgument("'" + std::string(pattern) + "' is no number pattern such as '0.00'.");
  }
  return {whole.size(), fraction.size()};
}

std::string fixed_digits(double number, std::size_t fraction_digits) {
  std::string buffer(330 + fraction_digits, '\0');  // the largest number has 309 digits
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                    std::chars_format::fixed, static_cast<int>(fraction_digits));
  buffer.resize(static_cast<std::size_t>(result.ptr - buffer.data()));
  return buffer;
}

}  // namespace

SettingsUserLocale::SettingsUserLocale(std::string_view language, std::string_view date_order)
    : settings_(settings_of(language)), date_order_(standalone::date_order_of(date_order)) {}

std::optional<double> SettingsUserLocale::to_number(std::string_view text) const {
  const auto plain = plain_notation(text, settings_);
  if (!plain) return std::nullopt;
  double number = 0;
  const auto result = std::from_chars(plain->data(), plain->data() + plain->size(), number);
  if (result.ec != std::errc()) return std::nullopt;  // beyond the range of a number
  return number;
}

std::optional<DateTime> SettingsUserLocale::to_date(std::string_view text) const {
  const auto typed = standalone::read_date(text, date_order_);
  if (!typed) return std::nullopt;
  return typed->date;
}

std::string SettingsUserLocale::format(double number, std::string_view pattern) const {
  const NumberPattern wanted = read_pattern(pattern);
  if (!std::isfinite(number)) throw InvalidArgument("An infinite number cannot be formatted.");
  std::string digits = fixed_digits(std::fabs(number), wanted.fraction_digits);
  const bool is_zero = digits.find_first_not_of("0.") == std::string::npos;
  const std::size_t point = std::min(digits.find('.'), digits.size());
  std::string result = number < 0 && !is_zero ? "-" : "";
  if (point < wanted.whole_digits) result.append(wanted.whole_digits - point, '0');
  result += digits.substr(0, point);
  if (point == digits.size()) return result;
  return result + std::string(settings_.decimal_separator) + digits.substr(point + 1);
}

std::string SettingsUserLocale::format_date(const DateTime& date) const {
  return standalone::shown_date(date, date_order_);
}

std::string SettingsUserLocale::boolean_text(bool value) const {
  return std::string(value ? settings_.word_true : settings_.word_false);
}

}  // namespace kestrova
