#include "platform/odbc/parameter.h"

#include <algorithm>
#include <cstring>

#include "platform/odbc/column_values.h"
#include "platform/odbc/utf16.h"

namespace kestrova::odbc {
namespace {

// A text of more characters, or bytes of more, are sent as a long value.
constexpr std::size_t kMostCharacters = 4'000;
constexpr std::size_t kMostBytes = 8'000;

// At least one byte: a driver takes no address for no value at all.
std::vector<std::byte> bytes_of(const void* data, std::size_t size) {
  std::vector<std::byte> bytes(std::max<std::size_t>(size, 1));
  if (size > 0) std::memcpy(bytes.data(), data, size);
  return bytes;
}

Parameter parameter(SQLSMALLINT c_type, SQLSMALLINT sql_type, std::size_t size, int digits,
                    const void* data, std::size_t bytes) {
  return {.c_type = c_type,
          .sql_type = sql_type,
          .size = std::max<std::size_t>(size, 1),
          .digits = static_cast<SQLSMALLINT>(digits),
          .data = bytes_of(data, bytes),
          .indicator = static_cast<SQLLEN>(bytes)};
}

Parameter text_parameter(const std::string& text) {
  const std::u16string units = to_utf16(text);
  const bool is_long = units.size() > kMostCharacters;
  return parameter(SQL_C_WCHAR, is_long ? SQL_WLONGVARCHAR : SQL_WVARCHAR, units.size(), 0,
                   units.data(), units.size() * sizeof(char16_t));
}

Parameter decimal_parameter(const std::string& digits) {
  const std::size_t point = digits.find('.');
  const std::size_t fraction = point == std::string::npos ? 0 : digits.size() - point - 1;
  const auto count = static_cast<std::size_t>(
      std::count_if(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; }));
  return parameter(SQL_C_CHAR, SQL_DECIMAL, count, static_cast<int>(fraction), digits.data(),
                   digits.size());
}

Parameter date_parameter(const DateTime& value, FieldType type) {
  constexpr std::size_t kDateLength = 10;     // "2024-02-29"
  constexpr std::size_t kSecondsLength = 19;  // "2024-02-29 13:45:10"
  const SQL_TIMESTAMP_STRUCT moment = timestamp_of(value);
  if (type == FieldType::kDBTime) return text_parameter(format_iso(value).substr(kDateLength + 1));
  if (type == FieldType::kDBDate) {
    const SQL_DATE_STRUCT date{moment.year, moment.month, moment.day};
    return parameter(SQL_C_TYPE_DATE, SQL_TYPE_DATE, kDateLength, 0, &date, sizeof date);
  }
  const int digits = fraction_digits(value);
  const auto fraction = static_cast<std::size_t>(digits == 0 ? 0 : digits + 1);
  return parameter(SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, kSecondsLength + fraction, digits,
                   &moment, sizeof moment);
}

}  // namespace

SQLRETURN Parameter::bind(const StatementHandle& statement, std::size_t number) {
  return SQLBindParameter(statement.get(), static_cast<SQLUSMALLINT>(number), SQL_PARAM_INPUT,
                          c_type, sql_type, size, digits, data.data(),
                          static_cast<SQLLEN>(data.size()), &indicator);
}

Parameter make_parameter(const Value& value, const ResultColumn& column) {
  if (const auto* truth = value.get_if<bool>()) {
    const unsigned char bit = *truth ? 1 : 0;
    return parameter(SQL_C_BIT, SQL_BIT, 1, 0, &bit, sizeof bit);
  }
  if (const auto* integer = value.get_if<std::int64_t>()) {
    constexpr std::size_t kDigits = 19;
    return parameter(SQL_C_SBIGINT, SQL_BIGINT, kDigits, 0, integer, sizeof *integer);
  }
  if (const auto* number = value.get_if<double>()) {
    constexpr std::size_t kBits = 53;
    return parameter(SQL_C_DOUBLE, SQL_DOUBLE, kBits, 0, number, sizeof *number);
  }
  if (const auto* decimal = value.get_if<Decimal>()) return decimal_parameter(decimal->digits);
  if (const auto* date = value.get_if<DateTime>()) return date_parameter(*date, column.type.type);
  if (const auto* text = value.get_if<std::string>()) return text_parameter(*text);
  if (const auto* bytes = value.get_if<Bytes>()) {
    const bool is_long = bytes->size() > kMostBytes;
    return parameter(SQL_C_BINARY, is_long ? SQL_LONGVARBINARY : SQL_VARBINARY, bytes->size(), 0,
                     bytes->data(), bytes->size());
  }
  // NULL has no type of its own, but a server takes no text for bytes.
  Parameter null = parameter(SQL_C_WCHAR, SQL_WVARCHAR, 1, 0, nullptr, 0);
  if (column.type.read_as == ReadAs::kBytes) {
    null.c_type = SQL_C_BINARY;
    null.sql_type = SQL_VARBINARY;
  }
  null.indicator = SQL_NULL_DATA;
  return null;
}

}  // namespace kestrova::odbc
