// What a row of the field catalogue SELEKTION says about its field.
#pragma once

#include <string>
#include <string_view>

#include "platform/database.h"

namespace kestrova {

// Moves a row set over SELEKTION to the field with that name, or nickname; false when there is none
// (the row set is then at its end) and for an empty name (the row set is then left alone). Raises
// ObjectNotSet when the row set is absent.
bool find_field(std::string_view val, bool nick, Recordset* selektion);

// A column upper-cased and trimmed, "" for NULL: the form in which SQLSELECT decides.
std::string upper_trimmed(const Value& value);

// SQLVALUE, or the column itself, TABLE_NAME + "." + NAME_OF_FIELD, where the field has no
// expression of its own. A row without either raises InvalidUseOfNull: a name without its table
// could be another table's column.
std::string field_expression(const Recordset& row);

// The column whose type is the field's: for a field reached through a join that of its second
// table, behind the first "." of its expression.
struct FieldColumn {
  std::string table;
  std::string column;
};

// Raises InvalidUseOfNull when the row does not say it.
FieldColumn column_of_row(const Recordset& row);

}  // namespace kestrova
