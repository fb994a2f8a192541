// Loading a stored selection into the list, and storing the list.
#include <optional>
#include <vector>

#include "editor/editor_texts.h"
#include "editor/f_selection.h"
#include "engine/comm_sel.h"
#include "engine/criteria_guard.h"
#include "engine/criterion.h"
#include "engine/field_types.h"
#include "engine/queries.h"
#include "interface/module_state.h"
#include "platform/text.h"
#include "relations/date_expressions.h"
#include "relations/show_message.h"

namespace kestrova {
namespace {

// A relative date as its bare offset, so that it is stored again as the date that it was.
std::string bare_offset(const std::string& value) {
  constexpr std::string_view kToday = "GETDATE()";
  if (value.find(kToday) == std::string::npos) return value;
  const std::string offset = text::replace_all(value, kToday, "");
  const std::string without_blanks = text::replace_all(offset, " ", "");
  if (without_blanks.empty()) return "+0";
  return user_locale().is_numeric(without_blanks) ? without_blanks : offset;
}

// What a stored value of a boolean column says, also by the words that the column holds itself.
std::optional<bool> flag_of(const KesVar& context, SpecialField kind, const std::string& value) {
  if (kind == SpecialField::kWord) {
    for (const bool truth : {true, false}) {
      if (value == "'" + loc_texts().GetText(truth ? kTextTrue : kTextFalse, context) + "'") {
        return truth;
      }
    }
  }
  return stored_flag(value);
}

// The stored value of a flag as the text from which the same flag is stored again: a bare 1 would
// be read as false. A value that is no flag would be stored as false, and the filter would select
// something else: it is refused.
std::string shown_flag(const KesVar& context, SpecialField kind, std::int16_t type,
                       const std::string& value, std::string_view record) {
  const bool is_boolean = type == static_cast<std::int16_t>(FieldType::kBoolean);
  if (!is_boolean && kind == SpecialField::kBarkUnit) return value == "1" ? "cm" : value;
  if (!is_boolean || kind == SpecialField::kMoneyUnit || is_null_word(value)) return value;
  const std::optional<bool> flag = flag_of(context, kind, value);
  if (!flag) throw RefusedCriterion(record, "its field is true or false, and its value is neither");
  if (kind == SpecialField::kBarkUnit) return *flag ? "cm" : "0";
  return user_locale().boolean_text(*flag);
}

}  // namespace

void F_Selection::Model_DblClick() {
  if (is_read_only_run() || !is_model_selected()) return;
  const std::string criteria = stored_model();

  const BusyPointer busy(user_interface());
  std::vector<ListEntry> lines;
  for (const std::string_view piece : text::split(criteria, ';')) {
    const std::string_view record = text::trim(piece);
    if (record.empty()) continue;
    lines.push_back(is_or_line(record)
                        ? or_entry()
                        : display_line(context_, lookup_relation(), record, kModelField));
  }
  show_lines(lines);
  seen_models_[Model.item_data(Model.index())] = criteria;
  caption_ = "Selektion: " + std::string(text::trim(Model.text()));
  SetListButtons();
}

void F_Selection::LoadSelectionFromTable(std::string_view table, std::int32_t record) {
  const std::string criteria = open_query(connection(),
                                          "SELECT SELEKTION_VALUE FROM " + std::string(table) +
                                              " WHERE ID = " + std::to_string(record),
                                          kWritable)
                                   ->value("SELEKTION_VALUE")
                                   .text_or_empty();
  if (const auto why = why_not_loaded([&] { LoadSelectionFromString(criteria); })) {
    contract_unread_ = true;
    ShowMessage(editor_text(context_, EditorText::kContractUnreadable, "", *why), kExclamationIcon);
  }
}

void F_Selection::LoadSelectionFromString(std::string_view criteria) {
  std::vector<ListEntry> lines;
  for (std::size_t end = criteria.find(';'); end != std::string_view::npos;
       end = criteria.find(';')) {
    const std::string_view record = criteria.substr(0, end);
    criteria.remove_prefix(end + 1);
    if (record.empty()) continue;
    lines.push_back(is_or_line(record)
                        ? or_entry()
                        : display_line(context_, lookup_relation(), record, kOfferedField));
  }
  show_lines(lines);
  SetListButtons();
}

void F_Selection::FillListCriteria(const KesVar& context, std::string_view criteria,
                                   std::string_view relation) {
  const BusyPointer busy(user_interface());
  std::vector<ListEntry> lines;
  for (const std::string_view record : text::split(criteria, ';')) {
    if (record.empty()) continue;
    lines.push_back(record == context.strOderLine
                        ? ListEntry{std::string(record), kOrLineData}
                        : display_line(context, std::string(relation), record, kHostField));
  }
  show_lines(lines);
}

// The list changes only when all records could be read: what is left of a filter that lost a line
// would be committed, and saved, as a wider one.
void F_Selection::show_lines(const std::vector<ListEntry>& lines) {
  if (lines.size() > kMostLines) throw_too_many_lines();
  contract_unread_ = false;
  ListCriteria.clear();
  for (const ListEntry& line : lines) {
    ListCriteria.add(line.text);
    ListCriteria.set_item_data(ListCriteria.new_index(), line.item_data);
  }
}

ListEntry F_Selection::display_line(const KesVar& context, const std::string& relation,
                                    std::string_view record, NameSource source) const {
  const Relation kind(relation);
  const std::string field = field_part(record);
  const std::string name = field_name(context, relation, field, source);
  const std::int16_t id = text::to_int16(field);
  std::string value = value_part(context, kind, record, kStored);
  const std::int16_t type = field_type(context, kind, id);
  if (IsDateFieldType(type) && !is_null_word(value)) {
    if (!value.empty()) value = ToDateLiteral(value, context.strDateOrder);
    if (source != kOfferedField) value = bare_offset(value);
  }
  // A list that is read back cut is shown whole, in the order in which it can be kept if there is
  // one.
  if (!is_own_list(record)) return {name + " " + kept_list(id, own_list(record)) + " ", id};
  const std::string op = operator_part(context, kind, record, kShown);
  if (!op.starts_with("IN")) {
    value = shown_flag(context, special_field(text::trim(name)), type, value, record);
  }
  return {name + " " + op + " " + value, id};
}

std::string F_Selection::field_name(const KesVar& context, const std::string& relation,
                                    const std::string& id, NameSource source) const {
  const std::int16_t number = text::to_int16(id);
  if (source != kOfferedField && !IsCatalogueRelation(relation)) {
    const auto row = open_query(connection_of(context),
                                "SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = " + id,
                                source == kHostField ? kUnspecified : kReadOnce);
    return loc_texts().GetText(row->value(std::size_t{0}).integer(), context);
  }
  for (const ListEntry& entry : cboField.entries()) {
    if (entry.item_data == number) return entry.text;
  }
  return {};
}

std::string F_Selection::stored_record(const KesVar& context, const Relation& relation,
                                       std::string_view line) const {
  // The value part of a display line is in its stored form already. A date must not be converted
  // once more: the fixed form would be read in the user's order.
  const std::int16_t id = Comm_Sel().get_FieldID(field_part(line));
  const std::string record = record_of(id, operator_part(context, relation, line, kDisplayLine),
                                       value_part(context, relation, line, kDisplayLine));
  require_one_record(record, line);
  require_own_list(context, relation, id, line, line);
  require_own_list(context, relation, id, record, line);
  return record;
}

std::string F_Selection::criteria_string(const KesVar& context, Check check) const {
  const Relation relation(lookup_relation());
  std::string criteria;
  for (const ListEntry& line : ListCriteria.entries()) {
    const bool is_or = line.text == context.strOderLine;
    const std::string record = is_or ? line.text : stored_record(context, relation, line.text);
    if (!is_or && check == kExecutable) require_closed(record, line.text);
    criteria += record + ";";
  }
  return criteria;
}

std::string F_Selection::GetWriteString(const KesVar& context) const {
  return criteria_string(context, kReadable);
}

void F_Selection::SaveSelectionToTable(std::string_view table, std::int32_t record) {
  const auto row = open_query(
      connection(), "SELECT * FROM " + std::string(table) + " WHERE ID = " + std::to_string(record),
      kWritable);
  row->set_value("SELEKTION_VALUE", criteria_string(context_, kExecutable));
  row->update();
}

}  // namespace kestrova
