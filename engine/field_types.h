// Type codes of catalogue fields.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/kes_var.h"
#include "relations/relation_codes.h"

namespace kestrova {

// The type code of a field of a relation; what Get_TypeOfFieldFromID answers.
std::int16_t field_type(const KesVar& context, const Relation& relation, std::int16_t id);

// The column that a SELEKTION row stands for: for a field reached through a join that of its second
// table, behind the first "." of its expression.
struct FieldColumn {
  std::string table;
  std::string column;
};

// Raises InvalidUseOfNull when the row does not say it.
FieldColumn column_of_row(const Recordset& row);

// The text behind the first "." of s; all of s when it has none.
std::string_view behind_first_point(std::string_view s);

}  // namespace kestrova
