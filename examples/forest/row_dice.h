// Believable values for generated rows, as SQL literals.
//
// Every value follows from seed, table, row and column alone. So it is the same on every compiler
// and in whatever order values are asked for, and a new column changes none of the others.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/date_time.h"

namespace kestrova {

// Literals of the server's dialect.
std::string sql_text(std::string_view text);
std::string sql_number(std::int64_t number);
std::string sql_decimal(std::int64_t scaled, int digits);  // 1250 with 2 digits is 12.50
std::string sql_date(const DateTime& date);                // the day, in every date order the same

// The values of one table.
struct TableDice {
  std::uint64_t seed = 0;
  std::string_view table;
  DateTime today;
};

class RowDice {
 public:
  RowDice(const TableDice& table, std::int64_t row);

  // A whole number from low to high.
  std::int64_t between(std::string_view column, std::int64_t low, std::int64_t high) const;
  // True for so many rows of a hundred.
  bool percent(std::string_view column, int share) const;

  // Literals of a column.
  std::string number(std::string_view column, std::int64_t low, std::int64_t high) const;
  std::string decimal(std::string_view column, std::int64_t low, std::int64_t high,
                      int digits) const;
  std::string bit(std::string_view column, int percent_true) const;
  std::string text(std::string_view column, std::span<const std::string_view> choices) const;
  // A day between so many days after today (negative: before) and so many.
  std::string date(std::string_view column, std::int64_t first_day, std::int64_t last_day) const;
  // The day that lies so many days after today.
  std::string day(std::int64_t days_after_today) const;
  // NULL for so many rows of a hundred, else the literal.
  std::string nullable(std::string_view column, int percent_null, std::string literal) const;

 private:
  std::uint64_t roll(std::string_view column, std::string_view purpose = {}) const;

  std::uint64_t state_;
  double today_;
};

}  // namespace kestrova
