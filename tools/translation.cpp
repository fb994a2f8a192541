#include "tools/translation.h"

#include "engine/comm_sel.h"
#include "engine/model_relation.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "relations/date_expressions.h"
#include "relations/relation_codes.h"
#include "tools/fields.h"
#include "tools/sql_layout.h"
#include "tools/sql_pieces.h"

namespace kestrova::tool {
namespace {

constexpr std::string_view kLabourFrom = " FROM BB_LEISTUNGS_KOPF";
constexpr std::string_view kLabourJoin =
    " INNER JOIN #BB_LEISTUNGS_KOPF ON BB_LEISTUNGS_KOPF.ID = #BB_LEISTUNGS_KOPF.ID";

std::string mode_of(const Filter& filter) {
  if (IsCatalogueRelation(filter.code)) return {};
  if (filter.model) return model_relation_for_lookup(filter.code);
  if (!filter.mode.empty()) return filter.mode;
  const bool is_work_order = filter.code.starts_with("4ARB") || filter.code.starts_with("4PLN");
  return is_work_order ? "4ARB" : "WAREN";
}

std::string field_part(const Session& session, const Filter& filter, std::string_view record) {
  return Comm_Sel().TransComp_NoLabels(session.context, filter.code, record, "GETFIELD", true,
                                       false);
}

std::string field_hint(const Filter& filter) {
  return ": 'kestrova-sel fields " + filter.code + "' lists the fields";
}

struct FieldFault {
  FaultReason reason;
  std::string what;
};

// What is wrong with the field that a record names.
std::optional<FieldFault> field_fault(const Session& session, const Filter& filter,
                                      std::string_view record) {
  const std::string field = field_part(session, filter, record);
  if (field.empty()) {
    return FieldFault{FaultReason::kHalfRecord,
                      "it needs a field, an operator and a value, as in \"12 = 5\""};
  }
  const std::optional<std::int64_t> id = text::to_integer(field);
  if (!id) {
    return FieldFault{FaultReason::kUnknownField,
                      "'" + field + "' is no field number" + field_hint(filter)};
  }
  if (has_field(session, filter.code, *id)) return std::nullopt;
  return FieldFault{FaultReason::kUnknownField, "the relation '" + filter.code + "' has no field " +
                                                    field + field_hint(filter)};
}

// The library's answer. Its errors are kept, in words that name the criterion where one is at
// fault.
std::string library_text(const Session& session, const Filter& filter, std::string_view mode) {
  const std::int32_t level = session.context.lngAccessLevel;
  try {
    return filter.model ? Comm_Sel().D_Selection(session.context, filter.code, *filter.model,
                                                 filter.variant, level)
                        : Comm_Sel().D_SelectionFromStr(session.context, filter.code, mode,
                                                        filter.criteria, filter.variant, level);
  } catch (const DatabaseError&) {
    throw;
  } catch (const Error& error) {
    const std::optional<CriteriaFault> fault = find_field_fault(session, filter);
    if (!fault) throw;
    throw Error(error.number(), fault->message);
  }
}

// Date literals in the user's form; everything else stands as it is stored.
std::string with_user_dates(const Session& session, std::string_view stored) {
  std::string shown;
  for (const SqlPiece& piece : split_sql(stored)) {
    shown += piece.kind == SqlPiece::Kind::kLiteral ? session.format.show_date_literal(piece.text)
                                                    : std::string(piece.text);
  }
  return shown;
}

// Whether the database refuses the filter with these criteria alone.
bool is_refused(const Session& session, Filter filter, std::string_view criteria) {
  filter.criteria = criteria;
  filter.model.reset();
  try {
    open_without_rows(session, translate(session, filter), "*");
    return false;
  } catch (const DatabaseError&) {
    return true;
  }
}

// "criterion 2 (12 = x): " for the first criterion that the database refuses on its own. "" when it
// takes each of them, or refuses the relation itself.
std::string refused_criterion(const Session& session, const Filter& filter) {
  if (IsCatalogueRelation(filter.code) && is_refused(session, filter, "")) return {};
  std::size_t number = 0;
  for (const std::string_view record : records_of(filter)) {
    ++number;
    if (record != session.context.strOderLine && is_refused(session, filter, record)) {
      return "criterion " + std::to_string(number) + " (" + std::string(record) + "): ";
    }
  }
  return {};
}

// Outside the catalogue only criteria bring tables along.
DatabaseError no_tables(const DatabaseError& error, const Filter& filter) {
  return {
      "a filter of '" + filter.code + "' needs a criterion, since only criteria name its tables",
      error.sqlstate(), error.native_code()};
}

std::string line_of(const Session& session, const ReadableCriterion& criterion) {
  if (criterion.is_or) return session.context.strOderLine;
  const std::string line = criterion.name + " " + criterion.op;
  return criterion.value.empty() ? line : line + " " + criterion.value;
}

// Raises BadCriterion for criteria of which the readable text would leave something out or show
// something else.
void require_readable(const Session& session, const Filter& filter) {
  const std::string& or_line = session.context.strOderLine;
  check_criteria(filter.criteria, or_line);
  auto fault = find_structure_fault(filter.criteria, or_line);
  if (!fault) fault = find_field_fault(session, filter);
  if (fault) throw BadCriterion(fault->message);
}

}  // namespace

Filter with_model_criteria(const Session& session, const Filter& filter) {
  if (!filter.model) return filter;
  require_known_relation(session, filter.code);
  const std::string relation = model_relation_for_lookup(filter.code);
  const auto row = session.connection().open(
      "SELECT MODEL FROM MODELS WHERE NAME = " + sql_literal(*filter.model) +
          " AND RELATION = " + sql_literal(relation),
      CursorType::kForwardOnly, LockType::kReadOnly);
  if (row->eof()) {
    throw InvalidArgument("there is no model '" + *filter.model + "' under '" + relation +
                          "', where the library looks for models of '" + filter.code +
                          "'; the library itself would select every record of the relation: "
                          "'kestrova-sel models " +
                          filter.code + "' lists the models");
  }
  Filter result = filter;
  result.criteria = row->value(std::size_t{0}).text_or_empty();
  return result;
}

std::vector<std::string_view> records_of(const Filter& filter) {
  std::vector<std::string_view> records = text::split(filter.criteria, ';');
  if (records.back().empty()) records.pop_back();
  return records;
}

std::optional<CriteriaFault> find_field_fault(const Session& session, const Filter& filter) {
  std::size_t number = 0;
  for (const std::string_view record : records_of(filter)) {
    ++number;
    if (record == session.context.strOderLine) continue;
    if (const std::optional<FieldFault> fault = field_fault(session, filter, record)) {
      return CriteriaFault{fault->reason, criterion_message(number, record, fault->what)};
    }
  }
  return std::nullopt;
}

Translation translate(const Session& session, const Filter& filter) {
  require_known_relation(session, filter.code);
  check_criteria(filter.criteria, session.context.strOderLine);
  module_state().strVerType = filter.variant;
  Translation translation{.code = filter.code, .mode = mode_of(filter), .from_where = {}};
  translation.from_where = library_text(session, filter, translation.mode);
  if (translation.from_where.empty()) {
    throw InvalidArgument("the library translates no models of '" + filter.code +
                          "' by their names: give the criteria");
  }
  translation.fills_labour_table =
      filter.code.starts_with("LEISTUNGS_BB") || filter.code == "VERLOHN";
  return translation;
}

std::string row_columns(const Session& session, const Translation& translation) {
  const std::string_view key =
      IsCatalogueRelation(translation.code)    ? GetRelationTableKey(translation.code)
      : translation.mode == "WAREN"            ? "WAREN"
      : IsRestrictedRelation(translation.code) ? access_table_key(translation.code)
                                               : "";
  const auto rows = session.connection().open(
      "SELECT ROW_COLUMNS FROM SUITE_TABLE_KEYS WHERE TABLE_KEY = " + sql_literal(key),
      CursorType::kForwardOnly, LockType::kReadOnly);
  const std::string columns = rows->eof() ? "" : rows->value(0).text_or_empty();
  return columns.empty() ? "*" : columns;
}

std::string select_text(const Translation& translation, std::string_view columns) {
  std::string from_where = translation.from_where;
  if (translation.fills_labour_table) {
    if (!from_where.starts_with(kLabourFrom)) {
      throw InvalidArgument("the FROM text of '" + translation.code +
                            "' does not begin with BB_LEISTUNGS_KOPF, so that "
                            "#BB_LEISTUNGS_KOPF cannot be joined");
    }
    from_where.insert(kLabourFrom.size(), kLabourJoin);
  }
  return "SELECT " + std::string(columns) + from_where;
}

void open_without_rows(const Session& session, const Translation& translation,
                       std::string_view columns) {
  session.connection().open(select_text(translation, "TOP 0 " + std::string(columns)),
                            CursorType::kForwardOnly, LockType::kReadOnly);
}

void prepare(const Session& session, const Filter& filter, const Translation& translation,
             std::string_view columns) {
  try {
    open_without_rows(session, translation, columns);
  } catch (const DatabaseError& error) {
    if (main_table(translation.from_where).empty()) throw no_tables(error, filter);
    const std::string culprit = refused_criterion(session, filter);
    throw DatabaseError(culprit + error.what(), error.sqlstate(), error.native_code());
  }
}

std::vector<ReadableCriterion> readable_criteria(const Session& session, const Filter& filter) {
  const FieldNames names(session, filter.code);
  std::vector<ReadableCriterion> criteria;
  for (const std::string_view record : records_of(filter)) {
    if (record == session.context.strOderLine) {
      criteria.push_back({.is_or = true, .id = {}, .name = {}, .op = {}, .value = {}});
      continue;
    }
    const auto part = [&](std::string_view which) {
      return Comm_Sel().TransComp_NoLabels(session.context, filter.code, record, which, true,
                                           false);
    };
    const std::string id = part("GETFIELD");
    const std::int16_t number = text::to_int16(id);
    const bool is_date =
        IsDateFieldType(Comm_Sel().Get_TypeOfFieldFromID(session.context, number, filter.code));
    const auto shown = [&](const std::string& stored) {
      return is_date ? with_user_dates(session, stored) : stored;
    };
    criteria.push_back({.id = id,
                        .name = names.name(number),
                        .op = shown(part("GETOPERATOR")),
                        .value = shown(part("GETVALUE"))});
  }
  return criteria;
}

std::vector<std::string> readable_lines(const Session& session, const Filter& filter) {
  require_readable(session, filter);
  std::vector<std::string> lines;
  if (IsCatalogueRelation(filter.code)) {
    for (const ReadableCriterion& criterion : readable_criteria(session, filter)) {
      lines.push_back(line_of(session, criterion));
    }
    return lines;
  }
  for (const std::string_view record : records_of(filter)) {
    lines.push_back(
        Comm_Sel().ConditionSelStr(session.context, filter.code, std::string(record) + ";"));
  }
  return lines;
}

void print_sql(std::ostream& out, std::string_view sql) {
  out << "SQL\n" << lay_out_sql(sql, "  ") << "\n\n";
}

void print_criteria(std::ostream& out, const Session& session,
                    const std::vector<ReadableCriterion>& criteria) {
  out << "Criteria\n";
  if (criteria.empty()) out << "  (none: every record of the relation)\n";
  for (const ReadableCriterion& criterion : criteria) {
    out << "  " << line_of(session, criterion) << '\n';
  }
}

Json identity_json(const Filter& filter, const Translation& translation) {
  Json answer{{"relation", translation.code}, {"mode", translation.mode}};
  if (filter.model) answer["model"] = *filter.model;
  return answer;
}

Json criteria_json(const std::vector<ReadableCriterion>& criteria) {
  Json list = Json::array();
  for (const ReadableCriterion& criterion : criteria) {
    if (criterion.is_or) {
      list.push_back({{"or", true}});
    } else {
      list.push_back({{"id", text::to_int16(criterion.id)},
                      {"field", criterion.name},
                      {"operator", criterion.op},
                      {"value", criterion.value}});
    }
  }
  return list;
}

}  // namespace kestrova::tool
