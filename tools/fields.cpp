#include "tools/fields.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "engine/comm_sel.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "relations/relation_codes.h"
#include "relations/relation_conditions.h"

namespace kestrova::tool {
namespace {

constexpr std::int16_t kLastFieldId = std::numeric_limits<std::int16_t>::max();

// The name under which SELEKTION holds the fields of a relation: work orders may carry a personnel
// number behind it.
std::string_view selektion_parameter(std::string_view code) {
  for (const std::string_view prefix : {"4ARB", "4PLN"}) {
    if (code.starts_with(prefix)) return prefix;
  }
  return code;
}

std::vector<ListEntry> catalogue_fields(const Session& session, std::string_view code) {
  ListBox list("fields");
  suite().table_access()->FillFieldList(GetRelationTableKey(code), list, session.context, 0);
  return list.entries();
}

// "" when the list does not offer the number.
std::string offered_name(const std::vector<ListEntry>& fields, std::int32_t number) {
  const auto field = std::find_if(fields.begin(), fields.end(), [number](const ListEntry& entry) {
    return entry.item_data == number;
  });
  return field == fields.end() ? std::string() : field->text;
}

std::vector<SelectableField> offered_by_catalogue(const Session& session, std::string_view code) {
  const std::shared_ptr<TableAccessService> service = suite().table_access();
  const std::vector<ListEntry> names = catalogue_fields(session, code);
  std::vector<SelectableField> fields;
  for (std::int32_t id = 1; id <= kLastFieldId; ++id) {
    if (const std::int32_t number = service->MapFieldId(code, id); number != 0) {
      fields.push_back({.id = static_cast<std::int16_t>(id), .name = offered_name(names, number)});
    }
  }
  return fields;
}

std::vector<SelectableField> offered_by_selektion(const Session& session, std::string_view code) {
  std::vector<SelectableField> fields;
  const auto rows =
      session.connection().open("SELECT ID_SELEKTION, ID_STRING" + selektion_condition(code) +
                                    " AND VISIBLE = 1 ORDER BY ORDER_CUSTOM",
                                CursorType::kForwardOnly, LockType::kReadOnly);
  for (; !rows->eof(); rows->move_next()) {
    fields.push_back(
        {.id = static_cast<std::int16_t>(rows->value("ID_SELEKTION").integer()),
         .name = loc_texts().GetText(rows->value("ID_STRING").integer(), session.context)});
  }
  return fields;
}

// The expression that the translator compares with the field's value.
std::string expression_of(const Session& session, std::string_view code, std::int16_t id) {
  if (IsRestrictedRelation(code)) {
    std::string expression;
    std::string from;
    ApplyAccessLevels(code, id, expression, from, session.context);
    return expression;
  }
  if (!IsCatalogueRelation(code)) return Comm_Sel().Get_FieldNameFromID(id, session.context.dbado);
  const std::shared_ptr<TableAccessService> service = suite().table_access();
  return service->GetFieldExpression(GetRelationTableKey(code), service->MapFieldId(code, id), 0, 0,
                                     session.context);
}

void describe(const Session& session, std::string_view code, SelectableField& field) {
  try {
    field.type = FieldType{Comm_Sel().Get_TypeOfFieldFromID(session.context, field.id, code)};
    field.expression = expression_of(session, code, field.id);
  } catch (const DatabaseError& error) {
    throw DatabaseError("field " + std::to_string(field.id) + ": " + error.what(), error.sqlstate(),
                        error.native_code());
  }
}

// Identifiers and names, without what only the database can tell.
std::vector<SelectableField> offered_fields(const Session& session, std::string_view code) {
  require_known_relation(session, code);
  return IsCatalogueRelation(code) ? offered_by_catalogue(session, code)
                                   : offered_by_selektion(session, code);
}

}  // namespace

std::string selektion_condition(std::string_view code) {
  return " FROM SELEKTION WHERE RTRIM(LTRIM(PARAMETER)) = " +
         sql_literal(selektion_parameter(code));
}

std::vector<SelectableField> selectable_fields(const Session& session, std::string_view code) {
  std::vector<SelectableField> fields = offered_fields(session, code);
  if (fields.empty()) {
    throw InvalidArgument("the database offers no fields for the relation '" + std::string(code) +
                          "'");
  }
  for (SelectableField& field : fields) describe(session, code, field);
  return fields;
}

FieldNames::FieldNames(const Session& session, std::string_view code)
    : session_(session), code_(code), in_catalogue_(IsCatalogueRelation(code)) {
  if (in_catalogue_) catalogue_fields_ = catalogue_fields(session, code);
}

std::string FieldNames::name(std::int16_t id) const {
  std::string name;
  if (in_catalogue_) {
    name = offered_name(catalogue_fields_, suite().table_access()->MapFieldId(code_, id));
  } else {
    const auto rows = session_.connection().open(
        "SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = " + std::to_string(id),
        CursorType::kForwardOnly, LockType::kReadOnly);
    if (!rows->eof()) name = loc_texts().GetText(rows->value(0).integer(), session_.context);
  }
  return name.empty() ? "field " + std::to_string(id) : name;
}

bool is_known_relation(std::string_view code) {
  return IsRestrictedRelation(code) || IsCatalogueRelation(code) ||
         !GetRelationTableKey(code).empty();
}

bool is_known_relation(const Session& session, std::string_view code) {
  return is_known_relation(code) ||
         session.single_value("SELECT COUNT(*)" + selektion_condition(code)).integer() > 0;
}

bool has_field(const Session& session, std::string_view code, std::int64_t id) {
  if (id < 1 || id > kLastFieldId) return false;
  if (IsCatalogueRelation(code))
    return suite().table_access()->MapFieldId(code, static_cast<std::int32_t>(id)) != 0;
  return session
             .single_value("SELECT COUNT(*)" + selektion_condition(code) +
                           " AND ID_SELEKTION = " + std::to_string(id))
             .integer() > 0;
}

std::int16_t field_named(const Session& session, std::string_view code, std::string_view field) {
  const std::vector<SelectableField> fields = offered_fields(session, code);
  if (const std::optional<std::int64_t> id = text::to_integer(field)) {
    if (has_field(session, code, *id)) return static_cast<std::int16_t>(*id);
  }
  const std::string_view name = text::trim(field);
  const auto named = std::find_if(fields.begin(), fields.end(), [name](const SelectableField& f) {
    return !f.name.empty() && text::equal_ignoring_case(text::trim(f.name), name);
  });
  if (named != fields.end()) return named->id;
  throw InvalidArgument("the relation '" + std::string(code) + "' has no field '" +
                        std::string(field) + "': 'kestrova-sel fields " + std::string(code) +
                        "' lists the fields");
}

void require_known_relation(const Session& session, std::string_view code) {
  if (is_known_relation(session, code)) return;
  throw InvalidArgument("the relation code '" + std::string(code) +
                        "' is not known: 'kestrova-sel relations' lists the codes");
}

}  // namespace kestrova::tool
