#include "relations/date_expressions.h"

#include <algorithm>
#include <array>

#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"

namespace kestrova {
namespace {

// Where day, month and year stand among the three parts of a date.
struct DateOrder {
  std::string_view name;
  std::size_t day;
  std::size_t month;
  std::size_t year;
};

constexpr std::array kDateOrders = {
    DateOrder{"DMY", 0, 1, 2},
    DateOrder{"MDY", 1, 0, 2},
    DateOrder{"YMD", 2, 1, 0},
    DateOrder{"YDM", 1, 2, 0},
};

constexpr std::string_view kToday = "GETDATE()";

std::string without_apostrophes(std::string_view value) {
  return text::replace_all(value, "'", "");
}

}  // namespace

bool IsDateFieldType(std::int32_t fieldType) {
  return fieldType == static_cast<std::int32_t>(FieldType::kDate) ||
         fieldType == static_cast<std::int32_t>(FieldType::kDBDate) ||
         fieldType == static_cast<std::int32_t>(FieldType::kDBTimeStamp);
}

std::string ToDateExpression(const DateSettings& ctx, std::string_view value) {
  const std::string_view trimmed = text::trim(value);
  if (text::contains_ignoring_case(trimmed, kToday)) return std::string(trimmed);

  const std::string unquoted = without_apostrophes(trimmed);
  const std::string typed(text::trim(unquoted));
  const bool several_points = typed.find('.') != typed.rfind('.');
  if (several_points || !user_locale().is_numeric(typed)) {
    return "'" + suite().date_formatter()->server_date(typed, ctx.flag, ctx.date_order) + "'";
  }
  const bool has_sign = typed.front() == '+' || typed.front() == '-';
  return std::string(kToday) + (has_sign ? "" : "+") + typed;
}

std::string ToDateLiteral(std::string_view value, std::string_view dateOrder) {
  const std::string unquoted = without_apostrophes(value);
  const auto parts = text::split(unquoted, '/');
  const std::string order_name = text::upper(dateOrder);
  const auto order = std::find_if(kDateOrders.begin(), kDateOrders.end(),
                                  [&](const DateOrder& o) { return o.name == order_name; });
  if (parts.size() != 3 || order == kDateOrders.end()) return std::string(value);

  DateTime date;
  date.day = text::to_int16(parts[order->day]);
  date.month = text::to_int16(parts[order->month]);
  date.year = full_year(text::to_int16(parts[order->year]));
  if (!is_valid_date(date.year, date.month, date.day)) {
    throw TypeMismatch("'" + unquoted + "' is no date in the order " + order_name + ".");
  }
  return "'" + format_dmy(date) + "'";
}

}  // namespace kestrova
