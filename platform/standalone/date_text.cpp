#include "platform/standalone/date_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "platform/error.h"
#include "platform/text.h"

namespace kestrova::standalone {
namespace {

// clang-format off
constexpr std::array<DateOrder, 4> kDateOrders = {{
    {"DMY", 0, 1, 2, '.'},
    {"MDY", 1, 0, 2, '/'},
    {"YMD", 2, 1, 0, '-'},
    {"YDM", 1, 2, 0, '/'},  // with "-" it would read as yyyy-mm-dd
}};
// clang-format on
constexpr const DateOrder& kDayMonthYear = kDateOrders[0];
constexpr const DateOrder& kYearMonthDay = kDateOrders[2];

// A run of digits as it was written: the number of digits tells a two-digit year from others.
struct Digits {
  int value = 0;
  std::size_t count = 0;
};

// The digits of a text that holds one to four of them and nothing else.
std::optional<Digits> read_digits(std::string_view s) {
  if (s.empty() || s.size() > 4) return std::nullopt;
  Digits digits{0, s.size()};
  for (const char c : s) {
    if (c < '0' || c > '9') return std::nullopt;
    digits.value = digits.value * 10 + (c - '0');
  }
  return digits;
}

std::optional<std::vector<Digits>> read_parts(std::string_view s, char separator) {
  std::vector<Digits> parts;
  for (const std::string_view piece : text::split(s, separator)) {
    const auto digits = read_digits(piece);
    if (!digits) return std::nullopt;
    parts.push_back(*digits);
  }
  return parts;
}

bool have_lengths(const std::vector<Digits>& parts, std::size_t first, std::size_t second,
                  std::size_t third) {
  return parts[0].count == first && parts[1].count == second && parts[2].count == third;
}

// The order in which three parts are meant. Two forms are the same for every user: yyyy-mm-dd, and
// dd.mm.yyyy, in which filters are stored: it must mean the same day when it is read again.
const DateOrder& order_of(const std::vector<Digits>& parts, char separator,
                          const DateOrder& users_order) {
  if (separator == '-' && have_lengths(parts, 4, 2, 2)) return kYearMonthDay;
  if (separator == '.' && have_lengths(parts, 2, 2, 4)) return kDayMonthYear;
  return users_order;
}

std::optional<DateTime> read_day(std::string_view s, const DateOrder& order) {
  const std::size_t at = s.find_first_of("./-");
  if (at == std::string_view::npos) return std::nullopt;
  const auto parts = read_parts(s, s[at]);
  if (!parts || parts->size() != 3) return std::nullopt;
  const DateOrder& used = order_of(*parts, s[at], order);
  const auto part = [&](int position) { return (*parts)[static_cast<std::size_t>(position)]; };
  const Digits year = part(used.year);
  if (part(used.day).count > 2 || part(used.month).count > 2) return std::nullopt;
  if (year.count != 2 && year.count != 4) return std::nullopt;
  DateTime result{};
  result.year = year.count == 2 ? full_year(year.value) : year.value;
  result.month = part(used.month).value;
  result.day = part(used.day).value;
  if (!is_valid_date(result.year, result.month, result.day)) return std::nullopt;
  return result;
}

// Puts a time of day into the date; false when the text is none.
bool read_time(std::string_view s, TypedDate& typed) {
  const auto parts = read_parts(s, ':');
  if (!parts || parts->size() < 2 || parts->size() > 3) return false;
  const bool too_long =
      std::any_of(parts->begin(), parts->end(), [](const Digits& d) { return d.count > 2; });
  const int second = parts->size() == 3 ? parts->back().value : 0;
  if (too_long || (*parts)[0].value > 23 || (*parts)[1].value > 59 || second > 59) return false;
  typed.date.hour = (*parts)[0].value;
  typed.date.minute = (*parts)[1].value;
  typed.date.second = second;
  typed.time = parts->size() == 3 ? TimePart::kSeconds : TimePart::kMinutes;
  return true;
}

std::string two_digits(char before, int number) {
  char text[16];
  std::snprintf(text, sizeof text, "%c%02d", before, number);
  return text;
}

}  // namespace

const DateOrder& date_order_of(std::string_view name) {
  const std::string wanted = text::upper(name);
  const auto order = std::find_if(kDateOrders.begin(), kDateOrders.end(),
                                  [&](const DateOrder& o) { return o.name == wanted; });
  if (order == kDateOrders.end()) {
    throw InvalidArgument("'" + std::string(name) +
                          "' is no date order. Known are DMY, MDY, YMD and YDM.");
  }
  return *order;
}

std::optional<TypedDate> read_date(std::string_view typed, const DateOrder& order) {
  const std::string_view all = text::trim(typed);
  const std::size_t blank = all.find(' ');
  const auto day = read_day(all.substr(0, blank), order);
  if (!day) return std::nullopt;
  TypedDate result;
  result.date = *day;
  if (blank == std::string_view::npos) return result;
  if (!read_time(text::trim(all.substr(blank)), result)) return std::nullopt;
  return result;
}

std::string shown_date(const DateTime& date, const DateOrder& order) {
  std::array<std::string, 3> parts;
  const auto place = [&parts](int position) -> std::string& {
    return parts[static_cast<std::size_t>(position)];
  };
  const std::string dmy = format_dmy(date);
  place(order.day) = dmy.substr(0, 2);
  place(order.month) = dmy.substr(3, 2);
  place(order.year) = dmy.substr(6);
  std::string result = parts[0] + order.separator + parts[1] + order.separator + parts[2];
  if (date.hour == 0 && date.minute == 0 && date.second == 0) return result;
  result += two_digits(' ', date.hour) + two_digits(':', date.minute);
  return date.second == 0 ? result : result + two_digits(':', date.second);
}

std::string server_text(const TypedDate& typed) {
  std::string result = format_dmy(typed.date);
  if (typed.time == TimePart::kNone) return result;
  result += two_digits(' ', typed.date.hour) + two_digits(':', typed.date.minute);
  if (typed.time == TimePart::kSeconds) result += two_digits(':', typed.date.second);
  return result;
}

std::string server_text(const DateTime& date) {
  const bool midnight =
      date.hour == 0 && date.minute == 0 && date.second == 0 && date.nanosecond == 0;
  std::string result =
      server_text(TypedDate{date, midnight ? TimePart::kNone : TimePart::kSeconds});
  if (date.nanosecond == 0) return result;
  char milliseconds[16];
  std::snprintf(milliseconds, sizeof milliseconds, ".%03d",
                static_cast<int>(date.nanosecond / 1'000'000));
  return result + milliseconds;
}

}  // namespace kestrova::standalone
