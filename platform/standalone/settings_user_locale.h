// The user's regional settings by language code, without asking the operating system: the same
// input means the same on every computer.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/user_locale.h"

namespace kestrova {

namespace standalone {
struct DateOrder;
struct LanguageSettings;
}  // namespace standalone

class SettingsUserLocale : public UserLocale {
 public:
  // language is "DE", "EN" or "FR" and date_order "DMY", "MDY", "YMD" or "YDM", both in either case
  // of letters. Raises InvalidArgument for any other.
  SettingsUserLocale(std::string_view language, std::string_view date_order);

  // Group separators may stand between any two digits of the whole part, as people are used to be
  // understood: the German "1.5" is 15.
  std::optional<double> to_number(std::string_view text) const override;

  // Day, month and year in the date order, separated by ".", "/" or "-", the year with two or four
  // digits; in every order also dd.mm.yyyy and yyyy-mm-dd. A time hh:mm or hh:mm:ss may follow.
  std::optional<DateTime> to_date(std::string_view text) const override;

  // Raises InvalidArgument for any other pattern than the port describes.
  std::string format(double number, std::string_view pattern) const override;

  // Zero-padded, the year with four digits, separated by "." (DMY), "/" (MDY and YDM) or "-" (YMD).
  std::string format_date(const DateTime& date) const override;

  std::string boolean_text(bool value) const override;

 private:
  const standalone::LanguageSettings& settings_;
  const standalone::DateOrder& date_order_;
};

}  // namespace kestrova
