// What pick lists need: the models of a relation, and the picked value as SQL.
#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "engine/comm_sel.h"
#include "engine/field_types.h"
#include "engine/model_relation.h"
#include "engine/queries.h"
#include "engine/selektion_row.h"
#include "interface/module_state.h"
#include "platform/text.h"

namespace kestrova {
namespace {

// Types whose values are written between apostrophes in SQL: texts and dates.
constexpr std::array kQuotedTypes = {
    FieldType::kDate,     FieldType::kChar,        FieldType::kWChar,   FieldType::kDBDate,
    FieldType::kDBTime,   FieldType::kDBTimeStamp, FieldType::kVarChar, FieldType::kLongVarChar,
    FieldType::kVarWChar, FieldType::kLongVarWChar};

std::string sql_value(std::string_view value, std::int16_t type) {
  const bool is_quoted = std::find(kQuotedTypes.begin(), kQuotedTypes.end(),
                                   static_cast<FieldType>(type)) != kQuotedTypes.end();
  return is_quoted ? "'" + std::string(value) + "'" : std::string(value);
}

// Whether the picked entry of the value list is the word Null at its top, which is no value of the
// field's type.
bool is_null_entry(const ComboBox& values) {
  return values.index() == 0 && values.entry_text(0) == "Null";
}

// The busy pointer of a list filler. That of a caller who shows it already stays the caller's, and
// a host without a user interface has no pointer to show.
class FillerPointer {
 public:
  FillerPointer() {
    UserInterface* const ui = installed_user_interface();
    if (ui != nullptr && ui->pointer() == PointerShape::kDefault) busy_.emplace(*ui);
  }
  void restore() { busy_.reset(); }

 private:
  std::optional<BusyPointer> busy_;
};

void select_model(ComboPort& combo, std::int32_t model) {
  for (int i = 0; i < combo.ListCount(); ++i) {
    if (combo.ItemData(i) != model) continue;
    combo.SetListIndex(i);
    return;
  }
}

}  // namespace

void Comm_Sel::Fill_ComboModel(const KesVar& KesVar, ComboPort& tmpCombo,
                               std::string_view strParameter, bool SetStandardModel) const {
  const std::string relation = model_relation_for_list(strParameter);
  FillerPointer busy;
  tmpCombo.Clear();
  const std::string visible = suite().access_level_filter()->restrict("MODELS", "", KesVar, 0);
  const auto models = open_query(
      connection_of(KesVar),
      "SELECT MODELS.ID,MODELS.NAME,MODELS.STANDARD FROM MODELS"
      " LEFT JOIN ACCESS_LEVELS ON MODELS.ID_ACCESS_LEVELS = ACCESS_LEVELS.ID"
      " WHERE MODELS.RELATION = '" +
          relation + "'" + (visible.empty() ? "" : " AND " + visible) + " ORDER BY MODELS.NAME");

  // The empty entry lets the user choose no model.
  tmpCombo.AddItem("");
  tmpCombo.SetItemData(tmpCombo.NewIndex(), 0);
  for (; !models->eof(); models->move_next()) {
    const std::string name = models->value("NAME").text_or_empty();
    const std::int32_t id = models->value("ID").integer();
    tmpCombo.AddItem(name);
    tmpCombo.SetItemData(tmpCombo.NewIndex(), id);
  }
  models->close();

  if (!SetStandardModel) return;
  const std::int32_t standard = suite().model_settings()->standard_model(KesVar, relation, 0);
  // What the host does about the selection is not done under the busy pointer, under which boxes of
  // the editor ignore their clicks.
  busy.restore();
  select_model(tmpCombo, standard);
}

std::string Comm_Sel::ApcboValue(const KesVar& KesVar, std::string_view val,
                                 std::string_view cboValue_dll, Recordset* dbSelektion_dll,
                                 std::string_view Parameter) const {
  const Relation relation(Parameter);
  if (relation.catalogue || relation.restricted) {
    if (is_null_entry(selection_form().value_list())) return std::string(val);
    const FillerPointer busy;
    return sql_value(val, Get_TypeOfField(KesVar, "", false, dbSelektion_dll, Parameter));
  }
  if (cboValue_dll.empty()) return {};
  const FillerPointer busy;
  Recordset& selektion = row_set(dbSelektion_dll);
  if (!selektion.eof()) selektion.move_first();
  selektion.find("NICKNAME_OF_FIELD = '" + std::string(cboValue_dll) + "'");
  if (selektion.eof()) return {};
  const FieldColumn field = column_of_row(selektion);
  const auto table = open_query(connection_of(KesVar), field.table);
  return sql_value(val, static_cast<std::int16_t>(table->type(field.column)));
}

}  // namespace kestrova
