// The FROM/WHERE text of a selection while it is put together: what translating a stored string and
// committing the editor's list have in common.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "platform/suite.h"

namespace kestrova {

// The tables of a field of SELEKTION, and how they are joined.
struct FieldJoin {
  std::string kind;  // "" for one table, "INNER" for two, "TRIPLE" for three
  std::array<std::string, 3> tables;
  std::array<std::string, 2> conditions;
};

struct FromWhereBuilder {
  std::string from;               // tables, without the word FROM
  std::string where = " WHERE ";  // base and join conditions, each followed by " AND "
  std::string criteria;           // the user's criteria

  // Begins with the base condition of a relation ("" for none).
  void begin_where(std::string_view base_condition);

  // Appends a join condition unless WHERE holds it already, in either case of letters.
  void add_condition_once(std::string_view condition);

  // Adds the tables of a field and their join conditions; a join of any other kind adds nothing.
  void add_join(const FieldJoin& join, TableAccessService& service, std::string_view run_type);

  // Appends a criterion. The word NULL as value, in any case, asks for rows without a value and
  // uses expression; any other value is compared with comparison as it stands. Raises
  // InvalidArgument naming the line when its text could leave the parentheses of the criteria.
  void add_criterion(std::string_view expression, std::string_view comparison, std::string_view op,
                     std::string_view value, std::string_view line);

  void add_and() { criteria += " AND "; }
  void add_or() { criteria += " OR "; }

  // FROM without the commas and blanks that adding tables leaves at its end, and without blanks
  // before it.
  std::string_view trimmed_from() const;
};

// s without surrounding blanks and without the " AND " that joining leaves at its end.
std::string_view without_trailing_and(std::string_view s);

}  // namespace kestrova
