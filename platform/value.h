// One column value of a row set: NULL or a value of one of the database's kinds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/date_time.h"

namespace kestrova {

// A decimal number without loss: an optional "-", digits, and "." with digits when it has a
// fraction ("-12.50"). The scale is kept: "1.50" stays "1.50".
struct Decimal {
  std::string digits = "0";
  friend bool operator==(const Decimal&, const Decimal&) = default;
};

using Bytes = std::vector<std::byte>;

class Value {
 public:
  Value() = default;  // NULL
  Value(bool value) : data_(value) {}
  Value(int value) : data_(static_cast<std::int64_t>(value)) {}
  Value(std::int64_t value) : data_(value) {}
  Value(double value) : data_(value) {}
  Value(Decimal value) : data_(std::move(value)) {}
  Value(DateTime value) : data_(value) {}
  Value(Bytes value) : data_(std::move(value)) {}
  Value(std::string value) : data_(std::move(value)) {}
  Value(std::string_view value) : data_(std::string(value)) {}
  Value(const char* value) : data_(std::string(value)) {}

  bool is_null() const noexcept { return std::holds_alternative<std::monostate>(data_); }

  // The value if it is of kind T, else nullptr. T is bool, std::int64_t, double, Decimal, DateTime,
  // std::string or Bytes.
  template <class T>
  const T* get_if() const noexcept {
    return std::get_if<T>(&data_);
  }

  // The value as text, independent of any locale: "1" or "0" for a boolean, the shortest digits
  // that read back for a number ("." as separator), format_iso for a date, lower-case hexadecimal
  // for bytes. Raises InvalidUseOfNull for NULL.
  std::string text() const;

  // The same, with "" for NULL.
  std::string text_or_empty() const;

  // The value as a 32-bit whole number: numbers are rounded half to even, texts are read, a boolean
  // is 1 or 0. Raises InvalidUseOfNull, TypeMismatch or Overflow.
  std::int32_t integer() const;

  // The value as a boolean: numbers are true unless they are 0; the words True, Wahr, Vrai and
  // False, Falsch, Faux are read in any case, and so is a number in a text. Raises InvalidUseOfNull
  // or TypeMismatch.
  bool boolean() const;

  friend bool operator==(const Value&, const Value&) = default;

 private:
  std::variant<std::monostate, bool, std::int64_t, double, Decimal, DateTime, std::string, Bytes>
      data_;
};

}  // namespace kestrova
