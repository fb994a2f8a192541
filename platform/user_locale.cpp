#include "platform/user_locale.h"

namespace kestrova {

std::string user_text(const Value& value, const UserLocale& locale) {
  if (const bool* truth = value.get_if<bool>()) return locale.boolean_text(*truth);
  if (const DateTime* date = value.get_if<DateTime>()) return locale.format_date(*date);
  const bool has_fraction = value.get_if<double>() != nullptr || value.get_if<Decimal>() != nullptr;
  const std::string text = value.text();
  return has_fraction ? text::replace_all(text, ".", locale.decimal_separator()) : text;
}

}  // namespace kestrova
