#include "engine/from_where_builder.h"

#include <algorithm>

#include "engine/criteria_guard.h"
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

void FromWhereBuilder::add_join(const FieldJoin& join, TableAccessService& service,
                                std::string_view run_type) {
  struct JoinKind {
    std::string_view kind;
    std::size_t tables;
  };
  constexpr std::array kKinds = {JoinKind{"", 1}, JoinKind{"INNER", 2}, JoinKind{"TRIPLE", 3}};
  const auto kind = std::find_if(kKinds.begin(), kKinds.end(),
                                 [&join](const JoinKind& k) { return k.kind == join.kind; });
  if (kind == kKinds.end()) return;
  for (std::size_t i = 0; i < kind->tables; ++i) {
    from = service.AddTable(from, join.tables[i], run_type);
  }
  for (std::size_t i = 0; i + 1 < kind->tables; ++i) add_condition_once(join.conditions[i]);
}

void FromWhereBuilder::add_criterion(std::string_view expression, std::string_view comparison,
                                     std::string_view op, std::string_view value,
                                     std::string_view line) {
  const std::size_t begin = criteria.size();
  if (is_null_word(value)) {
    // No blank behind NOT, on purpose.
    if (op != "=") criteria += "NOT";
    criteria += "(";
    criteria += expression;
    criteria += " IS NULL OR RTRIM(LTRIM(";
    criteria += expression;
    criteria += ")) = '')";
  } else {
    criteria += comparison;
    criteria += ' ';
    criteria += op;
    criteria += ' ';
    criteria += value;
  }
  require_closed(std::string_view(criteria).substr(begin), line);
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
