// The server's functions, one row of a table each.
#include <algorithm>
#include <array>

#include "platform/error.h"
#include "platform/sqlite/sql_convert.h"
#include "platform/sqlite/sql_date_parts.h"
#include "platform/sqlite/sql_translator.h"
#include "platform/text.h"

namespace kestrova::sql {

struct FunctionTable {
  struct Row {
    std::string_view name;
    std::size_t min_arguments;
    std::size_t max_arguments;
    Fragment (Translator::*write)(const Expr&);
  };
  static constexpr std::size_t kMany = 1'000;
  // clang-format off
  static constexpr std::array<Row, 31> kRows = {{
      {"ISNULL",        2, 2,     &Translator::isnull},
      {"COALESCE",      2, kMany, &Translator::coalesce},
      {"NULLIF",        2, 2,     &Translator::nullif},
      {"LTRIM",         1, 1,     &Translator::trim},
      {"RTRIM",         1, 1,     &Translator::trim},
      {"LEN",           1, 1,     &Translator::len},
      {"UPPER",         1, 1,     &Translator::change_case},
      {"LOWER",         1, 1,     &Translator::change_case},
      {"SUBSTRING",     3, 3,     &Translator::substring},
      {"LEFT",          2, 2,     &Translator::left_or_right},
      {"RIGHT",         2, 2,     &Translator::left_or_right},
      {"REPLACE",       3, 3,     &Translator::replace},
      {"CHARINDEX",     2, 2,     &Translator::charindex},
      {"ABS",           1, 1,     &Translator::number_function},
      {"FLOOR",         1, 1,     &Translator::number_function},
      {"CEILING",       1, 1,     &Translator::number_function},
      {"ROUND",         2, 2,     &Translator::round},
      {"YEAR",          1, 1,     &Translator::date_piece},
      {"MONTH",         1, 1,     &Translator::date_piece},
      {"DAY",           1, 1,     &Translator::date_piece},
      {"DATEADD",       3, 3,     &Translator::dateadd},
      {"DATEDIFF",      3, 3,     &Translator::datediff},
      {"DATEPART",      2, 2,     &Translator::datepart},
      {"GETDATE",       0, 0,     &Translator::getdate},
      {"OBJECT_ID",     1, 1,     &Translator::object_id},
      {"COUNT",         0, 1,     &Translator::aggregate},
      {"COUNT_BIG",     0, 1,     &Translator::aggregate},
      {"SUM",           1, 1,     &Translator::aggregate},
      {"MIN",           1, 1,     &Translator::aggregate},
      {"MAX",           1, 1,     &Translator::aggregate},
      {"AVG",           1, 1,     &Translator::aggregate},
  }};
  // clang-format on
};

namespace {

constexpr SqlType kInt{TypeId::kInt, 0, 0};
constexpr SqlType kDateTime{TypeId::kDateTime, 0, 0};

Fragment fragment(std::string sql, const SqlType& type) {
  Fragment result;
  result.sql = std::move(sql);
  result.type = type;
  return result;
}

SqlType varying(SqlType type) {
  if (type.id == TypeId::kChar) type.id = TypeId::kVarChar;
  if (type.id == TypeId::kNChar) type.id = TypeId::kNVarChar;
  return type;
}

}  // namespace

Fragment Translator::function(const Expr& expr) {
  const auto& rows = FunctionTable::kRows;
  const auto row = std::find_if(rows.begin(), rows.end(),
                                [&](const FunctionTable::Row& r) { return r.name == expr.text; });
  if (row == rows.end()) {
    fail("'" + expr.text + "' is not a recognized built-in function name.", expr.offset, 195);
  }
  const bool is_count = expr.text.starts_with("COUNT");
  const std::size_t count = expr.parts.size() + (expr.star ? 1 : 0);
  if (count < std::max<std::size_t>(row->min_arguments, is_count ? 1 : 0) ||
      count > row->max_arguments) {
    fail("The function " + expr.text + " is called with a wrong number of arguments.", expr.offset,
         174);
  }
  const bool is_aggregate = row->write == &Translator::aggregate;
  if ((expr.star && !is_count) || (expr.distinct && !is_aggregate)) {
    fail("Incorrect syntax near '" + expr.text + "'.", expr.offset, 102);
  }
  return (this->*row->write)(expr);
}

Fragment Translator::isnull(const Expr& expr) {
  const Fragment first = value(*expr.parts[0]);
  Fragment second = value(*expr.parts[1]);
  const SqlType type = first.type.type_class() == TypeClass::kNull ? second.type : first.type;
  if (type.is_text() && second.type.type_class() != TypeClass::kNull) {
    second.sql = text_of_size(second, type);
  } else {
    second = assign(std::move(second), type, expr.offset);
  }
  return fragment("ifnull(" + first.sql + ", " + second.sql + ")", type);
}

Fragment Translator::coalesce(const Expr& expr) {
  std::vector<Fragment> arguments;
  SqlType type;
  for (const ExprPtr& part : expr.parts) {
    arguments.push_back(value(*part));
    type = common_type(type, arguments.back().type);
  }
  // Nested pairs: the embedded database limits the number of arguments.
  std::string sql = convert(std::move(arguments.back()), type, expr.offset).sql;
  for (std::size_t i = arguments.size() - 1; i-- > 0;) {
    sql = "ifnull(" + convert(std::move(arguments[i]), type, expr.offset).sql + ", " + sql + ")";
  }
  return fragment(std::move(sql), type);
}

Fragment Translator::nullif(const Expr& expr) {
  const Fragment first = value(*expr.parts[0]);
  const Fragment second = value(*expr.parts[1]);
  const std::string equal = compare(first, "=", second, expr.offset);
  return fragment("CASE WHEN " + equal + " THEN NULL ELSE " + first.sql + " END", first.type);
}

Fragment Translator::trim(const Expr& expr) {
  const Fragment operand = as_text(value(*expr.parts[0]));
  const std::string name = expr.text == "LTRIM" ? "ltrim(" : "rtrim(";
  return fragment(name + operand.sql + ")", varying(operand.type));
}

Fragment Translator::len(const Expr& expr) {
  const Fragment operand = as_text(value(*expr.parts[0]));
  return fragment("length(rtrim(" + operand.sql + "))", kInt);
}

Fragment Translator::change_case(const Expr& expr) {
  const Fragment operand = as_text(value(*expr.parts[0]));
  const std::string name = expr.text == "UPPER" ? "server_upper(" : "server_lower(";
  return fragment(name + operand.sql + ")", varying(operand.type));
}

Fragment Translator::number_argument(const Expr& expr, std::size_t index, TypeId type) {
  Fragment argument = value(*expr.parts[index]);
  const SqlType target{type, 0, 0};
  if (argument.type.is_date() || argument.type.type_class() == TypeClass::kBinary) {
    fail("Argument data type " + argument.type.declaration() + " is invalid for argument " +
             std::to_string(index + 1) + " of " + expr.text + " function.",
         expr.offset, 8116);
  }
  return assign(std::move(argument), target, expr.offset);
}

Fragment Translator::substring(const Expr& expr) {
  const Fragment operand = as_text(value(*expr.parts[0]));
  return fragment("server_substring(" + operand.sql + ", " +
                      number_argument(expr, 1, TypeId::kInt).sql + ", " +
                      number_argument(expr, 2, TypeId::kInt).sql + ")",
                  varying(operand.type));
}

Fragment Translator::left_or_right(const Expr& expr) {
  const Fragment operand = as_text(value(*expr.parts[0]));
  const std::string name = expr.text == "LEFT" ? "server_left(" : "server_right(";
  return fragment(name + operand.sql + ", " + number_argument(expr, 1, TypeId::kInt).sql + ")",
                  varying(operand.type));
}

Fragment Translator::replace(const Expr& expr) {
  std::string sql = "server_replace(";
  SqlType type;
  for (std::size_t i = 0; i < 3; ++i) {
    const Fragment argument = as_text(value(*expr.parts[i]));
    type = common_type(type, argument.type);
    sql += (i > 0 ? ", " : "") + argument.sql;
  }
  type = varying(type);
  if (type.size != 0) type.size = type.id == TypeId::kNVarChar ? 4000 : 8000;
  return fragment(sql + ")", type);
}

Fragment Translator::charindex(const Expr& expr) {
  const Fragment needle = as_text(value(*expr.parts[0]));
  const Fragment text = as_text(value(*expr.parts[1]));
  return fragment("server_charindex(" + needle.sql + ", " + text.sql + ")", kInt);
}

Fragment Translator::number_function(const Expr& expr) {
  Fragment operand = value(*expr.parts[0]);
  if (operand.type.type_class() == TypeClass::kNull) operand.type = kInt;
  if (!operand.type.is_number()) operand = number_argument(expr, 0, TypeId::kFloat);
  SqlType type = operand.type;
  std::string name = "abs(";
  if (expr.text != "ABS") {
    name = expr.text == "FLOOR" ? "floor(" : "ceil(";
    if (type.id == TypeId::kDecimal) type.scale = 0;
  }
  return fragment(name + operand.sql + ")", type);
}

Fragment Translator::round(const Expr& expr) {
  Fragment operand = value(*expr.parts[0]);
  if (operand.type.type_class() == TypeClass::kNull) operand.type = kInt;
  if (!operand.type.is_number()) operand = number_argument(expr, 0, TypeId::kFloat);
  std::string sql =
      "server_round(" + operand.sql + ", " + number_argument(expr, 1, TypeId::kInt).sql + ")";
  if (operand.type.is_integer()) sql = "CAST(" + sql + " AS INTEGER)";
  return fragment(std::move(sql), operand.type);
}

Fragment Translator::date_piece(const Expr& expr) {
  const Fragment date = as_date(value(*expr.parts[0]), expr.offset);
  const std::string range = expr.text == "YEAR" ? "1, 4" : expr.text == "MONTH" ? "6, 2" : "9, 2";
  return fragment("CAST(substr(" + date.sql + ", " + range + ") AS INTEGER)", kInt);
}

std::string Translator::date_part_code(const Expr& expr, const SqlType& date) {
  const Expr& part = *expr.parts[0];
  const auto found = part.kind == ExprKind::kColumn && part.qualifier.empty()
                         ? date_part_named(part.text)
                         : std::nullopt;
  if (!found) {
    fail("'" + part.text + "' is not a recognized " + expr.text + " option.", part.offset, 155);
  }
  const bool of_day = *found >= DatePart::kHour;
  if ((of_day && date.id == TypeId::kDate) || (!of_day && date.id == TypeId::kTime)) {
    fail("The datepart " + part.text + " is not supported by " + expr.text + " for data type " +
             date.declaration() + ".",
         part.offset, 9810);
  }
  return std::to_string(static_cast<int>(*found));
}

Fragment Translator::dateadd(const Expr& expr) {
  const std::string count = number_argument(expr, 1, TypeId::kInt).sql;
  const Fragment date = as_date(value(*expr.parts[2]), expr.offset);
  const std::string part = date_part_code(expr, date.type);
  return fragment("server_dateadd(" + part + ", " + count + ", " + date.sql + ", " +
                      std::to_string(static_cast<int>(date.type.id)) + ")",
                  date.type);
}

Fragment Translator::datediff(const Expr& expr) {
  const Fragment first = as_date(value(*expr.parts[1]), expr.offset);
  const Fragment second = as_date(value(*expr.parts[2]), expr.offset);
  const std::string part = date_part_code(expr, kDateTime);
  return fragment("server_datediff(" + part + ", " + first.sql + ", " + second.sql + ")", kInt);
}

Fragment Translator::datepart(const Expr& expr) {
  const Fragment date = as_date(value(*expr.parts[1]), expr.offset);
  const std::string part = date_part_code(expr, date.type);
  return fragment("server_datepart(" + part + ", " + date.sql + ")", kInt);
}

Fragment Translator::getdate(const Expr&) {
  return fragment(stored_literal(format_stored_date(fit_date(now_, TypeId::kDateTime))), kDateTime);
}

Fragment Translator::object_id(const Expr& expr) {
  const Expr& argument = *expr.parts[0];
  if (argument.kind != ExprKind::kText && argument.kind != ExprKind::kWideText) {
    fail("The argument of OBJECT_ID must be a text literal.", argument.offset, 8116);
  }
  std::string name = argument.text;
  name = name.substr(name.find_last_of('.') + 1);  // npos + 1 is 0
  if (name.size() > 2 && name.front() == '[' && name.back() == ']') {
    name = name.substr(1, name.size() - 2);
  }
  return fragment(schema_.find(name) ? "1" : "NULL", kInt);
}

Fragment Translator::aggregate(const Expr& expr) {
  if (!scope_ || scope_->phase != Phase::kGroups) {
    fail("An aggregate may not appear in the WHERE, ON, GROUP BY, SET or VALUES clause.",
         expr.offset, 147);
  }
  if (scope_->in_aggregate) {
    fail("Cannot perform an aggregate function on an expression containing an aggregate.",
         expr.offset, 130);
  }
  if (expr.star) {
    return fragment("COUNT(*)", {expr.text == "COUNT" ? TypeId::kInt : TypeId::kBigInt, 0, 0});
  }
  Scope* const scope = scope_;
  scope->in_aggregate = true;
  const Fragment argument = value(*expr.parts[0]);
  scope->in_aggregate = false;
  const std::string distinct = expr.distinct ? "DISTINCT " : "";
  const auto call = [&](const std::string& name) {
    return name + "(" + distinct + collated(argument) + ")";
  };
  if (expr.text.starts_with("COUNT")) {
    return fragment(call("COUNT"), {expr.text == "COUNT" ? TypeId::kInt : TypeId::kBigInt, 0, 0});
  }
  const bool least_or_greatest = expr.text == "MIN" || expr.text == "MAX";
  SqlType type = argument.type;
  const bool is_null = type.type_class() == TypeClass::kNull;
  if (is_null || type.type_class() == TypeClass::kBit ||
      (!least_or_greatest && !type.is_number())) {
    fail("Operand data type " + type.declaration() + " is invalid for " + expr.text + " operator.",
         expr.offset, 8117);
  }
  if (least_or_greatest) return fragment(call(expr.text), type);
  if (type.is_integer()) {
    if (type.id < TypeId::kInt) type = kInt;
    const std::string sum = "server_fit(" + call("SUM") + ", " + type_arguments(type) + ")";
    // The server's average of whole numbers is a whole number.
    return fragment(expr.text == "SUM" ? sum : "(" + sum + " / " + call("COUNT") + ")", type);
  }
  if (!type.is_decimal()) return fragment(call(expr.text), {TypeId::kFloat, 0, 0});
  if (type.id == TypeId::kDecimal) {
    type = {TypeId::kDecimal, kMaxPrecision,
            expr.text == "SUM" ? type.scale : std::max(type.scale, 6)};
  }
  const std::string fit = expr.text == "SUM" ? "server_round(" : "server_cut(";
  return fragment(fit + call(expr.text) + ", " + std::to_string(type.scale) + ")", type);
}

}  // namespace kestrova::sql
