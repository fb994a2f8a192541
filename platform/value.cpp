#include "platform/value.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "platform/error.h"
#include "platform/text.h"

namespace kestrova {
namespace {

std::string number_text(double number) {
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, number);
  return {buffer, result.ptr};
}

std::string hexadecimal(const Bytes& bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string result;
  result.reserve(bytes.size() * 2);
  for (const std::byte byte : bytes) {
    result += kDigits[std::to_integer<unsigned>(byte) >> 4];
    result += kDigits[std::to_integer<unsigned>(byte) & 15U];
  }
  return result;
}

std::int32_t checked_integer(double number) {
  // nearbyint rounds half to even in the default rounding mode.
  const double rounded = std::nearbyint(number);
  if (!(rounded >= std::numeric_limits<std::int32_t>::min() &&
        rounded <= std::numeric_limits<std::int32_t>::max())) {
    throw Overflow("The number " + number_text(number) + " does not fit 32 bits.");
  }
  return static_cast<std::int32_t>(rounded);
}

double parse_number(const std::string& spelled) {
  std::string_view digits = text::trim(spelled);
  if (digits.starts_with('+') && !digits.substr(1).starts_with('-')) digits.remove_prefix(1);
  double number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool all_read = result.ptr == digits.data() + digits.size();
  if (result.ec == std::errc::result_out_of_range && all_read) {
    throw Overflow("The number " + std::string(digits) + " does not fit 32 bits.");
  }
  // The words for infinity and for no number would be read, too.
  if (result.ec != std::errc() || !all_read || !std::isfinite(number)) {
    throw TypeMismatch("'" + spelled + "' is no number.");
  }
  return number;
}

struct TextOf {
  std::string operator()(std::monostate) const { throw InvalidUseOfNull("A NULL has no text."); }
  std::string operator()(bool value) const { return value ? "1" : "0"; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(double value) const { return number_text(value); }
  std::string operator()(const Decimal& value) const { return value.digits; }
  std::string operator()(const DateTime& value) const { return format_iso(value); }
  std::string operator()(const std::string& value) const { return value; }
  std::string operator()(const Bytes& value) const { return hexadecimal(value); }
};

struct IntegerOf {
  std::int32_t operator()(std::monostate) const { throw InvalidUseOfNull("A NULL is no number."); }
  std::int32_t operator()(bool value) const { return value ? 1 : 0; }
  std::int32_t operator()(std::int64_t value) const {
    return checked_integer(static_cast<double>(value));
  }
  std::int32_t operator()(double value) const { return checked_integer(value); }
  std::int32_t operator()(const Decimal& value) const {
    return checked_integer(parse_number(value.digits));
  }
  std::int32_t operator()(const DateTime&) const { throw TypeMismatch("A date is no number."); }
  std::int32_t operator()(const std::string& value) const {
    return checked_integer(parse_number(value));
  }
  std::int32_t operator()(const Bytes&) const { throw TypeMismatch("Bytes are no number."); }
};

bool read_boolean(const std::string& spelled) {
  constexpr std::array<std::string_view, 3> kTrue = {"TRUE", "WAHR", "VRAI"};
  constexpr std::array<std::string_view, 3> kFalse = {"FALSE", "FALSCH", "FAUX"};
  const std::string word = text::upper(text::trim(spelled));
  if (std::find(kTrue.begin(), kTrue.end(), word) != kTrue.end()) return true;
  if (std::find(kFalse.begin(), kFalse.end(), word) != kFalse.end()) return false;
  return parse_number(spelled) != 0;
}

struct BooleanOf {
  bool operator()(std::monostate) const { throw InvalidUseOfNull("A NULL is no boolean."); }
  bool operator()(bool value) const { return value; }
  bool operator()(std::int64_t value) const { return value != 0; }
  bool operator()(double value) const { return value != 0; }
  bool operator()(const Decimal& value) const { return parse_number(value.digits) != 0; }
  bool operator()(const DateTime&) const { throw TypeMismatch("A date is no boolean."); }
  bool operator()(const std::string& value) const { return read_boolean(value); }
  bool operator()(const Bytes&) const { throw TypeMismatch("Bytes are no boolean."); }
};

}  // namespace

std::string Value::text() const { return std::visit(TextOf{}, data_); }

std::string Value::text_or_empty() const { return is_null() ? std::string() : text(); }

std::int32_t Value::integer() const { return std::visit(IntegerOf{}, data_); }

bool Value::boolean() const { return std::visit(BooleanOf{}, data_); }

}  // namespace kestrova
