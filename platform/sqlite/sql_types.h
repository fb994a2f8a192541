// The server's column types: names, codes, the type of an expression by those of its operands, and
// how values of each type are stored.
//
// Stored form: whole numbers and bits as integers, float and real as floating point, decimal and
// money as numbers rounded to their scale, texts as they are, dates in one fixed-width text form
// (format_stored_date), so that they compare and sort as dates do and indices serve them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/database.h"
#include "platform/date_time.h"

namespace kestrova::sql {

// In rising precedence: of two operands the one with the lower type is converted to the other's.
enum class TypeId {
  kNull,  // of the literal NULL: takes any type
  kVarBinary,
  kChar,
  kVarChar,
  kNChar,
  kNVarChar,
  kGuid,
  kText,
  kNText,
  kBit,
  kTinyInt,
  kSmallInt,
  kInt,
  kBigInt,
  kMoney,
  kDecimal,
  kReal,
  kFloat,
  kTime,
  kDate,
  kSmallDateTime,
  kDateTime,
};

enum class TypeClass { kNull, kBinary, kText, kGuid, kBit, kInteger, kDecimal, kFloat, kDate };

struct SqlType {
  TypeId id = TypeId::kNull;
  int size = 0;   // characters or bytes of a text or binary (0: not limited), digits of a decimal
  int scale = 0;  // digits behind the point of a decimal

  TypeClass type_class() const;
  FieldType code() const;
  // As declared, for instance "nvarchar(40)"; a type of unlimited length as "nvarchar(max)".
  std::string declaration() const;

  bool is_text() const { return type_class() == TypeClass::kText; }
  bool is_date() const { return type_class() == TypeClass::kDate; }
  bool is_integer() const { return type_class() == TypeClass::kInteger; }
  bool is_decimal() const { return type_class() == TypeClass::kDecimal; }
  bool is_number() const {
    return is_integer() || is_decimal() || type_class() == TypeClass::kFloat;
  }

  friend bool operator==(const SqlType&, const SqlType&) = default;
};

inline constexpr int kMaxPrecision = 38;
// Beyond this many digits a stored number would lose some.
inline constexpr int kExactDigits = 15;

// The server's types by name ("nvarchar"), or nothing.
std::optional<SqlType> type_named(std::string_view name);

// Reads "nvarchar(40)", "numeric(10,2)", "int": what declaration() wrote.
std::optional<SqlType> parse_declaration(std::string_view declaration);

// The type that operands of both types are brought to.
SqlType common_type(const SqlType& a, const SqlType& b);

// The type of an arithmetic expression (+ - * / %) of two decimal-like operands.
SqlType decimal_result(char op, const SqlType& a, const SqlType& b);

// A whole number as the decimal type that just holds it.
SqlType as_decimal(const SqlType& type);

// "yyyy-mm-dd hh:mm:ss.fff".
std::string format_stored_date(const DateTime& date);
// The inverse. The text must be of that form.
DateTime read_stored_date(std::string_view stored);

// The date that a text in one of the server's forms means: dd.mm.yyyy, yyyy-mm-dd or yyyymmdd, each
// with or without hh:mm[:ss[.fff]]. Nothing for any other text and for a day that does not exist.
std::optional<DateTime> parse_date(std::string_view text);

// A date as a column of the type keeps it: a date loses its time, a time its day; a smalldatetime
// is rounded to the minute, a datetime to a three-hundredth of a second. Raises DatabaseError 22007
// outside the years of the type.
DateTime fit_date(DateTime date, TypeId type);

// The number that a text spells (sign, digits, point, exponent; blanks around it), or nothing.
std::optional<double> parse_number(std::string_view text);
std::optional<std::int64_t> parse_integer(std::string_view text);

// Rounds half away from zero by the number's decimal digits, as a decimal of the server does.
double round_decimal(double number, int places);

// The same without rounding, as the server divides.
double cut_decimal(double number, int places);

// What is left of a division of decimals of at most this scale. Raises DatabaseError 22012 for a
// division by zero, 22003 for numbers that have too many digits.
double remainder_of(double dividend, double divisor, int scale);

// The digits of a decimal with its scale: "12.50". Raises DatabaseError 22003 for an infinite one.
std::string decimal_digits(double number, int scale);

[[noreturn]] void throw_division_by_zero();
[[noreturn]] void throw_bad_date();
[[noreturn]] void throw_bad_number(std::string_view value, const SqlType& target);

}  // namespace kestrova::sql
