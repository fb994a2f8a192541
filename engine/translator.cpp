// From a stored criteria string to FROM/WHERE text.
#include <memory>
#include <string>
#include <vector>

#include "engine/comm_sel.h"
#include "engine/criteria_guard.h"
#include "engine/criterion.h"
#include "engine/from_where_builder.h"
#include "engine/queries.h"
#include "engine/selektion_row.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "relations/relation_codes.h"
#include "relations/relation_conditions.h"

namespace kestrova {
namespace {

class Translator {
 public:
  Translator(const KesVar& context, std::string_view code, std::string_view variant)
      : context_(context), relation_(code), variant_(variant) {}

  // False, and nothing has been asked, when the relation cannot be translated in this mode.
  bool begin(std::string_view mode, std::int32_t access_levels);
  void add_records(std::string_view criteria_string);
  std::string result() const;
  void fill_labour_table() const;

 private:
  void add_criterion(std::string_view record);
  void add_service_criterion(std::int16_t id, std::string_view op, std::string_view value,
                             std::string_view record);
  void add_selektion_criterion(std::string_view op, std::string_view value,
                               std::string_view record);
  void open_selektion_rows();
  bool is_or_line(std::string_view record) const { return record == context_.strOderLine; }
  bool reads_selektion() const { return !relation_.restricted && !relation_.catalogue; }
  bool has_criteria() const { return !text::trim(text_.criteria).empty(); }
  std::string_view where_text() const;

  const KesVar& context_;
  const Relation relation_;
  const std::string_view variant_;
  std::shared_ptr<TableAccessService> service_;
  FromWhereBuilder text_;
  std::vector<std::string_view> records_;
  std::unique_ptr<Recordset> selektion_;  // one row per criterion, in the order of the records
};

bool Translator::begin(std::string_view mode, std::int32_t access_levels) {
  if (!relation_.catalogue && mode != "WAREN" && mode != "4ARB") return false;
  service_ = suite().table_access();
  if (relation_.catalogue) {
    std::string condition;
    GetRelationFromWhere(relation_.code, condition, text_.from, context_, access_levels);
    text_.begin_where(condition);
  } else if (mode == "WAREN") {
    text_.from = service_->AddFieldTables("WAREN", 0, "", variant_, context_);
  } else if (relation_.code != "4ARB") {
    // The code carries a personnel number behind its first four characters.
    text_.where += "ARBEITSAUFTRAG_KOPF.PERSONAL_ID=";
    text_.where += personnel_number(relation_.code);
    text_.where += " AND ";
  }
  return true;
}

void Translator::add_records(std::string_view criteria_string) {
  const std::shared_ptr<StrTokens> tokens = suite().str_tokens();
  const std::int32_t count = tokens->TokenCount(criteria_string, ";");
  records_.reserve(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i) {
    records_.push_back(tokens->TokenAt(criteria_string, ";", i));
  }
  if (reads_selektion()) open_selektion_rows();
  for (std::size_t i = 0; i < records_.size(); ++i) {
    if (is_or_line(records_[i])) {
      text_.add_or();
      continue;
    }
    add_criterion(records_[i]);
    const bool is_last = i + 1 == records_.size();
    if (!is_last && !is_or_line(records_[i + 1])) text_.add_and();
    if (selektion_) selektion_->move_next();
  }
  if (selektion_) selektion_->close();
}

void Translator::open_selektion_rows() {
  std::string sql;
  for (std::size_t i = 0; i < records_.size(); ++i) {
    if (is_or_line(records_[i])) continue;
    const std::string id = field_part(records_[i]);
    text::to_int16(id);  // only a number may become part of the query
    if (!sql.empty()) sql += " UNION ";
    sql += "SELECT ";
    sql += std::to_string(i);
    sql += " AS XXX,* FROM SELEKTION WHERE ID_SELEKTION = ";
    sql += id;
  }
  if (sql.empty()) return;
  sql += " ORDER BY XXX";
  selektion_ = open_query(connection_of(context_), sql);
}

void Translator::add_criterion(std::string_view record) {
  const std::string op = operator_part(context_, relation_, record, kStored);
  const std::int16_t id = text::to_int16(field_part(record));
  const std::string value = value_part(context_, relation_, record, kStored);
  require_own_list(context_, relation_, id, record, record);
  if (reads_selektion()) {
    add_selektion_criterion(op, value, record);
  } else {
    add_service_criterion(id, op, value, record);
  }
}

void Translator::add_service_criterion(std::int16_t id, std::string_view op, std::string_view value,
                                       std::string_view record) {
  std::string expression;
  if (relation_.restricted) {
    apply_access_levels(*service_, relation_.code, relation_.access_key, id, expression, text_.from,
                        context_);
  } else {
    const std::int32_t number = service_->MapFieldId(relation_.code, id);
    text_.from =
        service_->AddFieldTables(relation_.table_key, number, text_.from, variant_, context_);
    expression = service_->GetFieldExpression(relation_.table_key, number, 0, 0, context_);
  }
  text_.add_criterion(expression, expression, op, value, record);
}

void Translator::add_selektion_criterion(std::string_view op, std::string_view value,
                                         std::string_view record) {
  const Recordset& row = *selektion_;
  const auto column = [&row](std::string_view name) { return row.value(name).text_or_empty(); };
  const std::string expression = field_expression(row);
  const bool has_own_expression = !row.value("SQLVALUE").is_null();
  const FieldJoin join = {upper_trimmed(row.value("SQLSELECT")),
                          {column("TABLE_NAME"), column("TABLE_NAME_II"), column("TABLE_NAME_III")},
                          {column("CONDITION"), column("CONDITIONII")}};
  text_.add_join(join, *service_, variant_);
  // A field without an expression of its own is compared by its column only where it stands in the
  // main table.
  const bool is_compared = has_own_expression || join.kind.empty();
  text_.add_criterion(expression, is_compared ? expression : "", op, value, record);
}

// Without criteria nothing follows the base conditions: their last " AND " goes, and so does the
// word WHERE when nothing but blanks stands behind it.
std::string_view Translator::where_text() const {
  if (has_criteria()) return text::trim(text_.where);
  const std::string_view where = text::trim(without_trailing_and(text_.where));
  return where == "WHERE" ? std::string_view() : where;
}

std::string Translator::result() const {
  std::string result = " FROM ";
  result += text_.trimmed_from();
  result += ' ';
  result += where_text();
  result += ' ';
  if (has_criteria()) {
    result += '(';
    result += without_trailing_and(text_.criteria);
    result += ')';
  }
  return result;
}

void Translator::fill_labour_table() const {
  const std::string_view where = text::trim(without_trailing_and(text_.where));
  std::string from_where = " FROM ";
  from_where += text_.trimmed_from();
  from_where += ' ';
  if (where != "WHERE") from_where += where;
  Comm_Sel().CreateTemporyTable(context_, "LEISTUNGS_BB", from_where);
}

bool fills_labour_table(std::string_view code) {
  return code.starts_with("LEISTUNGS_BB") || code == "VERLOHN";
}

}  // namespace

std::string Comm_Sel::D_SelectionFromStr(const KesVar& KesVar, std::string_view Parameter,
                                         std::string_view strParameter, std::string_view strChar,
                                         std::string_view StrVer_Type,
                                         std::int32_t ID_Access_Levels) const {
  Translator translator(KesVar, Parameter, StrVer_Type);
  if (!translator.begin(strParameter, ID_Access_Levels)) return {};
  translator.add_records(strChar);
  if (fills_labour_table(Parameter)) translator.fill_labour_table();
  return translator.result();
}

}  // namespace kestrova
