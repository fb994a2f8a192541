// The lookups of catalogue fields by name and by identifier.
#include <algorithm>
#include <array>
#include <optional>

#include "engine/comm_sel.h"
#include "engine/queries.h"
#include "engine/selektion_row.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "relations/show_message.h"

namespace kestrova {
namespace {

// An argument that chooses a column of SELEKTION.
struct ColumnChoice {
  std::string_view argument;
  std::string_view column;
};

constexpr std::array kTables = {
    ColumnChoice{"MAIN", "TABLE_NAME"},
    ColumnChoice{"SECOND", "TABLE_NAME_II"},
    ColumnChoice{"THIRD", "TABLE_NAME_III"},
};

constexpr std::array kConditions = {
    ColumnChoice{"I", "CONDITION"},
    ColumnChoice{"II", "CONDITIONII"},
};

template <class Choices>
std::optional<std::string_view> chosen_column(const Choices& choices, std::string_view argument) {
  const auto choice = std::find_if(choices.begin(), choices.end(),
                                   [&](const ColumnChoice& c) { return c.argument == argument; });
  if (choice == choices.end()) return std::nullopt;
  return choice->column;
}

std::optional<std::string_view> table_column(std::string_view tab_type) {
  return chosen_column(kTables, text::upper(text::trim(tab_type)));
}

std::optional<std::string_view> condition_column(std::string_view ord_condition) {
  return chosen_column(kConditions, ord_condition);
}

std::string show_debug(std::string_view message) {
  ShowMessage(message, kCriticalIcon);
  return {};
}

std::string upper_column(std::string_view val, bool nick, Recordset* selektion,
                         std::string_view column) {
  return find_field(val, nick, selektion) ? upper_trimmed(selektion->value(column)) : std::string();
}

// The catalogue row of a field, with the columns asked for. The first row is read as it comes: an
// unknown identifier fails at the first column.
std::unique_ptr<Recordset> field_row(std::int16_t id, std::string_view columns,
                                     const std::shared_ptr<Connection>& connection) {
  if (!connection) throw ObjectNotSet("The database connection is not set.");
  std::string sql = "SELECT ";
  sql += columns;
  sql += " FROM SELEKTION WHERE ID_SELEKTION = ";
  sql += std::to_string(id);
  return open_query(*connection, sql);
}

}  // namespace

std::string Comm_Sel::Get_SQLSelect(std::string_view val, bool Nick,
                                    Recordset* tmpSelektion) const {
  return upper_column(val, Nick, tmpSelektion, "SQLSELECT");
}

std::string Comm_Sel::Get_Format_Sel(std::string_view val, bool Nick,
                                     Recordset* tmpSelektion) const {
  return upper_column(val, Nick, tmpSelektion, "FORMAT");
}

std::string Comm_Sel::Get_SQLValue(std::string_view val, bool Nick, Recordset* tmpSelektion) const {
  return upper_column(val, Nick, tmpSelektion, "SQLVALUE");
}

std::string Comm_Sel::Get_TableName(std::string_view val, bool Nick, std::string_view TabType,
                                    Recordset* tmpSelektion) const {
  if (!find_field(val, Nick, tmpSelektion)) return {};
  const auto column = table_column(TabType);
  if (!column) {
    return show_debug(
        "Debug: Bad parameter TabType at function Get_TableName in Kestrova_Sel.Comm_Sel");
  }
  return tmpSelektion->value(*column).text();
}

std::string Comm_Sel::Get_Condition(std::string_view val, bool Nick, std::string_view Ord_Condition,
                                    Recordset* tmpSelektion) const {
  if (!find_field(val, Nick, tmpSelektion)) return {};
  const auto column = condition_column(Ord_Condition);
  if (!column) {
    return show_debug(
        "Debug: Bad parameter Ord_Ord_Condition at Kestrova_Sel.Comm_Sel.Get_Comdition");
  }
  return tmpSelektion->value(*column).text();
}

std::string Comm_Sel::Get_FieldName_Sel(std::string_view val, Recordset* tmpSelektion) const {
  return find_field(val, true, tmpSelektion) ? field_expression(*tmpSelektion) : std::string();
}

std::string Comm_Sel::Get_SQLSelectFromID(std::int16_t id_selektion,
                                          const std::shared_ptr<Connection>& dbado_dll) const {
  return upper_trimmed(field_row(id_selektion, "SQLSELECT", dbado_dll)->value("SQLSELECT"));
}

std::string Comm_Sel::Get_TableNameFromID(std::int16_t id_selektion, std::string_view TabType,
                                          const std::shared_ptr<Connection>& dbado_dll) const {
  const auto row = field_row(id_selektion, "TABLE_NAME,TABLE_NAME_II,TABLE_NAME_III", dbado_dll);
  const auto column = table_column(TabType);
  if (!column) {
    return show_debug(
        "Debug: Bad parameter TabType in fuction Kestrova_Sel.Comm_Sel.Get_TableNameFromID");
  }
  return row->value(*column).text_or_empty();
}

std::string Comm_Sel::Get_FieldNameFromID(std::int16_t id_selektion,
                                          const std::shared_ptr<Connection>& dbado_dll) const {
  const std::string name =
      field_expression(*field_row(id_selektion, "NAME_OF_FIELD, TABLE_NAME, SQLVALUE", dbado_dll));
  // A diagnostic, kept on purpose.
  if (name.empty() || name == "NA") ShowMessage(std::to_string(id_selektion));
  return name;
}

std::string Comm_Sel::Get_ConditionFromID(std::int16_t id_selektion, std::string_view Ord_Condition,
                                          const std::shared_ptr<Connection>& dbado_dll) const {
  const auto row = field_row(id_selektion, "CONDITION, CONDITIONII", dbado_dll);
  const auto column = condition_column(Ord_Condition);
  return column ? row->value(*column).text_or_empty() : std::string();
}

std::string Comm_Sel::Get_SQLValueFromID(std::int16_t id_selektion,
                                         const std::shared_ptr<Connection>& dbado_dll) const {
  return upper_trimmed(field_row(id_selektion, "SQLVALUE", dbado_dll)->value("SQLVALUE"));
}

std::int16_t Comm_Sel::get_FieldID(std::string_view strFieldString) const {
  const std::string name = text::upper(text::trim(strFieldString));
  const auto& entries = selection_form().field_list().entries();
  const auto entry = std::find_if(entries.begin(), entries.end(), [&name](const ListEntry& e) {
    return text::upper(text::trim(e.text)) == name;
  });
  return entry == entries.end() ? std::int16_t{0} : to_field_id(entry->item_data);
}

}  // namespace kestrova
