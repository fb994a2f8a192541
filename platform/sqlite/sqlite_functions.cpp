#include "platform/sqlite/sqlite_functions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <string>
#include <string_view>

#include "platform/sqlite/sql_convert.h"
#include "platform/sqlite/sql_date_parts.h"
#include "platform/sqlite/sql_like.h"
#include "platform/sqlite/sql_translator.h"
#include "platform/text.h"

namespace kestrova::sql {
namespace {

// The arguments and the result of one call.
class Call {
 public:
  Call(sqlite3_context* context, sqlite3_value** values) : context_(context), values_(values) {}

  FunctionState& state() const { return *static_cast<FunctionState*>(sqlite3_user_data(context_)); }
  bool is_null(int i) const { return sqlite3_value_type(values_[i]) == SQLITE_NULL; }
  double number(int i) const { return sqlite3_value_double(values_[i]); }
  std::int64_t integer(int i) const { return sqlite3_value_int64(values_[i]); }
  std::string_view text(int i) const {
    const auto* text = sqlite3_value_text(values_[i]);
    if (!text) return {};
    return {reinterpret_cast<const char*>(text),
            static_cast<std::size_t>(sqlite3_value_bytes(values_[i]))};
  }
  DateTime date(int i) const { return read_stored_date(text(i)); }
  Value stored(int i) const {
    switch (sqlite3_value_type(values_[i])) {
      case SQLITE_NULL:
        return {};
      case SQLITE_INTEGER:
        return integer(i);
      case SQLITE_FLOAT:
        return number(i);
      default:
        return text(i);
    }
  }
  // The type that three arguments from i on describe.
  SqlType type(int i) const {
    return {static_cast<TypeId>(integer(i)), static_cast<int>(integer(i + 1)),
            static_cast<int>(integer(i + 2))};
  }
  DatePart part(int i) const { return static_cast<DatePart>(integer(i)); }

  void give(const Value& value) const {
    if (const auto* text = value.get_if<std::string>()) {
      give(std::string_view(*text));
    } else if (const auto* number = value.get_if<double>()) {
      sqlite3_result_double(context_, *number);
    } else if (const auto* integer = value.get_if<std::int64_t>()) {
      sqlite3_result_int64(context_, *integer);
    } else {
      sqlite3_result_null(context_);
    }
  }
  void give(std::string_view text) const {
    sqlite3_result_text64(context_, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  }
  void give(std::int64_t number) const { sqlite3_result_int64(context_, number); }
  void give(double number) const { sqlite3_result_double(context_, number); }
  void give_argument(int i) const { sqlite3_result_value(context_, values_[i]); }

 private:
  sqlite3_context* context_;
  sqlite3_value** values_;
};

void from_text(const Call& call) { call.give(text_to_stored(call.text(0), call.type(1))); }
void to_text(const Call& call) {
  const std::string text =
      stored_to_text(call.stored(0), call.type(1), static_cast<int>(call.integer(4)));
  call.give(std::string_view(text));
}
void give_number_text(const Call& call) {
  call.give(std::string_view(number_text(call.text(0), call.type(1), call.type(4))));
}
void fit(const Call& call) { call.give(fit_stored(call.stored(0), call.type(1))); }
int places(const Call& call) {
  return static_cast<int>(std::clamp<std::int64_t>(call.integer(1), -400, 400));
}
void give_rounded(const Call& call) { call.give(round_decimal(call.number(0), places(call))); }
void give_cut(const Call& call) { call.give(cut_decimal(call.number(0), places(call))); }
void give_divisor(const Call& call) {
  if (call.number(0) == 0) throw_division_by_zero();
  call.give_argument(0);
}
void give_remainder(const Call& call) {
  call.give(remainder_of(call.number(0), call.number(1), static_cast<int>(call.integer(2))));
}
void give_single(const Call& call) {
  if (call.integer(0) > 1) {
    throw DatabaseError(
        "Subquery returned more than 1 value. This is not permitted when the subquery follows =, "
        "<>, "
        "<, <=, >, >= or when the subquery is used as an expression.",
        "21000", 512);
  }
  call.give_argument(1);
}
void give_missing_key(const Call& call) { throw missing_value(std::string(call.text(0))); }
void give_now(const Call& call) {
  call.give(std::string_view(format_stored_date(fit_date(call.state().now, TypeId::kDateTime))));
}

void give_date(const Call& call, const DateTime& date) {
  call.give(std::string_view(format_stored_date(date)));
}
void give_day_count(const Call& call) { call.give(date_to_days(call.date(0))); }
void give_date_of_days(const Call& call) {
  give_date(call, fit_date(days_to_date(call.number(0)), static_cast<TypeId>(call.integer(1))));
}
void add_days(const Call& call) {
  const DateTime sum = days_to_date(date_to_days(call.date(0)) + call.number(1));
  give_date(call, fit_date(sum, static_cast<TypeId>(call.integer(2))));
}
void dateadd(const Call& call) {
  const DateTime sum = add_to_date(call.part(0), call.integer(1), call.date(2));
  give_date(call, fit_date(sum, static_cast<TypeId>(call.integer(3))));
}
void datediff(const Call& call) {
  call.give(date_difference(call.part(0), call.date(1), call.date(2)));
}
void datepart(const Call& call) { call.give(part_of_date(call.part(0), call.date(1))); }

void like(const Call& call) {
  call.give(std::int64_t{
      matches_pattern(call.text(0), call.text(1), call.text(2), call.integer(3) != 0) ? 1 : 0});
}
void give_upper(const Call& call) { call.give(std::string_view(text::upper(call.text(0)))); }
void give_lower(const Call& call) { call.give(std::string_view(lower(call.text(0)))); }

std::size_t checked_length(const Call& call, int i) {
  if (call.integer(i) < 0) {
    throw DatabaseError("Invalid length parameter passed to the substring function.", "22011", 537);
  }
  return static_cast<std::size_t>(call.integer(i));
}
// Positions before the text count: SUBSTRING('abc', 0, 2) is 'a'.
void substring(const Call& call) {
  const std::size_t length = checked_length(call, 2);
  const std::int64_t end = call.integer(1) + static_cast<std::int64_t>(length);
  const std::int64_t begin = std::max<std::int64_t>(call.integer(1), 1);
  if (end <= begin) return call.give(std::string_view());
  call.give(text::mid(call.text(0), static_cast<std::size_t>(begin),
                      static_cast<std::size_t>(end - begin)));
}
void give_left(const Call& call) { call.give(text::left(call.text(0), checked_length(call, 1))); }
void give_right(const Call& call) {
  const std::size_t length = text::length(call.text(0));
  const std::size_t count = std::min(checked_length(call, 1), length);
  call.give(text::mid(call.text(0), length - count + 1));
}
void replace(const Call& call) {
  call.give(std::string_view(replaced(call.text(0), call.text(1), call.text(2))));
}
void charindex(const Call& call) {
  call.give(static_cast<std::int64_t>(position_of(call.text(0), call.text(1))));
}

struct FunctionRow {
  const char* name;
  int arguments;
  void (*run)(const Call&);
};

// clang-format off
constexpr std::array<FunctionRow, 25> kFunctions = {{
    {"server_missing_key", 1, give_missing_key},
    {"server_from_text",    4, from_text},
    {"server_to_text",      5, to_text},
    {"server_number_text",  7, give_number_text},
    {"server_fit",          4, fit},
    {"server_round",        2, give_rounded},
    {"server_cut",          2, give_cut},
    {"server_divisor",      1, give_divisor},
    {"server_remainder",    3, give_remainder},
    {"server_single",       2, give_single},
    {"server_now",          0, give_now},
    {"server_days",         1, give_day_count},
    {"server_days_to_date", 2, give_date_of_days},
    {"server_add_days",     3, add_days},
    {"server_dateadd",      4, dateadd},
    {"server_datediff",     3, datediff},
    {"server_datepart",     2, datepart},
    {"server_like",         4, like},
    {"server_upper",        1, give_upper},
    {"server_lower",        1, give_lower},
    {"server_substring",    3, substring},
    {"server_left",         2, give_left},
    {"server_right",        2, give_right},
    {"server_replace",      3, replace},
    {"server_charindex",    2, charindex},
}};
// clang-format on

// Which arguments may be NULL without the result being NULL.
bool sees_null(const FunctionRow& row) { return row.run == give_single; }

template <std::size_t Row>
void run(sqlite3_context* context, int count, sqlite3_value** values) {
  const FunctionRow& row = kFunctions[Row];
  const Call call(context, values);
  try {
    for (int i = 0; i < count && !sees_null(row); ++i) {
      if (call.is_null(i)) return sqlite3_result_null(context);
    }
    row.run(call);
  } catch (const DatabaseError& error) {
    call.state().failure = error;
    sqlite3_result_error(context, error.what(), -1);
  } catch (const Error& error) {
    call.state().failure = DatabaseError(error.what(), "22003");
    sqlite3_result_error(context, error.what(), -1);
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  }
}

template <std::size_t... Rows>
void register_all(sqlite3* database, FunctionState& state, std::index_sequence<Rows...>) {
  const auto add = [&](const FunctionRow& row, auto* function) {
    const int constant = row.run == give_now ? 0 : SQLITE_DETERMINISTIC;
    sqlite3_create_function_v2(database, row.name, row.arguments,
                               SQLITE_UTF8 | SQLITE_INNOCUOUS | constant, &state, function, nullptr,
                               nullptr, nullptr);
  };
  (add(kFunctions[Rows], run<Rows>), ...);
}

int compare(void*, int first_bytes, const void* first, int second_bytes, const void* second) {
  return compare_texts({static_cast<const char*>(first), static_cast<std::size_t>(first_bytes)},
                       {static_cast<const char*>(second), static_cast<std::size_t>(second_bytes)});
}

}  // namespace

void register_functions(sqlite3* database, FunctionState& state) {
  register_all(database, state, std::make_index_sequence<kFunctions.size()>());
  sqlite3_create_collation_v2(database, std::string(kTextCollation).c_str(), SQLITE_UTF8, nullptr,
                              compare, nullptr);
}

}  // namespace kestrova::sql
