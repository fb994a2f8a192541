// The pickers: fields, the operators of their types, and their values.
#include <algorithm>
#include <array>

#include "editor/catalogue_values.h"
#include "editor/f_selection.h"
#include "engine/comm_sel.h"
#include "engine/queries.h"
#include "engine/value_queries.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "relations/relation_codes.h"
#include "relations/relation_conditions.h"
#include "relations/show_message.h"

namespace kestrova {
namespace {

// The operators of a group of types.
struct OperatorRule {
  std::array<std::int16_t, 13> types;  // 0 ends the list
  std::array<std::string_view, 8> operators;
};

// clang-format off
constexpr std::array kOperators = {
    // Texts; 1001 is the code that start-up passes.
    OperatorRule{{8, 129, 130, 200, 202, 1001}, {"=", ">", "<", ">=", "<=", "<>", "LIKE", "IN"}},
    // Long texts
    OperatorRule{{201, 203}, {"=", ">", "<", ">=", "<=", "<>", "LIKE"}},
    // Dates
    OperatorRule{{7, 133, 134, 135}, {"=", ">", "<", ">=", "<=", "<>", "IN"}},
    // Numbers
    OperatorRule{{2, 3, 4, 5, 14, 16, 17, 18, 19, 20, 21, 131, 139}, {"=", ">", "<", ">=", "<=", "<>", "IN"}},
    // Boolean
    OperatorRule{{11}, {"="}},
};

// Fields that every invoice run has of its own.
constexpr std::array<std::string_view, 8> kRunFields = {
    "R_NAME", "R_PREIS", "R_EINH", "R_TOTALPREIS", "R_MSZ", "R_EURO", "R_KUNDE", "R_VERTRAG"};

// Types whose typed values are whole numbers. The character type is among them on purpose.
constexpr std::array<std::int16_t, 5> kWholeNumberTypes = {2, 3, 4, 129, 131};
// clang-format on

constexpr std::int16_t kDouble = static_cast<std::int16_t>(FieldType::kDouble);
constexpr std::int16_t kBoolean = static_cast<std::int16_t>(FieldType::kBoolean);
constexpr std::int32_t kListOnlyText = 195;  // "take a value from the list"

constexpr std::string_view kRelationWithoutValues = "WVO";

template <class Range, class T>
bool contains(const Range& range, const T& value) {
  return std::find(std::begin(range), std::end(range), value) != std::end(range);
}

// A value as an entry of the value list: a date as the user types it and the word for a boolean, so
// that both are read back; everything else as the server writes it.
// The field's type is asked for booleans only: it costs a query.
template <class FieldTypeLookup>
std::string value_entry(const Value& value, const FieldTypeLookup& field_type) {
  const bool is_date = value.get_if<DateTime>() != nullptr;
  const bool is_word = value.get_if<bool>() != nullptr && field_type() == kBoolean;
  return is_date || is_word ? user_text(value, user_locale()) : value.text();
}

// The two fields whose stored flags stand for units take values from their lists only.
enum class UnitField { kNone, kBark, kMoney };

UnitField unit_field(std::string_view name) {
  const std::string upper = text::upper(text::trim(name));
  if (upper == "RINDEPROZENT") return UnitField::kBark;
  if (upper == "DM/EURO") return UnitField::kMoney;
  return UnitField::kNone;
}

}  // namespace

std::int16_t F_Selection::selected_type() {
  return Comm_Sel().Get_TypeOfField(context_, cboField.text(), true, dbSelektion.get(),
                                    lookup_relation());
}

std::string F_Selection::converted_value() {
  // Without a field there is no type to quote by.
  if (cboField.index() == -1) return cboValue.text();
  return Comm_Sel().ApcboValue(context_, cboValue.text(), strNickName, dbSelektion.get(),
                               lookup_relation());
}

// As converted_value, and a decimal number with the server's point: in a list, 1,5 would read as 1
// and 5.
std::string F_Selection::converted_element() {
  const std::string value = converted_value();
  const bool is_local_number = module_state().strDecimalSep != "." && !value.starts_with('\'') &&
                               value.find(module_state().strDecimalSep) != std::string::npos;
  if (!is_local_number || cboField.index() == -1 || selected_type() != kDouble) return value;
  return suite().num_formatter()->format(value, module_state().strBlank);
}

void F_Selection::FillOperatorList(ComboBox& combo, std::int16_t type) {
  combo.clear();
  const auto rule =
      std::find_if(kOperators.begin(), kOperators.end(),
                   [type](const OperatorRule& r) { return type != 0 && contains(r.types, type); });
  if (rule == kOperators.end()) {
    ShowMessage("Unknow data type!");
    return;
  }
  for (const std::string_view op : rule->operators) {
    if (!op.empty()) combo.add(op);
  }
  combo.set_index(0);
}

void F_Selection::cboField_Click() {
  BusyPointer busy(user_interface());
  if (cboField.index() == -1) return;
  cboValue.clear();
  // Until the new field is known, nothing can be composed with the operators of the last one.
  cboOperator.clear();
  if (IsCatalogueRelation(lookup_relation())) {
    fill_catalogue_values();
  } else if (!fill_selektion_values()) {
    busy.keep();
    return;
  }
  const std::int16_t type =
      Comm_Sel().Get_TypeOfField(context_, strNickName, true, dbSelektion.get(), lookup_relation());
  try {
    FillOperatorList(cboOperator, type);
  } catch (...) {
    // Selecting the first operator converts the value, which may fail as well.
    cboOperator.clear();
    throw;
  }
  strValue = cboOperator.text() == "IN" ? "()" : "";
  ShowFormula();
}

void F_Selection::fill_catalogue_values() {
  if (strRelation == kRelationWithoutValues) return;
  const std::int16_t id = selected_field_id(cboField);
  std::string condition;
  std::string from;
  GetRelationFromWhere(strParameter, condition, from, context_, context_.lngAccessLevel);
  std::string expression;
  const std::string_view key = IsRestrictedRelation(strParameter)
                                   ? access_table_key(strParameter)
                                   : GetRelationTableKey(strParameter);
  apply_access_levels(*suite().table_access(), strParameter, key, id, expression, from, context_);

  std::string sql = "SELECT DISTINCT " + expression + " FROM " + from;
  if (!condition.empty()) sql += " WHERE " + condition;
  const auto values = open_query(connection(), sql + " ORDER BY 1");
  const auto type = [this] { return selected_type(); };
  CatalogueValues shown(strRelation);
  for (; !values->eof(); values->move_next()) {
    const Value value = values->value(std::size_t{0});
    shown.add(value.is_null() ? "Null" : value_entry(value, type));
  }
  for (const std::string& value : shown.entries()) cboValue.add(value);
}

std::string F_Selection::value_query_tail(std::string_view main_table) const {
  const std::string condition =
      suite().access_level_filter()->restrict(main_table, "", context_, context_.lngAccessLevel);
  return (condition.empty() ? "" : " WHERE " + condition) + " ORDER BY 1";
}

bool F_Selection::fill_selektion_values() {
  const auto nickname_row =
      open_query(connection(), "SELECT NICKNAME_OF_FIELD FROM SELEKTION WHERE ID_SELEKTION = " +
                                   std::to_string(cboField.item_data(cboField.index())));
  strNickName = nickname_row->value(std::size_t{0}).text();
  nickname_row->close();

  const Comm_Sel fields;
  Recordset* const selektion = dbSelektion.get();
  std::string sql(fixed_value_query(strNickName));
  if (sql.empty()) {
    const auto table = [&](std::string_view kind) {
      return fields.Get_TableName(strNickName, true, kind, selektion);
    };
    const auto condition = [&](std::string_view order) {
      return fields.Get_Condition(strNickName, true, order, selektion);
    };
    const std::string join = fields.Get_SQLSelect(strNickName, true, selektion);
    const std::string main_table = table("MAIN");
    const std::string tail = value_query_tail(main_table);
    if (join.empty()) {
      sql = "SELECT DISTINCT " + fields.Get_FieldName_Sel(strNickName, selektion) + " FROM " +
            main_table + tail;
    } else if (join == "INNER") {
      sql = "SELECT DISTINCT " + fields.Get_SQLValue(strNickName, true, selektion) +
            " AS FVALUE FROM " + main_table + " INNER JOIN " + table("SECOND") + " ON " +
            condition("I") + tail;
    } else if (join == "TRIPLE") {
      sql = "SELECT DISTINCT " + fields.Get_SQLValue(strNickName, true, selektion) +
            " AS FVALUE FROM " + main_table + " INNER JOIN (" + table("SECOND") + " INNER JOIN " +
            table("THIRD") + " ON " + condition("II") + ") ON " + condition("I") + tail;
    } else {
      ShowMessage(
          "Debug: Unhandled parameter in SELECT CASE at function cboField_Click in "
          "Kestrova_Sel.F_Selection");
      return false;
    }
  }

  const UnitField unit = unit_field(strNickName);
  const auto type = [this] { return selected_type(); };
  const auto values = open_query(connection(), sql);
  for (; !values->eof(); values->move_next()) {
    const Value value = values->value(std::size_t{0});
    if (text::trim(value.text_or_empty()).empty()) continue;
    if (unit == UnitField::kBark) {
      cboValue.add(value.boolean() ? "'%'" : "'cm'");
    } else if (unit == UnitField::kMoney) {
      cboValue.add(value.boolean() ? "EURO" : std::string_view(module_state().strNatWahrung));
    } else {
      if (cboValue.count() == 0 && fields.Get_SQLSelect(strNickName, true, selektion).empty()) {
        cboValue.add("Null");
      }
      cboValue.add(value_entry(value, type));
    }
  }
  return true;
}

void F_Selection::cboOperator_Click() {
  const bool is_list = cboOperator.text() == "IN";
  btnPlus.set_enabled(is_list);
  btnMinus.set_enabled(is_list);
  strValue = is_list ? "()" : converted_element();
  ShowFormula();
}

void F_Selection::cboValue_Click() {
  const BusyPointer busy(user_interface());
  if (cboOperator.text() != "IN") strValue = converted_value();
  if (!text::trim(strValue).empty() && cboField.index() != -1 && selected_type() == kDouble) {
    strValue = suite().num_formatter()->format(strValue, module_state().strBlank);
  }
  if (strValue == "'Null'") strValue = "Null";
  ShowFormula();
}

void F_Selection::cboValue_Validate(bool& /*Cancel*/) {
  const bool is_typed = cboValue.index() == -1 && !cboValue.text().empty();
  if (is_typed && cboOperator.text() != "IN") cboValue_Click();
}

void F_Selection::cboValue_KeyPress(int& KeyAscii) {
  if (unit_field(cboField.text()) != UnitField::kNone) {
    ShowMessage(loc_texts().GetText(kListOnlyText, context_), kExclamationIcon);
    KeyAscii = 0;
    return;
  }
  if (cboField.index() == -1) return;
  const std::int16_t type = selected_type();
  if (contains(kWholeNumberTypes, type)) {
    KeyAscii = OnlyNumbers(KeyAscii, false, "");
  } else if (type == kDouble) {
    KeyAscii = OnlyNumbers(KeyAscii, true, cboValue.text());
  }
}

int F_Selection::OnlyNumbers(int KeyAscii, bool AllowDecimal, std::string_view Text) const {
  constexpr int kBackspace = 8;
  constexpr int kEnter = 13;
  const bool is_digit = KeyAscii >= '0' && KeyAscii <= '9';
  if (is_digit || KeyAscii == kBackspace || KeyAscii == kEnter) return KeyAscii;
  const std::string& separator = module_state().strDecimalSep;
  const bool is_separator =
      !separator.empty() && KeyAscii == static_cast<unsigned char>(separator[0]);
  if (!is_separator || !AllowDecimal) return 0;
  return Text.find(separator) == std::string_view::npos ? KeyAscii : 0;
}

std::string F_Selection::SetValueFormat(std::string& nickname) const {
  nickname = text::upper(nickname);
  if (!contains(kRunFields, nickname)) return nickname;
  return text::upper(module_state().strVerType) + nickname.substr(1);
}

}  // namespace kestrova
