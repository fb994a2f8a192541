#include "engine/field_types.h"

#include <memory>
#include <string>

#include "engine/comm_sel.h"
#include "engine/queries.h"
#include "engine/selektion_row.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "relations/relation_conditions.h"

namespace kestrova {
namespace {

std::int16_t code(FieldType type) { return static_cast<std::int16_t>(type); }

// Type by display format, for fields whose column the library does not see.
std::int16_t type_by_format(std::string_view format) {
  if (format.empty()) return code(FieldType::kVarWChar);
  if (format == "dd.mm.yyyy") return code(FieldType::kDate);
  if (!format.starts_with('0')) return code(FieldType::kEmpty);
  return code(format.find('.') == std::string_view::npos ? FieldType::kInteger
                                                         : FieldType::kDouble);
}

std::int16_t type_by_format(const KesVar& context, const Relation& relation, std::int16_t id) {
  const std::shared_ptr<TableAccessService> service = suite().table_access();
  const std::int32_t number = service->MapFieldId(relation.code, id);
  return type_by_format(service->field_format(relation.table_key, number, context));
}

// An empty result that has the given column, for its type.
std::unique_ptr<Recordset> open_empty(const KesVar& context, std::string_view column,
                                      std::string_view from) {
  std::string sql = "SELECT TOP 0 ";
  sql += column;
  sql += " FROM ";
  sql += from;
  return open_query(connection_of(context), sql);
}

std::int16_t type_by_expression(const KesVar& context, const Relation& relation, std::int16_t id) {
  std::string expression;
  std::string from;
  apply_access_levels(*suite().table_access(), relation.code, relation.access_key, id, expression,
                      from, context);
  return code(open_empty(context, expression, from)->type(std::size_t{0}));
}

std::int16_t type_of_column(const KesVar& context, const FieldColumn& field) {
  return code(open_empty(context, field.column, field.table)->type(field.column));
}

FieldColumn column_by_query(const KesVar& context, std::int16_t id) {
  const auto row = open_query(connection_of(context),
                              "SELECT * FROM SELEKTION WHERE ID_SELEKTION = " + std::to_string(id));
  if (row->eof()) {
    throw NoCurrentRecord("SELEKTION has no field with the number " + std::to_string(id) + ".");
  }
  return column_of_row(*row);
}

}  // namespace

std::int16_t field_type(const KesVar& context, const Relation& relation, std::int16_t id) {
  if (relation.catalogue) return type_by_format(context, relation, id);
  if (relation.restricted) return type_by_expression(context, relation, id);
  return type_of_column(context, column_by_query(context, id));
}

std::int16_t Comm_Sel::Get_TypeOfFieldFromID(const KesVar& KesVar, std::int16_t id_selektion,
                                             std::string_view Parameter) const {
  return field_type(KesVar, Relation(Parameter), id_selektion);
}

std::int16_t Comm_Sel::Get_TypeOfFieldNew(const KesVar& KesVar, std::string_view Parameter,
                                          std::int16_t id_selektion) const {
  return type_by_format(KesVar, Relation(Parameter), id_selektion);
}

std::int16_t Comm_Sel::Get_TypeOfField(const KesVar& KesVar, std::string_view /*val*/,
                                       bool /*Nick*/, Recordset* tmpSelektion,
                                       std::string_view Parameter) const {
  const ComboBox& fields = selection_form().field_list();
  const std::int16_t id = selected_field_id(fields);
  const Relation relation(Parameter);
  if (relation.catalogue || relation.restricted) return field_type(KesVar, relation, id);
  Recordset& selektion = row_set(tmpSelektion);
  selektion.move_first();
  selektion.find("ID_SELEKTION = " + std::to_string(id));
  return type_of_column(KesVar, column_of_row(selektion));
}

}  // namespace kestrova
