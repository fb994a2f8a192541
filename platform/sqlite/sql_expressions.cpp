// Expressions and conditions: names, types and the conversions between operands.
#include <algorithm>
#include <array>

#include "platform/error.h"
#include "platform/sqlite/sql_convert.h"
#include "platform/sqlite/sql_scope_guard.h"
#include "platform/sqlite/sql_translator.h"
#include "platform/text.h"

namespace kestrova::sql {
namespace {

constexpr SqlType kInt{TypeId::kInt, 0, 0};
constexpr SqlType kDateTime{TypeId::kDateTime, 0, 0};

// Terms joined as a balanced tree, because the embedded database limits the depth of a chain.
std::string balanced(const std::vector<std::string>& terms, std::size_t begin, std::size_t end,
                     const char* op) {
  if (end - begin == 1) return terms[begin];
  const std::size_t middle = begin + (end - begin) / 2;
  return "(" + balanced(terms, begin, middle, op) + op + balanced(terms, middle, end, op) + ")";
}

// The terms of one chain that the embedded database may look at to choose how it searches. It
// compares each of these with all others.
constexpr std::size_t kSearchTerms = 64;

// In a long chain of ANDs the terms behind the first ones stand behind two NOTs, which change no
// result: so they are one term to it.
std::string all_of(const std::vector<std::string>& terms) {
  if (terms.size() <= kSearchTerms) return balanced(terms, 0, terms.size(), " AND ");
  return "(" + balanced(terms, 0, kSearchTerms, " AND ") + " AND (NOT (NOT " +
         balanced(terms, kSearchTerms, terms.size(), " AND ") + ")))";
}

bool is_condition(const Expr& expr) { return expr.kind >= ExprKind::kAnd; }

bool nonzero_literal(const Fragment& fragment) {
  return fragment.number_literal && parse_number(fragment.sql).value_or(0) != 0;
}

const std::string& operand(const Fragment& fragment, const SqlType& common) {
  return common.is_integer() && !fragment.unchecked.empty() ? fragment.unchecked : fragment.sql;
}

void check_integer(Fragment& arithmetic) {
  arithmetic.unchecked = arithmetic.sql;
  arithmetic.sql = "server_fit(" + arithmetic.sql + ", " + type_arguments(arithmetic.type) + ")";
}

// A divisor that raises the server's error when it is zero.
std::string divisor(const Fragment& fragment) {
  return nonzero_literal(fragment) ? fragment.sql : "server_divisor(" + fragment.sql + ")";
}

// Leading zeros do not count.
int digits_of(std::string_view number) {
  number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
  return static_cast<int>(
      std::count_if(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; }));
}

// Those of a decimal that count: neither zeros that begin it nor zeros that end it.
int significant_digits(std::string_view number) {
  number = number.substr(0, number.find_last_not_of("0.") + 1);
  return digits_of(number.substr(std::min(number.find_first_not_of("0."), number.size())));
}

// A whole-number literal counts in decimal arithmetic with the digits that it has.
SqlType arithmetic_type(const Fragment& operand) {
  if (!operand.number_literal || !operand.type.is_integer()) return operand.type;
  return {TypeId::kDecimal, std::max(digits_of(operand.sql), 1), 0};
}

}  // namespace

std::string type_arguments(const SqlType& type) {
  return std::to_string(static_cast<int>(type.id)) + ", " + std::to_string(type.size) + ", " +
         std::to_string(type.scale);
}

// A style that is not known is an error now and not only when a row comes.
void Translator::check_style(int style, const SqlType& from, const SqlType& to,
                             std::size_t offset) const {
  if (style == 0) return;
  if (from.is_date() && to.is_text()) {
    stored_to_text(Value(format_stored_date(now_)), from, style);
    return;
  }
  constexpr std::array<int, 7> kReadable = {20, 21, 23, 104, 112, 120, 121};
  const bool readable = std::find(kReadable.begin(), kReadable.end(), style) != kReadable.end();
  if (from.is_text() && to.is_date() && readable) return;
  fail("The style " + std::to_string(style) + " is not supported for a conversion from " +
           from.declaration() + " to " + to.declaration() + ".",
       offset, 281);
}

std::string Translator::collated(const Fragment& fragment) {
  const bool text = fragment.type.is_text() || fragment.type.type_class() == TypeClass::kGuid;
  if (!text || fragment.collated) return fragment.sql;
  return fragment.sql + " COLLATE " + std::string(kTextCollation);
}

void Translator::check_grouped(std::size_t offset) {
  if (scope_ == nullptr || scope_->ungrouped.empty()) return;
  const std::string name = scope_->ungrouped.front();
  scope_->ungrouped.clear();
  fail("Column '" + name +
           "' is invalid in the select list because it is not contained in either an aggregate "
           "function or the GROUP BY clause.",
       offset, 8120);
}

Fragment Translator::item_value(const Expr& expr) {
  Fragment result = value(expr);
  check_grouped(expr.offset);
  return result;
}

std::string Translator::item_condition(const Expr& expr) {
  std::string result = condition(expr);
  check_grouped(expr.offset);
  return result;
}

// Beyond 15 digits the stored form of a decimal loses some: such a number is good for a comparison
// with a floating-point one only, of which it names one value exactly.
void Translator::refuse_long(const Fragment& number, std::size_t offset) const {
  if (number.long_number.empty()) return;
  fail("The number " + number.long_number + " has more than 15 digits.", offset, 8115, "22003");
}

Fragment Translator::value(const Expr& expr) {
  Fragment result = comparand(expr);
  refuse_long(result, expr.offset);
  return result;
}

Fragment Translator::comparand(const Expr& expr) {
  if (is_condition(expr)) {
    fail("A condition stands where a value is expected.", expr.offset, 4145);
  }
  Scope* const scope = scope_;
  const std::size_t ungrouped = scope ? scope->ungrouped.size() : 0;
  Fragment result = value_of(expr);
  // A whole expression that is grouped by makes the columns in it good.
  if (scope && scope->ungrouped.size() > ungrouped &&
      std::find(scope->group_keys.begin(), scope->group_keys.end(), result.sql) !=
          scope->group_keys.end()) {
    scope->ungrouped.resize(ungrouped);
  }
  return result;
}

Fragment Translator::value_of(const Expr& expr) {
  switch (expr.kind) {
    case ExprKind::kColumn:
      return column(expr);
    case ExprKind::kMinus:
      return minus(expr);
    case ExprKind::kArithmetic:
      return arithmetic(expr);
    case ExprKind::kCase:
    case ExprKind::kSimpleCase:
      return case_(expr);
    case ExprKind::kCast:
      return cast(expr);
    case ExprKind::kFunction:
      return function(expr);
    case ExprKind::kScalarQuery:
      return scalar_query(expr);
    default:
      return literal(expr);
  }
}

std::string Translator::condition(const Expr& expr) {
  if (!is_condition(expr)) {
    fail("An expression of non-boolean type specified in a context where a condition is expected.",
         expr.offset, 4145);
  }
  return condition_of(expr);
}

std::string Translator::condition_of(const Expr& expr) {
  switch (expr.kind) {
    case ExprKind::kAnd:
      return all_of(conditions(expr));
    case ExprKind::kOr: {
      const std::vector<std::string> terms = conditions(expr);
      return balanced(terms, 0, terms.size(), " OR ");
    }
    case ExprKind::kNot:
      return "(NOT " + condition(*expr.parts[0]) + ")";
    case ExprKind::kCompare:
      return compare(comparand(*expr.parts[0]), expr.text, comparand(*expr.parts[1]), expr.offset);
    case ExprKind::kLike:
      return like(expr);
    case ExprKind::kBetween:
      return between(expr);
    case ExprKind::kIn:
      return in(expr);
    case ExprKind::kInQuery:
      return in_query(expr);
    case ExprKind::kIsNull:
      return "(" + value(*expr.parts[0]).sql + (expr.negated ? " IS NOT NULL)" : " IS NULL)");
    default: {
      const WrittenQuery inner = write_query(*expr.query, Naming::kFree, false, false);
      return "EXISTS (" + inner.sql + ")";
    }
  }
}

std::vector<std::string> Translator::conditions(const Expr& chain) {
  std::vector<std::string> terms;
  terms.reserve(chain.parts.size());
  for (const ExprPtr& part : chain.parts) terms.push_back(condition(*part));
  return terms;
}

Fragment Translator::literal(const Expr& expr) {
  Fragment result;
  switch (expr.kind) {
    case ExprKind::kInteger: {
      const auto number = parse_integer(expr.text);
      if (!number) fail("The number " + expr.text + " is too large.", expr.offset, 8115, "22003");
      result.type =
          *number <= 2'147'483'647 ? kInt : SqlType{TypeId::kDecimal, digits_of(expr.text), 0};
      result.sql = std::to_string(*number);
      result.number_literal = true;
      return result;
    }
    case ExprKind::kDecimal: {
      const std::size_t point = expr.text.find('.');
      const int scale = static_cast<int>(expr.text.size() - point - 1);
      const int size = digits_of(expr.text);
      if (significant_digits(expr.text) > kExactDigits) result.long_number = expr.text;
      result.type = {TypeId::kDecimal, std::max(size, 1), scale};
      result.sql = stored_literal(parse_number(expr.text).value_or(0));
      result.number_literal = true;
      return result;
    }
    case ExprKind::kFloat: {
      const auto number = parse_number(expr.text);
      if (!number) fail("The number " + expr.text + " is too large.", expr.offset, 8115, "22003");
      result.type = {TypeId::kFloat, 0, 0};
      result.sql = stored_literal(*number);
      result.number_literal = true;
      return result;
    }
    case ExprKind::kText:
    case ExprKind::kWideText: {
      const int length = static_cast<int>(std::min<std::size_t>(text::length(expr.text), 8001));
      const bool wide = expr.kind == ExprKind::kWideText;
      result.type = {wide ? TypeId::kNVarChar : TypeId::kVarChar,
                     length > (wide ? 4000 : 8000) ? 0 : std::max(length, 1), 0};
      result.sql = stored_literal(expr.text);
      result.text_literal = expr.text;
      return result;
    }
    case ExprKind::kBinary:
      result.type = {TypeId::kVarBinary, std::max(1, static_cast<int>(expr.text.size() / 2)), 0};
      result.sql = "X'" + (expr.text.size() % 2 == 0 ? "" : std::string("0")) + expr.text + "'";
      return result;
    default:
      result.sql = "NULL";
      return result;
  }
}

Fragment Translator::column(const Expr& expr) {
  const std::string name = text::upper(expr.text);
  const std::string qualifier = text::upper(expr.qualifier);
  bool qualifier_known = false;
  for (Scope* scope = scope_; scope != nullptr; scope = scope->outer) {
    const Source* found_source = nullptr;
    const SourceColumn* found = nullptr;
    for (std::size_t i = scope->first_visible; i < scope->sources.size(); ++i) {
      const Source& source = scope->sources[i];
      if (!qualifier.empty() && source.upper_name != qualifier) continue;
      qualifier_known = qualifier_known || !qualifier.empty();
      for (const SourceColumn& candidate : source.columns) {
        if (candidate.upper_name != name) continue;
        if (found) fail("Ambiguous column name '" + expr.text + "'.", expr.offset, 209);
        found = &candidate;
        found_source = &source;
      }
    }
    if (!found) {
      if (qualifier_known) break;
      continue;
    }
    Fragment result;
    result.sql = quoted_name(found_source->name) + "." + quoted_name(found->name);
    result.type = found->type;
    result.collated = true;
    if (found->of_table) result.column = found->name;
    const bool needs_group =
        scope->grouped && scope->phase == Phase::kGroups && !scope->in_aggregate;
    if (needs_group && std::find(scope->group_keys.begin(), scope->group_keys.end(), result.sql) ==
                           scope->group_keys.end()) {
      scope->ungrouped.push_back(found->name);
    }
    return result;
  }
  if (!qualifier.empty() && !qualifier_known) {
    fail("The multi-part identifier \"" + expr.qualifier + "." + expr.text +
             "\" could not be bound.",
         expr.offset, 4104);
  }
  throw DatabaseError("Invalid column name '" + expr.text + "'.", "42S22", 207);
}

Fragment Translator::minus(const Expr& expr) {
  Fragment operand = comparand(*expr.parts[0]);
  if (operand.type.type_class() == TypeClass::kNull) operand.type = kInt;
  if (!operand.type.is_number()) {
    fail("Operand data type " + operand.type.declaration() + " is invalid for minus operator.",
         expr.offset, 8117);
  }
  Fragment result;
  result.long_number = operand.long_number;
  result.type = operand.type;
  result.number_literal = operand.number_literal;
  result.sql = "(-" + operand.sql + ")";
  if (result.type.is_integer() && !result.number_literal) check_integer(result);
  return result;
}

Fragment Translator::arithmetic(const Expr& expr) {
  Fragment left = value(*expr.parts[0]);
  Fragment right = value(*expr.parts[1]);
  const char op = expr.text[0];
  if (op == '+' && (left.type.is_text() || left.type.type_class() == TypeClass::kNull) &&
      (right.type.is_text() || right.type.type_class() == TypeClass::kNull) &&
      (left.type.is_text() || right.type.is_text())) {
    Fragment result;
    result.type = common_type(left.type, right.type);
    const auto unlimited = [](const SqlType& type) { return type.is_text() && type.size == 0; };
    if (unlimited(left.type) || unlimited(right.type)) {
      result.type.size = 0;
    } else {
      const int limit = result.type.id < TypeId::kNChar ? 8000 : 4000;
      result.type.size = std::min(left.type.size + right.type.size, limit);
    }
    if (result.type.id == TypeId::kNChar) result.type.id = TypeId::kNVarChar;
    if (result.type.id == TypeId::kChar) result.type.id = TypeId::kVarChar;
    result.sql = "(" + left.sql + " || " + right.sql + ")";
    return result;
  }
  if (left.type.is_date() || right.type.is_date()) {
    return date_arithmetic(expr, std::move(left), std::move(right));
  }
  SqlType common = common_type(left.type, right.type);
  if (common.type_class() == TypeClass::kNull) common = kInt;
  const bool both_bits = common.type_class() == TypeClass::kBit;
  const bool no_remainder = op == '%' && !common.is_integer() && !common.is_decimal();
  if (!common.is_number() || both_bits || no_remainder) {
    fail("The data types " + left.type.declaration() + " and " + right.type.declaration() +
             " are incompatible in the operator " + expr.text + ".",
         expr.offset, 402);
  }
  Fragment result;
  result.type = common;
  if (left.type.is_text() || right.type.is_text()) {
    left = convert(std::move(left), common, expr.offset);
    right = convert(std::move(right), common, expr.offset);
  }
  if (op == '%' && common.is_decimal()) {
    result.sql = left.sql + ", " + right.sql;
  } else if (op == '/' || op == '%') {
    const std::string dividend =
        common.is_integer() ? operand(left, common) : "CAST(" + left.sql + " AS REAL)";
    result.sql = "(" + dividend + " " + op + " " + divisor(right) + ")";
  } else {
    result.sql = "(" + operand(left, common) + " " + op + " " + operand(right, common) + ")";
  }
  if (common.id == TypeId::kDecimal) {
    const SqlType a = arithmetic_type(left.type.type_class() == TypeClass::kNull ? right : left);
    const SqlType b = arithmetic_type(right.type.type_class() == TypeClass::kNull ? left : right);
    result.type = decimal_result(op, a, b);
  }
  if (common.is_decimal()) {
    const std::string function = op == '/'   ? "server_cut("
                                 : op == '%' ? "server_remainder("
                                             : "server_round(";
    result.sql = function + result.sql + ", " + std::to_string(result.type.scale) + ")";
  } else if (common.is_integer()) {
    check_integer(result);
  }
  return result;
}

Fragment Translator::date_arithmetic(const Expr& expr, Fragment left, Fragment right) {
  const char op = expr.text[0];
  const SqlType date = common_type(left.type, right.type);
  const bool adds_days = date.id == TypeId::kDateTime || date.id == TypeId::kSmallDateTime;
  if ((op != '+' && op != '-') || !adds_days) {
    fail("The data types " + left.type.declaration() + " and " + right.type.declaration() +
             " are incompatible in the operator " + expr.text + ".",
         expr.offset, 402);
  }
  Fragment result;
  result.type = date;
  const std::string sign = op == '-' ? "-" : "";
  const std::string end = ", " + std::to_string(static_cast<int>(date.id)) + ")";
  const auto counts_days = [](const SqlType& type) {
    return type.is_number() || type.type_class() == TypeClass::kBit ||
           type.type_class() == TypeClass::kNull;
  };
  if (counts_days(right.type)) {
    result.sql = "server_add_days(" + left.sql + ", " + sign + right.sql + end;
    return result;
  }
  if (counts_days(left.type) && op == '+') {
    result.sql = "server_add_days(" + right.sql + ", " + left.sql + end;
    return result;
  }
  left = convert(std::move(left), date, expr.offset);
  right = convert(std::move(right), date, expr.offset);
  result.sql = "server_add_days(" + left.sql + ", " + sign + "server_days(" + right.sql + ")" + end;
  return result;
}

Fragment Translator::case_(const Expr& expr) {
  const bool simple = expr.kind == ExprKind::kSimpleCase;
  std::size_t at = 0;
  Fragment operand;
  if (simple) operand = value(*expr.parts[at++]);
  std::vector<std::string> conditions;
  std::vector<Fragment> results;
  const std::size_t end = expr.parts.size() - (expr.has_else ? 1 : 0);
  for (; at < end; at += 2) {
    const Expr& when = *expr.parts[at];
    conditions.push_back(simple ? compare(operand, "=", value(when), when.offset)
                                : condition(when));
    results.push_back(value(*expr.parts[at + 1]));
  }
  if (expr.has_else) results.push_back(value(*expr.parts.back()));
  Fragment result;
  for (const Fragment& branch : results) result.type = common_type(result.type, branch.type);
  result.sql = "CASE";
  for (std::size_t i = 0; i < results.size(); ++i) {
    results[i] = convert(std::move(results[i]), result.type, expr.offset);
    if (i < conditions.size()) {
      result.sql += " WHEN " + conditions[i] + " THEN " + results[i].sql;
    } else {
      result.sql += " ELSE " + results[i].sql;
    }
  }
  result.sql += " END";
  return result;
}

Fragment Translator::cast(const Expr& expr) {
  Fragment operand = value(*expr.parts[0]);
  int style = 0;
  if (expr.parts.size() > 1) {
    const auto number = text::to_integer(expr.parts[1]->text);
    if (expr.parts[1]->kind != ExprKind::kInteger || !number) {
      fail("The style of CONVERT must be a number.", expr.parts[1]->offset, 8116);
    }
    style = static_cast<int>(std::min<std::int64_t>(*number, 1000));
  }
  const SqlType& from = operand.type;
  const SqlType& to = expr.type;
  check_style(style, from, to, expr.offset);
  Fragment result;
  result.type = to;
  if (from.type_class() == TypeClass::kNull) {
    result.sql = "NULL";
  } else if (to.is_text()) {
    if (from.is_text() && from.size == 0 && to.size == 0) {
      result.sql = operand.sql;
      result.collated = operand.collated;
      return result;
    }
    if (from.is_date() && style != 0) {
      operand.sql = "server_to_text(" + operand.sql + ", " + type_arguments(from) + ", " +
                    std::to_string(style) + ")";
      operand.type = {TypeId::kVarChar, 40, 0};
    }
    result.sql = text_of_size(operand, to);
  } else if (from.is_date() && (to.is_number())) {
    const std::string days = "server_days(" + operand.sql + ")";
    result.sql = to.is_integer()
                     ? "server_fit(server_round(" + days + ", 0), " + type_arguments(to) + ")"
                     : "server_fit(" + days + ", " + type_arguments(to) + ")";
  } else {
    result = assign(std::move(operand), to, expr.offset);
  }
  result.type = to;
  result.text_literal.reset();
  result.unchecked.clear();
  result.number_literal = false;
  result.collated = false;
  result.column.clear();
  return result;
}

Fragment Translator::scalar_query(const Expr& expr) {
  WrittenQuery inner = write_query(*expr.query, Naming::kNamed, false, false);
  if (inner.items.size() != 1) {
    fail(
        "Only one expression can be specified in the select list when the subquery is not "
        "introduced "
        "with EXISTS.",
        expr.offset, 116);
  }
  Fragment result;
  result.type = inner.items[0].type;
  if (inner.single_row) {
    result.sql = "(" + inner.sql + ")";
  } else {
    // The embedded database would take the first of several rows; the server refuses them.
    result.sql = "(SELECT server_single(COUNT(*), MAX(\"u0\")) FROM (SELECT \"u0\" FROM (" +
                 inner.sql + ") LIMIT 2))";
  }
  return result;
}

std::string Translator::like(const Expr& expr) {
  const Fragment operand = as_text(value(*expr.parts[0]));
  const Fragment pattern = as_text(value(*expr.parts[1]));
  // Only for texts of the old one-byte types LIKE overlooks blanks that end the text.
  const bool narrow = common_type(operand.type, pattern.type).id <= TypeId::kVarChar;
  std::string escape = "''";
  if (expr.parts.size() > 2) {
    const Expr& written = *expr.parts[2];
    if ((written.kind != ExprKind::kText && written.kind != ExprKind::kWideText) ||
        text::length(written.text) != 1) {
      fail("The invalid escape character was specified in a LIKE predicate.", written.offset, 506);
    }
    escape = stored_literal(written.text);
  }
  const std::string result = "server_like(" + operand.sql + ", " + pattern.sql + ", " + escape +
                             (narrow ? ", 1)" : ", 0)");
  return expr.negated ? "(NOT " + result + ")" : result;
}

std::string Translator::between(const Expr& expr) {
  const Fragment operand = comparand(*expr.parts[0]);
  const std::string low = compare(operand, ">=", comparand(*expr.parts[1]), expr.offset);
  const std::string high = compare(operand, "<=", comparand(*expr.parts[2]), expr.offset);
  const std::string both = "(" + low + " AND " + high + ")";
  return expr.negated ? "(NOT " + both + ")" : both;
}

std::string Translator::in(const Expr& expr) {
  const Fragment operand = comparand(*expr.parts[0]);
  std::string members;
  std::vector<std::string> comparisons;
  bool converted = false;
  for (std::size_t i = 1; i < expr.parts.size(); ++i) {
    Fragment left = operand;
    Fragment right = comparand(*expr.parts[i]);
    bring_together(left, right, expr.parts[i]->offset);
    converted = converted || left.sql != operand.sql;
    members += (i > 1 ? ", " : "") + right.sql;
    comparisons.push_back("(" + collated(left) + " = " + right.sql + ")");
  }
  // Members that the operand is converted for are compared one by one.
  const std::string result = converted ? balanced(comparisons, 0, comparisons.size(), " OR ")
                                       : "(" + collated(operand) + " IN (" + members + "))";
  return expr.negated ? "(NOT " + result + ")" : result;
}

std::string Translator::in_query(const Expr& expr) {
  Fragment left = value(*expr.parts[0]);
  WrittenQuery inner = write_query(*expr.query, Naming::kNamed, false, false);
  if (inner.items.size() != 1) {
    fail(
        "Only one expression can be specified in the select list when the subquery is not "
        "introduced "
        "with EXISTS.",
        expr.offset, 116);
  }
  Fragment right;
  right.type = inner.items[0].type;
  right.sql = "\"u0\"";
  right.collated = true;
  bring_together(left, right, expr.offset);
  // Distinct, because texts that are equal but of another length break the tree of the members.
  const bool distinct = right.type.is_text();
  const std::string rows = right.sql == "\"u0\"" && !distinct
                               ? inner.sql
                               : "SELECT " + std::string(distinct ? "DISTINCT " : "") +
                                     collated(right) + " FROM (" + inner.sql + ")";
  return "(" + collated(left) + (expr.negated ? " NOT IN (" : " IN (") + rows + "))";
}

std::string Translator::compare(Fragment left, const std::string& op, Fragment right,
                                std::size_t offset) {
  bring_together(left, right, offset);
  return "(" + collated(left) + " " + op + " " + right.sql + ")";
}

void Translator::bring_together(Fragment& left, Fragment& right, std::size_t offset) {
  const SqlType common = common_type(left.type, right.type);
  if (common.type_class() != TypeClass::kFloat) {
    refuse_long(left, offset);
    refuse_long(right, offset);
  }
  left = convert(std::move(left), common, offset);
  right = convert(std::move(right), common, offset);
}

Fragment Translator::as_text(Fragment from) {
  const SqlType type = from.type;
  if (type.is_text()) return from;
  Fragment result;
  result.type = {TypeId::kVarChar, 40, 0};
  if (type.type_class() == TypeClass::kNull) {
    result.sql = "NULL";
  } else if (type.type_class() == TypeClass::kGuid) {
    result.sql = from.sql;
    result.collated = from.collated;
  } else if (type.is_integer() || type.type_class() == TypeClass::kBit) {
    result.sql = "CAST(" + from.sql + " AS TEXT)";
  } else if (type.type_class() == TypeClass::kBinary) {
    throw DatabaseError("Conversion from data type varbinary to a text is not supported.", "42000",
                        257);
  } else {
    result.sql = "server_to_text(" + from.sql + ", " + type_arguments(type) + ", 0)";
  }
  return result;
}

// As CAST and ISNULL do it: a text is cut, a number is never shortened to another one.
std::string Translator::text_of_size(const Fragment& from, const SqlType& to) {
  const Fragment text = as_text(from);
  const bool fits = to.size == 0 || (text.type.size != 0 && text.type.size <= to.size);
  if (fits) return text.sql;
  if (from.type.is_number()) {
    return "server_number_text(" + text.sql + ", " + type_arguments(from.type) + ", " +
           type_arguments(to) + ")";
  }
  return "substr(" + text.sql + ", 1, " + std::to_string(to.size) + ")";
}

Fragment Translator::as_date(Fragment from, std::size_t offset) {
  if (from.type.is_date()) return from;
  return convert(std::move(from), kDateTime, offset);
}

Fragment Translator::convert_literal(const Fragment& from, const SqlType& to, std::size_t offset) {
  Fragment result;
  result.type = to;
  if (to.type_class() == TypeClass::kBinary) {
    fail("Implicit conversion from data type varchar to varbinary is not allowed.", offset, 257);
  }
  const auto number = to.is_number() ? parse_number(*from.text_literal) : std::nullopt;
  if (to.is_number() && !number) throw_bad_number(*from.text_literal, to);
  result.sql = stored_literal(text_to_stored(*from.text_literal, to));
  return result;
}

Fragment Translator::convert(Fragment from, const SqlType& to, std::size_t offset) {
  const TypeClass source = from.type.type_class();
  const TypeClass target = to.type_class();
  const auto converted = [&](const std::string& sql) {
    Fragment result;
    result.type = to;
    result.sql = sql;
    return result;
  };
  if (source == TypeClass::kNull || target == TypeClass::kNull) return from;
  if (target == TypeClass::kText) {
    Fragment result = as_text(std::move(from));
    if (source != TypeClass::kText) result.column.clear();
    result.type = to;
    return result;
  }
  if (from.text_literal && source != target) return convert_literal(from, to, offset);
  if (source == TypeClass::kText && target != TypeClass::kBinary) {
    return converted("server_from_text(" + from.sql + ", " + type_arguments(to) + ")");
  }
  const bool clash = (from.type.id == TypeId::kTime && to.is_date() && to.id != TypeId::kTime) ||
                     (from.type.id == TypeId::kDate && to.id == TypeId::kTime);
  if (target == TypeClass::kDate && (from.type.is_number() || source == TypeClass::kBit)) {
    return converted("server_days_to_date(" + from.sql + ", " +
                     std::to_string(static_cast<int>(to.id)) + ")");
  }
  const bool both_numbers = (to.is_number() || target == TypeClass::kBit) &&
                            (from.type.is_number() || source == TypeClass::kBit);
  if (!clash && (source == target || both_numbers)) return from;
  fail("Operand type clash: " + from.type.declaration() + " is incompatible with " +
           to.declaration() + ".",
       offset, 206);
}

Fragment Translator::assign(Fragment from, const SqlType& to, std::size_t offset) {
  const SqlType source = from.type;
  if (source.type_class() == TypeClass::kNull) return from;
  if (from.text_literal && !to.is_text()) {
    if (to.type_class() == TypeClass::kBinary) return convert_literal(from, to, offset);
    Fragment result;
    result.type = to;
    result.sql = stored_literal(text_to_stored(*from.text_literal, to));
    return result;
  }
  if (source.is_date() && to.type_class() != TypeClass::kDate && !to.is_text()) {
    fail("Implicit conversion from data type " + source.declaration() + " to " + to.declaration() +
             " is not allowed. Use the CONVERT function to run this query.",
         offset, 257);
  }
  Fragment result = convert(std::move(from), to, offset);
  bool narrower = false;
  if (to.is_integer()) narrower = !source.is_integer() || source.id > to.id;
  if (to.type_class() == TypeClass::kBit) narrower = source.type_class() != TypeClass::kBit;
  if (to.is_decimal()) {
    const SqlType as =
        source.is_integer() || source.type_class() == TypeClass::kBit ? as_decimal(source) : source;
    narrower = !as.is_decimal() || as.scale > to.scale || as.size - as.scale > to.size - to.scale;
  }
  if (to.is_date()) narrower = source.is_date() && source.id != to.id && to.id != TypeId::kDateTime;
  if (source.is_text()) narrower = false;
  if (source.id == TypeId::kMoney && to.is_integer()) {
    result.sql = "server_round(" + result.sql + ", 0)";
  }
  if (narrower && !to.is_text()) {
    result.sql = "server_fit(" + result.sql + ", " + type_arguments(to) + ")";
    result.unchecked.clear();
    result.number_literal = false;
    result.collated = false;
    result.column.clear();
  }
  result.type = to;
  return result;
}

}  // namespace kestrova::sql
