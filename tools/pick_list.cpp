#include "tools/pick_list.h"

#include <algorithm>
#include <array>

#include "engine/comm_sel.h"
#include "engine/value_queries.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "relations/relation_codes.h"
#include "relations/relation_conditions.h"
#include "tools/fields.h"

namespace kestrova::tool {
namespace {

// clang-format off
// Fields that choose a unit: what stands for True and for False.
struct UnitField {
  std::string_view nickname;
  std::string_view yes;
  std::string_view no;  // "" for the national currency
};
constexpr std::array kUnitFields = {
    UnitField{"RINDEPROZENT", "'%'", "'cm'"},
    UnitField{"DM/EURO", "EURO", ""},
};
// clang-format on

constexpr std::size_t kLongestList = 100;
constexpr std::string_view kNull = "Null";
constexpr std::string_view kOrder = " ORDER BY 1";

// A field of a relation, the row set over the relation's fields, and what the library asks of it.
struct Field {
  std::string_view code;
  std::int16_t id;
  std::string nickname{};
  std::unique_ptr<Recordset> selektion{};
};

// The value as the server reads it.
std::string server_text(const Value& value) {
  if (value.is_null()) return std::string(kNull);
  if (const bool* truth = value.get_if<bool>()) return *truth ? "1" : "0";
  if (const DateTime* date = value.get_if<DateTime>()) {
    const std::string time = format_iso(*date).substr(11);
    return format_dmy(*date) + (time == "00:00:00" ? "" : " " + time);
  }
  return value.text();
}

std::string sql_of(const Session& session, const Field& field, const std::string& value,
                   bool is_null) {
  session.lists->select(field.id, is_null);
  const std::string sql = Comm_Sel().ApcboValue(session.context, value, field.nickname,
                                                field.selektion.get(), field.code);
  return sql == "'Null'" && is_null ? std::string(kNull) : sql;
}

PickEntry null_entry(const Session& session, const Field& field) {
  return {Value(), std::string(kNull), sql_of(session, field, std::string(kNull), true)};
}

PickEntry entry_of(const Session& session, const Field& field, const Value& value) {
  if (value.is_null()) return null_entry(session, field);
  return {value, session.format.show(value), sql_of(session, field, server_text(value), false)};
}

// --- Relations of the suite's catalogue
// ----------------------------------------------------------

std::string catalogue_query(const Session& session, const Field& field) {
  const std::shared_ptr<TableAccessService> service = suite().table_access();
  const KesVar& context = session.context;
  std::string from;
  std::string condition;
  std::string expression;
  GetRelationFromWhere(field.code, condition, from, context, context.lngAccessLevel);
  if (IsRestrictedRelation(field.code)) {
    ApplyAccessLevels(field.code, field.id, expression, from, context);
  } else {
    const std::string_view key = GetRelationTableKey(field.code);
    const std::int32_t number = service->MapFieldId(field.code, field.id);
    from = service->AddFieldTables(key, number, from, module_state().strVerType, context);
    expression = service->GetFieldExpression(key, number, 0, 0, context);
  }
  const std::string where = condition.empty() ? "" : " WHERE " + condition;
  return "SELECT DISTINCT " + expression + " FROM " + from + where + std::string(kOrder);
}

void read_catalogue_list(const Session& session, const Field& field, PickList& list) {
  list.query = catalogue_query(session, field);
  std::vector<Value> values;
  const auto rows =
      session.connection().open(list.query, CursorType::kForwardOnly, LockType::kReadOnly);
  for (; !rows->eof(); rows->move_next()) values.push_back(rows->value(std::size_t{0}));
  list.found = values.size();
  const std::size_t first = list.found > kLongestList ? list.found - kLongestList : 0;
  for (std::size_t i = first; i < list.found; ++i) {
    list.entries.push_back(entry_of(session, field, values[i]));
  }
}

// --- Relations of SELEKTION ----------------------------------------------------------------------

std::string selektion_query(const Field& field) {
  const std::string_view fixed = fixed_value_query(field.nickname);
  if (!fixed.empty()) return std::string(fixed);

  Recordset* const rows = field.selektion.get();
  const Comm_Sel engine;
  const auto table = [&](std::string_view kind) {
    return engine.Get_TableName(field.nickname, true, kind, rows);
  };
  const auto condition = [&](std::string_view order) {
    return engine.Get_Condition(field.nickname, true, order, rows);
  };
  const std::string tail(kOrder);
  const std::string join = engine.Get_SQLSelect(field.nickname, true, rows);
  if (join.empty()) {
    return "SELECT DISTINCT " + engine.Get_FieldName_Sel(field.nickname, rows) + " FROM " +
           table("MAIN") + tail;
  }
  const std::string begin =
      "SELECT DISTINCT " + engine.Get_SQLValue(field.nickname, true, rows) + " AS FVALUE FROM ";
  if (join == "INNER") {
    return begin + table("MAIN") + " INNER JOIN " + table("SECOND") + " ON " + condition("I") +
           tail;
  }
  if (join == "TRIPLE") {
    return begin + table("MAIN") + " INNER JOIN (" + table("SECOND") + " INNER JOIN " +
           table("THIRD") + " ON " + condition("II") + ") ON " + condition("I") + tail;
  }
  throw InvalidArgument("field " + std::to_string(field.id) + " has the join kind '" + join +
                        "', for which there is no pick list");
}

// The word for a value of a field that chooses a unit, nothing for other fields.
std::optional<std::string> unit_word(const Session& session, const Field& field,
                                     const Value& value) {
  const auto unit = std::find_if(kUnitFields.begin(), kUnitFields.end(), [&](const UnitField& row) {
    return text::equal_ignoring_case(row.nickname, field.nickname);
  });
  if (unit == kUnitFields.end()) return std::nullopt;
  if (value.boolean()) return std::string(unit->yes);
  return unit->no.empty() ? session.context.strNatWahrung : std::string(unit->no);
}

void read_selektion_list(const Session& session, const Field& field, PickList& list) {
  list.query = selektion_query(field);
  const bool is_of_one_table =
      Comm_Sel().Get_SQLSelect(field.nickname, true, field.selektion.get()).empty();
  const auto rows =
      session.connection().open(list.query, CursorType::kForwardOnly, LockType::kReadOnly);
  for (; !rows->eof(); rows->move_next()) {
    const Value value = rows->value(std::size_t{0});
    if (text::trim(value.text_or_empty()).empty()) continue;
    ++list.found;
    if (const std::optional<std::string> word = unit_word(session, field, value)) {
      list.entries.push_back({value, *word, sql_of(session, field, *word, false)});
      continue;
    }
    if (list.entries.empty() && is_of_one_table) {
      list.entries.push_back(null_entry(session, field));
    }
    list.entries.push_back(entry_of(session, field, value));
  }
}

Field field_of_selektion(const Session& session, std::string_view code, std::int16_t id) {
  const std::string nickname =
      session
          .single_value("SELECT NICKNAME_OF_FIELD FROM SELEKTION WHERE ID_SELEKTION = " +
                        std::to_string(id))
          .text_or_empty();
  return {code, id, nickname,
          session.connection().open("SELECT *" + selektion_condition(code), CursorType::kStatic,
                                    LockType::kReadOnly)};
}

}  // namespace

PickList read_pick_list(const Session& session, std::string_view code, std::int16_t id) {
  PickList list{.type = FieldType{Comm_Sel().Get_TypeOfFieldFromID(session.context, id, code)}};
  if (IsCatalogueRelation(code)) {
    read_catalogue_list(session, Field{code, id}, list);
  } else {
    read_selektion_list(session, field_of_selektion(session, code, id), list);
  }
  return list;
}

}  // namespace kestrova::tool
