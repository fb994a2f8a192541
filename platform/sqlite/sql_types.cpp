#include "platform/sqlite/sql_types.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/error.h"
#include "platform/text.h"

namespace kestrova::sql {
namespace {

enum class Arguments { kNone, kSize, kDecimal };

struct TypeRow {
  std::string_view name;  // the first row of an id is the name in declarations
  TypeId id;
  TypeClass type_class;
  FieldType code;
  FieldType unlimited_code;  // with (max)
  Arguments arguments;
};

// clang-format off
constexpr std::array<TypeRow, 30> kTypes = {{
    {"nvarchar",         TypeId::kNVarChar,      TypeClass::kText,    FieldType::kVarWChar,        FieldType::kLongVarWChar,  Arguments::kSize},
    {"varchar",          TypeId::kVarChar,       TypeClass::kText,    FieldType::kVarChar,         FieldType::kLongVarChar,   Arguments::kSize},
    {"nchar",            TypeId::kNChar,         TypeClass::kText,    FieldType::kWChar,           FieldType::kWChar,         Arguments::kSize},
    {"char",             TypeId::kChar,          TypeClass::kText,    FieldType::kChar,            FieldType::kChar,          Arguments::kSize},
    {"character",        TypeId::kChar,          TypeClass::kText,    FieldType::kChar,            FieldType::kChar,          Arguments::kSize},
    {"ntext",            TypeId::kNText,         TypeClass::kText,    FieldType::kLongVarWChar,    FieldType::kLongVarWChar,  Arguments::kNone},
    {"text",             TypeId::kText,          TypeClass::kText,    FieldType::kLongVarChar,     FieldType::kLongVarChar,   Arguments::kNone},
    {"int",              TypeId::kInt,           TypeClass::kInteger, FieldType::kInteger,         FieldType::kInteger,       Arguments::kNone},
    {"integer",          TypeId::kInt,           TypeClass::kInteger, FieldType::kInteger,         FieldType::kInteger,       Arguments::kNone},
    {"smallint",         TypeId::kSmallInt,      TypeClass::kInteger, FieldType::kSmallInt,        FieldType::kSmallInt,      Arguments::kNone},
    {"tinyint",          TypeId::kTinyInt,       TypeClass::kInteger, FieldType::kUnsignedTinyInt, FieldType::kUnsignedTinyInt, Arguments::kNone},
    {"bigint",           TypeId::kBigInt,        TypeClass::kInteger, FieldType::kBigInt,          FieldType::kBigInt,        Arguments::kNone},
    {"bit",              TypeId::kBit,           TypeClass::kBit,     FieldType::kBoolean,         FieldType::kBoolean,       Arguments::kNone},
    {"float",            TypeId::kFloat,         TypeClass::kFloat,   FieldType::kDouble,          FieldType::kDouble,        Arguments::kSize},
    {"real",             TypeId::kReal,          TypeClass::kFloat,   FieldType::kSingle,          FieldType::kSingle,        Arguments::kNone},
    {"numeric",          TypeId::kDecimal,       TypeClass::kDecimal, FieldType::kNumeric,         FieldType::kNumeric,       Arguments::kDecimal},
    {"decimal",          TypeId::kDecimal,       TypeClass::kDecimal, FieldType::kNumeric,         FieldType::kNumeric,       Arguments::kDecimal},
    {"dec",              TypeId::kDecimal,       TypeClass::kDecimal, FieldType::kNumeric,         FieldType::kNumeric,       Arguments::kDecimal},
    {"money",            TypeId::kMoney,         TypeClass::kDecimal, FieldType::kCurrency,        FieldType::kCurrency,      Arguments::kNone},
    {"smallmoney",       TypeId::kMoney,         TypeClass::kDecimal, FieldType::kCurrency,        FieldType::kCurrency,      Arguments::kNone},
    {"datetime",         TypeId::kDateTime,      TypeClass::kDate,    FieldType::kDBTimeStamp,     FieldType::kDBTimeStamp,   Arguments::kNone},
    {"smalldatetime",    TypeId::kSmallDateTime, TypeClass::kDate,    FieldType::kDBTimeStamp,     FieldType::kDBTimeStamp,   Arguments::kNone},
    {"date",             TypeId::kDate,          TypeClass::kDate,    FieldType::kDBDate,          FieldType::kDBDate,        Arguments::kNone},
    {"time",             TypeId::kTime,          TypeClass::kDate,    FieldType::kDBTime,          FieldType::kDBTime,        Arguments::kSize},
    {"uniqueidentifier", TypeId::kGuid,          TypeClass::kGuid,    FieldType::kGuid,            FieldType::kGuid,          Arguments::kNone},
    {"varbinary",        TypeId::kVarBinary,     TypeClass::kBinary,  FieldType::kVarBinary,       FieldType::kLongVarBinary, Arguments::kSize},
    {"binary",           TypeId::kVarBinary,     TypeClass::kBinary,  FieldType::kVarBinary,       FieldType::kLongVarBinary, Arguments::kSize},
    {"image",            TypeId::kVarBinary,     TypeClass::kBinary,  FieldType::kLongVarBinary,   FieldType::kLongVarBinary, Arguments::kNone},
    {"sysname",          TypeId::kNVarChar,      TypeClass::kText,    FieldType::kVarWChar,        FieldType::kLongVarWChar,  Arguments::kNone},
    {"NULL",             TypeId::kNull,          TypeClass::kNull,    FieldType::kInteger,         FieldType::kInteger,       Arguments::kNone},
}};
// clang-format on

const TypeRow& row_of(TypeId id) {
  return *std::find_if(kTypes.begin(), kTypes.end(),
                       [id](const TypeRow& row) { return row.id == id; });
}

// What rounds into the reach of a type.
struct DateRange {
  TypeId id;
  DateTime first;
  DateTime last;
};

constexpr std::array<DateRange, 2> kDateRanges = {{
    {TypeId::kDateTime, {1753, 1, 1, 0, 0, 0, 0}, {9999, 12, 31, 23, 59, 59, 998'000'000}},
    {TypeId::kSmallDateTime, {1900, 1, 1, 0, 0, 0, 0}, {2079, 6, 6, 23, 59, 29, 998'000'000}},
}};

void check_range(const DateTime& date, TypeId type) {
  for (const DateRange& range : kDateRanges) {
    if (range.id != type || (range.first <= date && date <= range.last)) continue;
    throw DatabaseError("The conversion to data type " + std::string(row_of(type).name) +
                            " resulted in an out-of-range value.",
                        "22007", 242);
  }
}

// A datetime keeps three-hundredths of a second, told with three digits: .000, .003, .007, .010.
DateTime at_tick(DateTime date) {
  const int tick = (date.nanosecond / 1'000'000 * 3 + 5) / 10;
  date.nanosecond = (tick % 300 * 10 + 1) / 3 * 1'000'000;
  return tick < 300 ? date : from_day_count(to_day_count(date) + 1.0 / 86'400);
}

DateTime at_minute(DateTime date) {
  const bool up = date.second * 1'000 + date.nanosecond / 1'000'000 > 29'998;
  date.second = date.nanosecond = 0;
  return up ? from_day_count(to_day_count(date) + 1.0 / 1'440) : date;
}

// The server's reading of a two-digit year; that of its clients is full_year.
int server_year(int two_digits) { return two_digits + (two_digits < 50 ? 2000 : 1900); }

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Reads digits, separators and blanks from the front of a text.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  bool at_end() const { return rest_.empty(); }
  std::size_t digits_ahead() const {
    std::size_t count = 0;
    while (count < rest_.size() && is_digit(rest_[count])) ++count;
    return count;
  }
  bool accept(char c) {
    if (rest_.empty() || rest_.front() != c) return false;
    rest_.remove_prefix(1);
    return true;
  }
  // A number of min to max digits.
  bool number(int& result, std::size_t min, std::size_t max) {
    const std::size_t count = digits_ahead();
    if (count < min || count > max) return false;
    return fixed(result, count);
  }
  // A number made of the next count characters.
  bool fixed(int& result, std::size_t count) {
    if (digits_ahead() < count) return false;
    std::from_chars(rest_.data(), rest_.data() + count, result);
    rest_.remove_prefix(count);
    return true;
  }

 private:
  std::string_view rest_;
};

bool scan_day(Scanner& in, DateTime& date) {
  const std::size_t digits = in.digits_ahead();
  if (digits == 8) {
    return in.fixed(date.year, 4) && in.fixed(date.month, 2) && in.fixed(date.day, 2);
  }
  if (digits == 4) {
    return in.number(date.year, 4, 4) && in.accept('-') && in.number(date.month, 1, 2) &&
           in.accept('-') && in.number(date.day, 1, 2);
  }
  if (!in.number(date.day, 1, 2) || !in.accept('.') || !in.number(date.month, 1, 2) ||
      !in.accept('.')) {
    return false;
  }
  const std::size_t year_digits = in.digits_ahead();
  if ((year_digits != 2 && year_digits != 4) || !in.fixed(date.year, year_digits)) return false;
  if (year_digits == 2) date.year = server_year(date.year);
  return true;
}

bool scan_time(Scanner& in, DateTime& date) {
  if (!in.number(date.hour, 1, 2) || !in.accept(':') || !in.number(date.minute, 1, 2)) return false;
  if (in.accept(':')) {
    if (!in.number(date.second, 1, 2)) return false;
    if (in.accept('.')) {
      const std::size_t digits = in.digits_ahead();
      if (!in.number(date.nanosecond, 1, 3)) return false;
      for (std::size_t i = digits; i < 9; ++i) date.nanosecond *= 10;
    }
  }
  return date.hour < 24 && date.minute < 60 && date.second < 60;
}

// That of the number's first digit, when the number is rounded to 15.
int exponent_of(double number) {
  char digits[64];
  std::snprintf(digits, sizeof digits, "%.14e", number);
  return std::atoi(std::strchr(digits, 'e') + 1);
}

// A number with so many decimal places, the others rounded away or cut off.
double with_places(double number, int places, bool round) {
  if (!std::isfinite(number) || number == 0) return number;
  // The first 15 digits are the decimal that was meant; what follows is binary noise.
  char digits[64];
  std::snprintf(digits, sizeof digits, "%.14e", std::fabs(number));
  const int exponent = std::atoi(digits + 17);
  const int kept = exponent + 1 + places;  // significant digits to keep
  if (kept >= kExactDigits) return std::copysign(std::strtod(digits, nullptr), number);
  if (kept < 0) return 0;
  std::string significant = digits[0] + std::string(digits + 2, 14);
  const bool up = round && significant[static_cast<std::size_t>(kept)] >= '5';
  const std::string whole = significant.substr(0, static_cast<std::size_t>(kept));
  const std::int64_t mantissa = (whole.empty() ? 0 : std::stoll(whole)) + (up ? 1 : 0);
  const std::string rounded = std::to_string(mantissa) + "e" + std::to_string(-places);
  return std::copysign(std::strtod(rounded.c_str(), nullptr), number);
}

}  // namespace

TypeClass SqlType::type_class() const { return row_of(id).type_class; }

FieldType SqlType::code() const {
  const TypeRow& row = row_of(id);
  return size == 0 ? row.unlimited_code : row.code;
}

std::string SqlType::declaration() const {
  const TypeRow& row = row_of(id);
  const std::string name(row.name);
  if (id == TypeId::kDecimal) {
    return name + "(" + std::to_string(size) + "," + std::to_string(scale) + ")";
  }
  if (row.arguments != Arguments::kSize || id == TypeId::kFloat || id == TypeId::kTime) return name;
  return name + "(" + (size == 0 ? "max" : std::to_string(size)) + ")";
}

std::optional<SqlType> type_named(std::string_view name) {
  for (const TypeRow& row : kTypes) {
    if (row.id == TypeId::kNull || !text::equal_ignoring_case(row.name, name)) continue;
    SqlType type{row.id, 0, 0};
    if (row.name == "sysname") type.size = 128;
    if (row.id == TypeId::kDecimal) type.size = 18;
    if (row.id == TypeId::kMoney) type = {row.id, 19, 4};
    if (row.arguments == Arguments::kSize && (type.is_text() || row.id == TypeId::kVarBinary)) {
      type.size = 1;
    }
    return type;
  }
  return std::nullopt;
}

std::optional<SqlType> parse_declaration(std::string_view declaration) {
  const std::size_t open = declaration.find('(');
  auto type = type_named(text::trim(declaration.substr(0, open)));
  if (!type || open == std::string_view::npos) return type;
  const std::string_view arguments = declaration.substr(open + 1, declaration.size() - open - 2);
  const auto pieces = text::split(arguments, ',');
  if (text::equal_ignoring_case(text::trim(pieces[0]), "MAX")) {
    type->size = 0;
    return type;
  }
  if (const auto size = text::to_integer(pieces[0]); size && !type->is_date()) {
    type->size = static_cast<int>(*size);
  }
  if (pieces.size() > 1) {
    if (const auto scale = text::to_integer(pieces[1])) type->scale = static_cast<int>(*scale);
  }
  return type;
}

SqlType as_decimal(const SqlType& type) {
  switch (type.id) {
    case TypeId::kBit:
      return {TypeId::kDecimal, 1, 0};
    case TypeId::kTinyInt:
      return {TypeId::kDecimal, 3, 0};
    case TypeId::kSmallInt:
      return {TypeId::kDecimal, 5, 0};
    case TypeId::kInt:
      return {TypeId::kDecimal, 10, 0};
    case TypeId::kBigInt:
      return {TypeId::kDecimal, 19, 0};
    default:
      return {TypeId::kDecimal, type.size, type.scale};
  }
}

SqlType common_type(const SqlType& a, const SqlType& b) {
  if (a.type_class() == TypeClass::kDecimal || b.type_class() == TypeClass::kDecimal) {
    const SqlType& higher = a.id < b.id ? b : a;
    if (higher.id != TypeId::kDecimal) return higher;
    const SqlType& lower = a.id < b.id ? a : b;
    if (!lower.is_decimal() && !lower.is_integer() && lower.type_class() != TypeClass::kBit) {
      return higher;
    }
    const SqlType x = as_decimal(higher);
    const SqlType y = as_decimal(lower);
    const int scale = std::max(x.scale, y.scale);
    const int whole = std::max(x.size - x.scale, y.size - y.scale);
    return {TypeId::kDecimal, std::min(whole + scale, kMaxPrecision), scale};
  }
  SqlType result = a.id < b.id ? b : a;
  if (a.is_text() && b.is_text())
    result.size = a.size == 0 || b.size == 0 ? 0 : std::max(a.size, b.size);
  return result;
}

SqlType decimal_result(char op, const SqlType& a, const SqlType& b) {
  const SqlType x = as_decimal(a);
  const SqlType y = as_decimal(b);
  int scale = std::max(x.scale, y.scale);
  int precision = scale + std::max(x.size - x.scale, y.size - y.scale) + 1;
  if (op == '*') {
    scale = x.scale + y.scale;
    precision = x.size + y.size + 1;
  } else if (op == '/') {
    scale = std::max(6, x.scale + y.size + 1);
    precision = x.size - x.scale + y.scale + scale;
  } else if (op == '%') {
    precision = std::max(1, std::min(x.size - x.scale, y.size - y.scale) + scale);
  }
  if (precision > kMaxPrecision) {
    // Whole digits go before digits behind the point, of which six are kept.
    scale = std::max(std::min(scale, 6), scale - (precision - kMaxPrecision));
    precision = kMaxPrecision;
  }
  return {TypeId::kDecimal, precision, scale};
}

std::string format_stored_date(const DateTime& date) {
  char buffer[96];
  std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d %02d:%02d:%02d.%03d", date.year, date.month,
                date.day, date.hour, date.minute, date.second,
                static_cast<int>(date.nanosecond / 1'000'000));
  return buffer;
}

DateTime read_stored_date(std::string_view stored) {
  auto date = parse_date(stored);
  if (!date) throw_bad_date();
  return *date;
}

std::optional<DateTime> parse_date(std::string_view text) {
  Scanner in(text::trim(text));
  DateTime date;
  if (!scan_day(in, date)) return std::nullopt;
  if (!is_valid_date(date.year, date.month, date.day)) return std::nullopt;
  if (in.at_end()) return date;
  if (!in.accept(' ') && !in.accept('T')) return std::nullopt;
  while (in.accept(' ')) {
  }
  if (!scan_time(in, date) || !in.at_end()) return std::nullopt;
  return date;
}

DateTime fit_date(DateTime date, TypeId type) {
  check_range(date, type);
  if (type == TypeId::kDateTime) return at_tick(date);
  if (type == TypeId::kSmallDateTime) return at_minute(date);
  if (type == TypeId::kDate) {
    date.hour = date.minute = date.second = date.nanosecond = 0;
  } else if (type == TypeId::kTime) {
    const DateTime day_zero;
    date.year = day_zero.year;
    date.month = day_zero.month;
    date.day = day_zero.day;
  }
  return date;
}

std::optional<double> parse_number(std::string_view text) {
  std::string_view digits = text::trim(text);
  if (digits.starts_with('+') && !digits.substr(1).starts_with('-')) digits.remove_prefix(1);
  double number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (digits.empty() || result.ec != std::errc() || result.ptr != digits.data() + digits.size() ||
      !std::isfinite(number)) {
    return std::nullopt;
  }
  return number;
}

std::optional<std::int64_t> parse_integer(std::string_view text) {
  std::string_view digits = text::trim(text);
  if (digits.starts_with('+') && !digits.substr(1).starts_with('-')) digits.remove_prefix(1);
  std::int64_t number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (digits.empty() || result.ec != std::errc() || result.ptr != digits.data() + digits.size()) {
    return std::nullopt;
  }
  return number;
}

double round_decimal(double number, int places) { return with_places(number, places, true); }

double cut_decimal(double number, int places) { return with_places(number, places, false); }

double remainder_of(double dividend, double divisor, int scale) {
  // As whole numbers of the last place, in which nothing is lost.
  const auto places = [scale](double number) {
    std::string digits = decimal_digits(number, scale);
    std::erase(digits, '.');
    const auto count = parse_integer(digits);
    if (!count) {
      throw DatabaseError("The operator % takes no numbers of more than 18 digits.", "22003", 8115);
    }
    return *count;
  };
  const std::int64_t step = places(divisor);
  if (step == 0) throw_division_by_zero();
  return round_decimal(static_cast<double>(places(dividend) % step) * std::pow(10.0, -scale),
                       scale);
}

std::string decimal_digits(double number, int scale) {
  if (!std::isfinite(number)) {
    throw DatabaseError("Arithmetic overflow error converting expression to data type numeric.",
                        "22003", 8115);
  }
  // The first 15 digits are the decimal that was meant; zeros stand for the binary noise behind.
  const int places = std::clamp(kExactDigits - 1 - exponent_of(number), 0, scale);
  char buffer[400];
  std::snprintf(buffer, sizeof buffer, "%.*f", places, number);
  std::string digits = buffer;
  if (places == 0 && scale > 0) digits += '.';
  digits.append(static_cast<std::size_t>(scale - places), '0');
  if (digits.find_first_not_of("-0.") == std::string::npos && digits.starts_with('-')) {
    digits.erase(0, 1);
  }
  return digits;
}

void throw_division_by_zero() {
  throw DatabaseError("Divide by zero error encountered.", "22012", 8134);
}

void throw_bad_date() {
  throw DatabaseError("Conversion failed when converting date and/or time from character string.",
                      "22007", 241);
}

void throw_bad_number(std::string_view value, const SqlType& target) {
  const SqlType named = target.id == TypeId::kNull ? SqlType{TypeId::kInt, 0, 0} : target;
  throw DatabaseError("Conversion failed when converting the value '" +
                          std::string(text::left(value, 100)) + "' to data type " +
                          std::string(row_of(named.id).name) + ".",
                      "22018", 245);
}

}  // namespace kestrova::sql
