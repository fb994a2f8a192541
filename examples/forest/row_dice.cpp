#include "examples/forest/row_dice.h"

#include "platform/text.h"

namespace kestrova {
namespace {

// FNV-1a of a name, continued from a state.
std::uint64_t mix_name(std::uint64_t state, std::string_view name) {
  for (const char c : name) {
    state ^= static_cast<unsigned char>(c);
    state *= 0x100000001b3U;
  }
  return state;
}

// The finisher of splitmix64: spreads every input bit over all output bits.
std::uint64_t spread(std::uint64_t z) {
  z += 0x9e3779b97f4a7c15U;
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
  z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
  return z ^ (z >> 31);
}

std::string padded(std::int64_t number, std::size_t digits) {
  const std::string text = std::to_string(number);
  return std::string(digits > text.size() ? digits - text.size() : 0, '0') + text;
}

std::string quoted(std::string_view opening, std::string_view content) {
  std::string literal(opening);
  literal += content;
  literal += '\'';
  return literal;
}

}  // namespace

std::string sql_text(std::string_view text) {
  return quoted("N'", text::replace_all(text, "'", "''"));
}

std::string sql_number(std::int64_t number) { return std::to_string(number); }

std::string sql_decimal(std::int64_t scaled, int digits) {
  const std::string text = padded(scaled, static_cast<std::size_t>(digits) + 1);
  const std::size_t whole = text.size() - static_cast<std::size_t>(digits);
  return text.substr(0, whole) + "." + text.substr(whole);
}

std::string sql_date(const DateTime& date) {
  return quoted("'", padded(date.year, 4) + padded(date.month, 2) + padded(date.day, 2));
}

RowDice::RowDice(const TableDice& table, std::int64_t row)
    : state_(spread(mix_name(spread(table.seed), table.table) ^
                    spread(static_cast<std::uint64_t>(row)))),
      today_(to_day_count({table.today.year, table.today.month, table.today.day})) {}

std::uint64_t RowDice::roll(std::string_view column, std::string_view purpose) const {
  return spread(mix_name(mix_name(state_, column), purpose));
}

std::int64_t RowDice::between(std::string_view column, std::int64_t low, std::int64_t high) const {
  const auto range = static_cast<std::uint64_t>(high - low + 1);
  return low + static_cast<std::int64_t>(roll(column) % range);
}

bool RowDice::percent(std::string_view column, int share) const {
  return between(column, 0, 99) < share;
}

std::string RowDice::number(std::string_view column, std::int64_t low, std::int64_t high) const {
  return sql_number(between(column, low, high));
}

std::string RowDice::decimal(std::string_view column, std::int64_t low, std::int64_t high,
                             int digits) const {
  return sql_decimal(between(column, low, high), digits);
}

std::string RowDice::bit(std::string_view column, int percent_true) const {
  return percent(column, percent_true) ? "1" : "0";
}

std::string RowDice::text(std::string_view column,
                          std::span<const std::string_view> choices) const {
  return sql_text(choices[static_cast<std::size_t>(roll(column) % choices.size())]);
}

std::string RowDice::date(std::string_view column, std::int64_t first_day,
                          std::int64_t last_day) const {
  return day(between(column, first_day, last_day));
}

std::string RowDice::day(std::int64_t days_after_today) const {
  return sql_date(from_day_count(today_ + static_cast<double>(days_after_today)));
}

std::string RowDice::nullable(std::string_view column, int percent_null,
                              std::string literal) const {
  const bool is_null = static_cast<int>(roll(column, "/null") % 100) < percent_null;
  return is_null ? "NULL" : literal;
}

}  // namespace kestrova
