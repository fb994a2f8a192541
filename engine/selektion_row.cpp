#include "engine/selektion_row.h"

#include "engine/queries.h"
#include "platform/text.h"

namespace kestrova {
namespace {

std::string trimmed(const Value& value) { return std::string(text::trim(value.text())); }

// The text behind the first "." of s; all of s when it has none.
std::string behind_first_point(const std::string& s) {
  const std::size_t point = s.find('.');
  return point == std::string::npos ? s : s.substr(point + 1);
}

}  // namespace

bool find_field(std::string_view val, bool nick, Recordset* selektion) {
  if (val.empty()) return false;
  Recordset& rows = row_set(selektion);
  rows.move_first();
  rows.find((nick ? "NICKNAME_OF_FIELD = '" : "NAME_OF_FIELD = '") + std::string(val) + "'");
  return !rows.eof();
}

std::string upper_trimmed(const Value& value) {
  return text::upper(text::trim(value.text_or_empty()));
}

std::string field_expression(const Recordset& row) {
  const Value expression = row.value("SQLVALUE");
  if (!expression.is_null()) return expression.text();
  return trimmed(row.value("TABLE_NAME")) + "." + trimmed(row.value("NAME_OF_FIELD"));
}

FieldColumn column_of_row(const Recordset& row) {
  const std::string join = upper_trimmed(row.value("SQLSELECT"));
  if (join != "INNER" && join != "TRIPLE") {
    return {row.value("TABLE_NAME").text(), row.value("NAME_OF_FIELD").text()};
  }
  const std::string column = behind_first_point(row.value("SQLVALUE").text());
  return {row.value("TABLE_NAME_II").text(), column};
}

}  // namespace kestrova
