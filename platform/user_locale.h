// The user's regional settings, as far as the library depends on them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/date_time.h"
#include "platform/text.h"
#include "platform/value.h"

namespace kestrova {

class UserLocale {
 public:
  virtual ~UserLocale() = default;

  // The number that the user wrote, or nothing when the text is no number. Accepted: blanks around
  // it, one leading sign, digits with the locale's group separators anywhere among the digits of
  // the whole part, one decimal separator, and an exponent. (So "1.5" is a number in German too,
  // where "." groups digits.)
  virtual std::optional<double> to_number(std::string_view text) const = 0;

  // The date that the user wrote, or nothing when the text is no date.
  virtual std::optional<DateTime> to_date(std::string_view text) const = 0;

  // A number by a pattern made of "0" and at most one ".", for example "0.0" or "00.00": as many
  // digits behind the separator as the pattern has, at least as many before it.
  virtual std::string format(double number, std::string_view pattern) const = 0;

  // A date in the user's order, with the time of day behind it unless it is midnight. to_date reads
  // it back.
  virtual std::string format_date(const DateTime& date) const = 0;

  // The words for a boolean as text: "True"/"False", "Wahr"/"Falsch", "Vrai"/"Faux".
  virtual std::string boolean_text(bool value) const = 0;

  bool is_numeric(std::string_view text) const { return to_number(text).has_value(); }

  // The character between whole part and fraction ("," in German, "." in English): what the user's
  // settings put into 0 with one decimal.
  std::string decimal_separator() const { return std::string(text::mid(format(0, "0.0"), 2, 1)); }

 protected:
  UserLocale() = default;
};

// A value as the user reads it: the word for a boolean, a date in the user's order, a number with
// the user's decimal separator; any other value as Value::text. Raises InvalidUseOfNull for NULL.
std::string user_text(const Value& value, const UserLocale& locale);

}  // namespace kestrova
