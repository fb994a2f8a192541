#include "platform/sqlite/sql_convert.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

#include "platform/error.h"
#include "platform/sqlite/sql_lexer.h"
#include "platform/text.h"

namespace kestrova::sql {
namespace {

struct IntegerRange {
  TypeId id;
  std::int64_t low;
  std::int64_t high;
};

constexpr std::array<IntegerRange, 4> kIntegerRanges = {{
    {TypeId::kTinyInt, 0, 255},
    {TypeId::kSmallInt, -32'768, 32'767},
    {TypeId::kInt, -2'147'483'648, 2'147'483'647},
    {TypeId::kBigInt, std::numeric_limits<std::int64_t>::min(),
     std::numeric_limits<std::int64_t>::max()},
}};

[[noreturn]] void throw_overflow(const SqlType& type) {
  throw DatabaseError(
      "Arithmetic overflow error converting expression to data type " + type.declaration() + ".",
      "22003", 8115);
}

double as_double(const Value& stored) {
  if (const auto* integer = stored.get_if<std::int64_t>()) return static_cast<double>(*integer);
  if (const auto* number = stored.get_if<double>()) return *number;
  throw DatabaseError("The value '" + stored.text_or_empty() + "' is no number.", "22018", 245);
}

std::int64_t fit_integer(const Value& stored, const SqlType& type) {
  const auto range = std::find_if(kIntegerRanges.begin(), kIntegerRanges.end(),
                                  [&](const IntegerRange& r) { return r.id == type.id; });
  std::int64_t result = 0;
  if (const auto* integer = stored.get_if<std::int64_t>()) {
    result = *integer;
  } else {
    const double whole = std::trunc(as_double(stored));
    if (!(whole >= -9.2e18 && whole <= 9.2e18)) throw_overflow(type);
    result = static_cast<std::int64_t>(whole);
  }
  if (result < range->low || result > range->high) throw_overflow(type);
  return result;
}

double fit_decimal(const Value& stored, const SqlType& type) {
  const double rounded = round_decimal(as_double(stored), type.scale);
  if (!(std::fabs(rounded) < std::pow(10.0, type.size - type.scale))) throw_overflow(type);
  return rounded;
}

Value text_to_bit(std::string_view text, const SqlType& type) {
  const std::string word = text::upper(text::trim(text));
  if (word == "TRUE") return 1;
  if (word == "FALSE") return 0;
  const auto number = parse_integer(word);
  if (!number) throw_bad_number(text, type);
  return *number != 0 ? 1 : 0;
}

// Six digits; an exponent has three: "1e+006".
std::string float_text(double number) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.6g", number);
  std::string result = buffer;
  const std::size_t exponent = result.find('e');
  if (exponent != std::string::npos && result.size() - exponent < 5) {
    result.insert(exponent + 2, 1, '0');
  }
  return result;
}

// Eight, four, four, four and twelve hexadecimal digits.
bool is_guid(std::string_view text) {
  constexpr std::string_view kForm = "00000000-0000-0000-0000-000000000000";
  return std::equal(text.begin(), text.end(), kForm.begin(), kForm.end(), [](char c, char form) {
    return form == '-' ? c == '-' : std::isxdigit(static_cast<unsigned char>(c)) != 0;
  });
}

struct DateStyle {
  int style;
  std::string (*format)(const DateTime&);
};

// "Feb  1 2024 10:30AM".
std::string default_style(const DateTime& date) {
  constexpr std::array<const char*, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  char buffer[80];
  std::snprintf(buffer, sizeof buffer, "%s %2d %d %2d:%02d%s",
                kMonths[static_cast<std::size_t>(date.month - 1)], date.day, date.year,
                date.hour % 12 == 0 ? 12 : date.hour % 12, date.minute,
                date.hour < 12 ? "AM" : "PM");
  return buffer;
}

std::string compact_style(const DateTime& date) {
  const std::string iso = format_stored_date(date);
  return iso.substr(0, 4) + iso.substr(5, 2) + iso.substr(8, 2);
}

std::string second_style(const DateTime& date) { return format_stored_date(date).substr(0, 19); }
std::string time_style(const DateTime& date) { return format_stored_date(date).substr(11, 8); }
std::string day_style(const DateTime& date) { return format_stored_date(date).substr(0, 10); }

constexpr std::array<DateStyle, 11> kDateStyles = {{
    {0, default_style},
    {100, default_style},
    {104, format_dmy},
    {8, time_style},
    {108, time_style},
    {112, compact_style},
    {20, second_style},
    {120, second_style},
    {21, format_stored_date},
    {121, format_stored_date},
    {23, day_style},
}};

std::string date_text(const DateTime& date, TypeId type, int style) {
  if (style == 0 && type == TypeId::kDate) return day_style(date);
  if (style == 0 && type == TypeId::kTime) return time_style(date);
  const auto row = std::find_if(kDateStyles.begin(), kDateStyles.end(),
                                [style](const DateStyle& s) { return s.style == style; });
  if (row == kDateStyles.end()) {
    throw DatabaseError("The date style " + std::to_string(style) + " is not supported.", "42000",
                        281);
  }
  return row->format(date);
}

}  // namespace

Value text_to_stored(std::string_view text, const SqlType& type) {
  switch (type.type_class()) {
    case TypeClass::kBit:
      return text_to_bit(text, type);
    case TypeClass::kInteger: {
      const auto number = parse_integer(text);
      if (!number) throw_bad_number(text, type);
      return fit_integer(*number, type);
    }
    case TypeClass::kDecimal: {
      // Only a float is written with an exponent.
      const auto number = parse_number(text);
      if (!number || text.find_first_of("eE") != text.npos) throw_bad_number(text, type);
      return fit_decimal(*number, type);
    }
    case TypeClass::kFloat: {
      const auto number = parse_number(text);
      if (!number) throw_bad_number(text, type);
      return *number;
    }
    case TypeClass::kDate: {
      auto date = parse_date(text);
      if (!date && type.id == TypeId::kTime) {
        date = parse_date("1900-01-01 " + std::string(text::trim(text)));
      }
      if (!date) throw_bad_date();
      return format_stored_date(fit_date(*date, type.id));
    }
    case TypeClass::kBinary:
      throw DatabaseError("Implicit conversion from a text to data type varbinary is not allowed.",
                          "42000", 257);
    case TypeClass::kGuid:
      if (!is_guid(text::trim(text))) throw_bad_number(text, type);
      return std::string(text::trim(text));
    default:
      return std::string(text);
  }
}

Value fit_stored(const Value& stored, const SqlType& type) {
  if (stored.is_null()) return stored;
  switch (type.type_class()) {
    case TypeClass::kBit:
      return as_double(stored) != 0 ? 1 : 0;
    case TypeClass::kInteger:
      return fit_integer(stored, type);
    case TypeClass::kDecimal:
      return fit_decimal(stored, type);
    case TypeClass::kFloat:
      return as_double(stored);
    case TypeClass::kDate: {
      const auto* text = stored.get_if<std::string>();
      const DateTime date = text ? read_stored_date(*text) : days_to_date(as_double(stored));
      return format_stored_date(fit_date(date, type.id));
    }
    default:
      return stored;
  }
}

std::string number_text(std::string_view digits, const SqlType& from, const SqlType& to) {
  if (to.size == 0 || text::length(digits) <= static_cast<std::size_t>(to.size)) {
    return std::string(digits);
  }
  const bool starred = from.is_integer() && from.id != TypeId::kBigInt &&
                       (to.id == TypeId::kChar || to.id == TypeId::kVarChar);
  if (!starred) throw_overflow(to);
  return "*";
}

std::string stored_to_text(const Value& stored, const SqlType& type, int style) {
  switch (type.type_class()) {
    case TypeClass::kDecimal:
      return stored_to_host(
                 stored, {TypeId::kDecimal, type.size, type.id == TypeId::kMoney ? 2 : type.scale})
          .text();
    case TypeClass::kFloat:
      return float_text(as_double(stored));
    case TypeClass::kDate:
      return date_text(read_stored_date(stored.text()), type.id, style);
    default:
      return stored.text();
  }
}

double date_to_days(const DateTime& date) { return to_day_count(date) - 2; }

DateTime days_to_date(double days) {
  try {
    return from_day_count(days + 2);
  } catch (const Overflow&) {
    throw DatabaseError("Adding a value to a date column caused an overflow.", "22003", 517);
  }
}

DatabaseError missing_value(const std::string& column) {
  return DatabaseError(
      "Cannot insert the value NULL into column '" + column + "'; column does not allow nulls.",
      "23000", 515);
}

Value host_to_stored(const Value& value, const SqlType& type) {
  if (value.is_null()) return value;
  if (const auto* text = value.get_if<std::string>()) return text_to_stored(*text, type);
  if (const auto* decimal = value.get_if<Decimal>()) {
    return type.is_text() ? Value(decimal->digits) : text_to_stored(decimal->digits, type);
  }
  if (const auto* date = value.get_if<DateTime>()) {
    if (type.is_date()) return format_stored_date(fit_date(*date, type.id));
    if (type.is_text()) return date_text(*date, TypeId::kDateTime, 0);
    throw DatabaseError("A date cannot be stored in a column of type " + type.declaration() + ".",
                        "22018", 257);
  }
  if (value.get_if<Bytes>()) {
    if (type.type_class() == TypeClass::kBinary) return value;
    throw DatabaseError("Bytes cannot be stored in a column of type " + type.declaration() + ".",
                        "22018", 257);
  }
  if (type.is_text()) return value.text();
  if (type.type_class() == TypeClass::kBinary || type.type_class() == TypeClass::kGuid) {
    throw DatabaseError("A number cannot be stored in a column of type " + type.declaration() + ".",
                        "22018", 257);
  }
  const auto* flag = value.get_if<bool>();
  return fit_stored(flag ? Value(*flag ? 1 : 0) : value, type);
}

Value stored_to_host(const Value& stored, const SqlType& type) {
  if (stored.is_null()) return stored;
  switch (type.type_class()) {
    case TypeClass::kBit:
      return as_double(stored) != 0;
    case TypeClass::kInteger: {
      // A fraction here is a sum that has left the 64 bits of the embedded database.
      if (!stored.get_if<std::int64_t>()) throw_overflow(type);
      return fit_integer(stored, type);
    }
    case TypeClass::kDecimal: {
      if (const auto* integer = stored.get_if<std::int64_t>()) {
        std::string digits = std::to_string(*integer);
        if (type.scale > 0) digits.append(".").append(static_cast<std::size_t>(type.scale), '0');
        return Decimal{digits};
      }
      return Decimal{decimal_digits(as_double(stored), type.scale)};
    }
    case TypeClass::kFloat:
      return as_double(stored);
    case TypeClass::kDate:
      return read_stored_date(stored.text());
    default:
      return stored;
  }
}

std::string stored_literal(const Value& stored) {
  if (stored.is_null()) return "NULL";
  if (const auto* text = stored.get_if<std::string>()) {
    return quoted(*text, '\'');
  }
  if (const auto* number = stored.get_if<double>()) {
    std::string digits = stored.text();
    if (digits.find_first_of(".e") == std::string::npos) digits += ".0";
    return *number < 0 ? "(" + digits + ")" : digits;
  }
  if (stored.get_if<Bytes>()) return "X'" + stored.text() + "'";
  const std::string digits = stored.text();
  return digits.starts_with('-') ? "(" + digits + ")" : digits;
}

}  // namespace kestrova::sql
