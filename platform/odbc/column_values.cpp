#include "platform/odbc/column_values.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "platform/error.h"
#include "platform/odbc/utf16.h"
#include "platform/text.h"

namespace kestrova::odbc {
namespace {

constexpr int kMostFractionDigits = 9;

// A structure of ODBC, from a buffer that need not be aligned.
template <class T>
T read(const std::byte* data) {
  T result;
  std::memcpy(&result, data, sizeof result);
  return result;
}

DateTime checked(const DateTime& value) {
  if (!is_valid_date(value.year, value.month, value.day)) {
    throw DatabaseError("A date of the result lies outside the years 1 to 9999.", "22008");
  }
  return value;
}

DateTime from_date(const SQL_DATE_STRUCT& date) {
  return checked({date.year, date.month, date.day, 0, 0, 0, 0});
}

DateTime from_timestamp(const SQL_TIMESTAMP_STRUCT& t) {
  return checked(
      {t.year, t.month, t.day, t.hour, t.minute, t.second, static_cast<std::int32_t>(t.fraction)});
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

std::size_t count_digits(std::string_view s) {
  return static_cast<std::size_t>(std::find_if_not(s.begin(), s.end(), is_digit) - s.begin());
}

// Takes exactly so many digits and then, unless it is 0, the separator.
std::optional<int> take_number(std::string_view& s, std::size_t digits, char separator) {
  int number = 0;
  if (s.size() < digits || count_digits(s.substr(0, digits)) != digits) return std::nullopt;
  std::from_chars(s.data(), s.data() + digits, number);
  s.remove_prefix(digits);
  if (separator == 0) return number;
  if (!s.starts_with(separator)) return std::nullopt;
  s.remove_prefix(1);
  return number;
}

std::optional<std::int32_t> take_fraction(std::string_view& s) {
  if (!s.starts_with('.')) return 0;
  s.remove_prefix(1);
  const std::size_t digits = count_digits(s);
  if (digits == 0 || digits > kMostFractionDigits) return std::nullopt;
  std::string nanoseconds(s.substr(0, digits));
  nanoseconds.resize(kMostFractionDigits, '0');
  s.remove_prefix(digits);
  return std::stoi(nanoseconds);
}

// Takes "13:45:10.25" into the value.
bool take_time(std::string_view& s, DateTime& value) {
  const auto hour = take_number(s, 2, ':');
  const auto minute = hour ? take_number(s, 2, ':') : std::nullopt;
  const auto second = minute ? take_number(s, 2, 0) : std::nullopt;
  const auto nanosecond = second ? take_fraction(s) : std::nullopt;
  if (!nanosecond || *hour > 23 || *minute > 59 || *second > 59) return false;
  value.hour = *hour;
  value.minute = *minute;
  value.second = *second;
  value.nanosecond = *nanosecond;
  return true;
}

// " +01:00", with or without the blank, or nothing.
bool is_offset(std::string_view s) {
  s = text::trim(s);
  if (s.empty()) return true;
  if (!s.starts_with('+') && !s.starts_with('-')) return false;
  s.remove_prefix(1);
  return take_number(s, 2, ':') && take_number(s, 2, 0) && s.empty();
}

std::string utf8_text(const std::byte* data, std::size_t length) {
  const std::size_t count = length / sizeof(char16_t);
  const auto unit = [data](std::size_t i) { return read<char16_t>(data + i * sizeof(char16_t)); };
  unsigned bits = 0;
  for (std::size_t i = 0; i < count; ++i) bits |= unit(i);
  if (bits < 0x80) {  // most texts are ASCII
    std::string ascii(count, '\0');
    for (std::size_t i = 0; i < count; ++i) ascii[i] = static_cast<char>(unit(i));
    return ascii;
  }
  std::u16string units(count, u'\0');
  std::memcpy(units.data(), data, count * sizeof(char16_t));
  return to_utf8(units);
}

// A text of the database's own form where ODBC has no structure; it stays a text when it has
// another form.
Value date_or_text(std::optional<DateTime> value, std::string_view text) {
  return value ? Value(*value) : Value(text);
}

}  // namespace

SQLSMALLINT c_type(ReadAs read_as) {
  switch (read_as) {
    case ReadAs::kBit:
      return SQL_C_BIT;
    case ReadAs::kInteger:
      return SQL_C_SBIGINT;
    case ReadAs::kDouble:
      return SQL_C_DOUBLE;
    case ReadAs::kText:
      return SQL_C_WCHAR;
    case ReadAs::kBytes:
      return SQL_C_BINARY;
    case ReadAs::kDate:
      return SQL_C_TYPE_DATE;
    case ReadAs::kTimestamp:
      return SQL_C_TYPE_TIMESTAMP;
    default:
      return SQL_C_CHAR;
  }
}

std::size_t buffer_size(ReadAs read_as, std::size_t size) {
  constexpr std::size_t kDigitsOfAnyNumber = 44;  // 38 digits, sign, point, terminator
  constexpr std::size_t kDateTimeText = 40;       // "2024-02-29 13:45:10.1234567 +01:00"
  switch (read_as) {
    case ReadAs::kBit:
      return 1;
    case ReadAs::kInteger:
      return sizeof(SQLBIGINT);
    case ReadAs::kDouble:
      return sizeof(SQLDOUBLE);
    case ReadAs::kDecimal:
      return std::max(size + 4, kDigitsOfAnyNumber);
    case ReadAs::kText:
      return (size + 1) * sizeof(SQLWCHAR);
    case ReadAs::kBytes:
      return std::max<std::size_t>(size, 1);
    case ReadAs::kDate:
      return sizeof(SQL_DATE_STRUCT);
    case ReadAs::kTimestamp:
      return sizeof(SQL_TIMESTAMP_STRUCT);
    default:
      return kDateTimeText;
  }
}

std::size_t terminator_size(ReadAs read_as) {
  switch (c_type(read_as)) {
    case SQL_C_WCHAR:
      return sizeof(SQLWCHAR);
    case SQL_C_CHAR:
      return sizeof(SQLCHAR);
    default:
      return 0;
  }
}

Value to_value(ReadAs read_as, const std::byte* data, std::size_t length) {
  const auto narrow_text = [&] {
    return std::string_view(reinterpret_cast<const char*>(data), length);
  };
  switch (read_as) {
    case ReadAs::kBit:
      return *data != std::byte{0};
    case ReadAs::kInteger:
      return static_cast<std::int64_t>(read<SQLBIGINT>(data));
    case ReadAs::kDouble:
      return read<SQLDOUBLE>(data);
    case ReadAs::kDecimal:
      return decimal_value(narrow_text());
    case ReadAs::kText:
      return utf8_text(data, length);
    case ReadAs::kBytes:
      return Bytes(data, data + length);
    case ReadAs::kDate:
      return from_date(read<SQL_DATE_STRUCT>(data));
    case ReadAs::kTimestamp:
      return from_timestamp(read<SQL_TIMESTAMP_STRUCT>(data));
    case ReadAs::kTimeText:
      return date_or_text(time_of_day(narrow_text()), narrow_text());
    case ReadAs::kOffsetText:
      return date_or_text(date_time(narrow_text()), narrow_text());
  }
  return {};
}

Value decimal_value(std::string_view digits) {
  std::string_view rest = text::trim(digits);
  const bool negative = rest.starts_with('-');
  if (negative) rest.remove_prefix(1);
  const std::size_t whole = count_digits(rest);
  const bool has_point = whole < rest.size() && rest[whole] == '.';
  const std::size_t fraction = has_point ? count_digits(rest.substr(whole + 1)) : 0;
  const bool all_read = whole + (has_point ? 1 : 0) + fraction == rest.size();
  if (!all_read || whole + fraction == 0) return Value(digits);
  if (has_point && fraction == 0) rest.remove_suffix(1);
  std::string result(rest);
  if (whole == 0) result.insert(0, 1, '0');
  if (negative) result.insert(0, 1, '-');
  return Decimal{std::move(result)};
}

std::optional<DateTime> time_of_day(std::string_view s) {
  DateTime value;
  s = text::trim(s);
  if (!take_time(s, value) || !s.empty()) return std::nullopt;
  return value;
}

std::optional<DateTime> date_time(std::string_view s) {
  DateTime value;
  s = text::trim(s);
  const auto year = take_number(s, 4, '-');
  const auto month = year ? take_number(s, 2, '-') : std::nullopt;
  const auto day = month ? take_number(s, 2, ' ') : std::nullopt;
  if (!day || !is_valid_date(*year, *month, *day)) return std::nullopt;
  value.year = *year;
  value.month = *month;
  value.day = *day;
  if (!take_time(s, value) || !is_offset(s)) return std::nullopt;
  return value;
}

SQL_TIMESTAMP_STRUCT timestamp_of(const DateTime& value) {
  SQL_TIMESTAMP_STRUCT result{};
  result.year = static_cast<SQLSMALLINT>(value.year);
  result.month = static_cast<SQLUSMALLINT>(value.month);
  result.day = static_cast<SQLUSMALLINT>(value.day);
  result.hour = static_cast<SQLUSMALLINT>(value.hour);
  result.minute = static_cast<SQLUSMALLINT>(value.minute);
  result.second = static_cast<SQLUSMALLINT>(value.second);
  result.fraction = static_cast<SQLUINTEGER>(value.nanosecond);
  return result;
}

int fraction_digits(const DateTime& value) {
  int digits = value.nanosecond == 0 ? 0 : kMostFractionDigits;
  for (std::int32_t rest = value.nanosecond; rest != 0 && rest % 10 == 0; rest /= 10) --digits;
  return digits;
}

}  // namespace kestrova::odbc
