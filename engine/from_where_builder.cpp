#include "engine/from_where_builder.h"

#include "engine/criterion.h"
#include "platform/text.h"

namespace kestrova {

void FromWhereBuilder::begin_where(std::string_view base_condition) {
  where = " WHERE ";
  if (base_condition.empty()) return;
  where += base_condition;
  where += " AND ";
}

void FromWhereBuilder::add_condition_once(std::string_view condition) {
  if (text::contains_ignoring_case(where, condition)) return;
  where += condition;
  where += " AND ";
}

void FromWhereBuilder::add_criterion(std::string_view expression, std::string_view comparison,
                                     std::string_view op, std::string_view value) {
  if (is_null_word(value)) {
    // No blank behind NOT, on purpose.
    if (op != "=") criteria += "NOT";
    criteria += "(";
    criteria += expression;
    criteria += " IS NULL OR RTRIM(LTRIM(";
    criteria += expression;
    criteria += ")) = '')";
    return;
  }
  criteria += comparison;
  criteria += ' ';
  criteria += op;
  criteria += ' ';
  criteria += value;
}

std::string_view FromWhereBuilder::trimmed_from() const {
  const std::string_view all = from;
  return text::trim(all.substr(0, all.find_last_not_of(", ") + 1));
}

std::string_view without_trailing_and(std::string_view s) {
  s = text::trim(s);
  if (s.ends_with(" AND")) s.remove_suffix(4);
  return s;
}

}  // namespace kestrova
