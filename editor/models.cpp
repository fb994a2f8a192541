// Models: saving, deleting, and the properties that users give them.
#include <optional>
#include <string>

#include "editor/f_selection.h"
#include "engine/comm_sel.h"
#include "engine/criterion.h"
#include "engine/queries.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "relations/show_message.h"

namespace kestrova {
namespace {

constexpr std::size_t kLongestName = 40;  // characters
constexpr std::int32_t kReplaceItText = 197;
constexpr std::int32_t kNameText = 198;
constexpr std::int32_t kModelExistsText = 245;

constexpr std::int32_t kReplaceFlags = kYesNo + kExclamationIcon + kSecondButtonDefault;

// The class of a model: in each class of a relation one model is the standard.
constexpr std::string_view kModelClass =
    "(CASE WHEN MODELS.NICHT_ANDERBAR = 1 THEN 3 WHEN MODELS.ID_ACCESS_LEVELS IS NOT NULL THEN 2"
    " ELSE 1 END)";

// The name that the user gives a model; nothing when there is none.
std::optional<std::string> ask_model_name(const KesVar& context) {
  const auto answer =
      user_interface().ask_text(loc_texts().GetText(kNameText, context), kSuiteTitle);
  std::string name(text::left(text::trim(answer.value_or("")), kLongestName));
  if (name.empty()) return std::nullopt;
  return name;
}

bool may_replace(const std::string& name, const KesVar& context) {
  const std::string prompt = loc_texts().GetText(kModelExistsText, context) + " '" + name + "' " +
                             loc_texts().GetText(kReplaceItText, context);
  return ShowMessage(prompt, kReplaceFlags) == MessageResult::kYes;
}

// Boxes are also set in code, under the hourglass; only a click of the user changes the model.
bool is_user_click() { return user_interface().pointer() == PointerShape::kDefault; }

}  // namespace

void F_Selection::btnSaveModelle_Click() { SaveModel(true); }

void F_Selection::btnSaveModelleAs_Click() { SaveModel(false); }

void F_Selection::SaveModel(bool overwrite) {
  if (is_refused_by_or_line(kOkOnly)) return;
  bool is_known = overwrite && is_model_selected();
  const auto name = is_known ? Model.text() : ask_model_name(context_);
  if (!name) return;
  if (!is_known && Model.has_entry(*name)) {
    if (!may_replace(*name, context_)) return;
    Model.set_text(*name);
    is_known = true;
  }
  check_all_fields_offered();
  const std::string criteria = text::replace_all(GetWriteString(context_), "'", "''");
  if (is_known) {
    connection().execute("UPDATE MODELS SET MODEL = '" + criteria +
                         "' WHERE ID = " + selected_model());
  } else {
    insert_model(*name, criteria);
  }
  caption_ = "Selektion: " + std::string(text::trim(*name));
}

// A line whose field is not offered would be saved without its identifier, and be lost.
void F_Selection::check_all_fields_offered() const {
  for (const ListEntry& line : ListCriteria.entries()) {
    if (is_or_line(line.text) || Comm_Sel().get_FieldID(field_part(line.text)) != 0) continue;
    throw InvalidArgument("The field of the criterion '" + line.text +
                          "' is not offered any more: the model is not saved.");
  }
}

// The name goes into the statement as typed, unlike the criteria: an apostrophe in it is an error.
void F_Selection::insert_model(const std::string& name, const std::string& criteria) {
  const std::string relation = GetModelRelation();
  const std::string user = std::to_string(context_.lngUserID);
  const bool is_bound = chkAL.enabled() && chkAL.checked();
  connection().execute(
      "INSERT INTO MODELS "
      "(MODEL,NAME,RELATION,STANDARD,ID_USER,NICHT_ANDERBAR,ID_ACCESS_LEVELS) VALUES ('" +
      criteria + "','" + name + "','" + relation + "',0," + user + "," +
      (options_.b018 ? "1" : "NULL") + "," +
      (is_bound ? std::to_string(context_.lngAccessLevel) : "NULL") + ")");
  const auto row =
      open_query(connection(), "SELECT ID FROM MODELS WHERE NAME = '" + name +
                                   "' AND RELATION = '" + relation + "' AND ID_USER = " + user);
  if (row->eof()) return;
  const std::int32_t id = row->value(std::size_t{0}).integer();
  row->close();
  Model.add(name);
  Model.set_item_data(Model.new_index(), id);
  Model.set_index(Model.new_index());
}

void F_Selection::btnDeleteModelle_Click() {
  if (!is_model_selected()) return;
  connection().execute("DELETE FROM MODELS WHERE ID = " + selected_model());
  txtStandard.set_text(GetStandardModelName());
  Model.remove(Model.index());
  SetListButtons();
}

void F_Selection::chkStandard_Click() {
  if (is_user_click()) SetStandardModel(!chkStandard.checked());
}

void F_Selection::SetStandardModel(bool clear) {
  if (!is_model_selected()) return;
  const std::string id = selected_model();
  const std::string model_class(kModelClass);
  if (clear) {
    connection().execute("UPDATE MODELS SET STANDARD = 0 WHERE ID = " + id);
  } else {
    connection().execute("UPDATE MODELS SET STANDARD = (CASE WHEN MODELS.ID = " + id +
                         " THEN 1 ELSE 0 END) WHERE RELATION = '" + GetModelRelation() + "'" +
                         and_visible_models() + " AND " + model_class + " = (SELECT " +
                         model_class + " FROM MODELS WHERE ID = " + id + ")");
  }
  txtStandard.set_text(GetStandardModelName());
}

void F_Selection::Check1_Click() {
  if (!is_user_click()) return;
  if (!is_model_selected()) {
    Check1.set_checked(false);
    return;
  }
  connection().execute(std::string("UPDATE MODELS SET NICHT_ANDERBAR = ") +
                       (Check1.checked() ? "1" : "0") + ",STANDARD = 0,ID_USER = ISNULL(ID_USER, " +
                       std::to_string(context_.lngUserID) + ") WHERE ID IN (" + selected_model() +
                       ")");
  show_changed_model();
}

void F_Selection::chkAL_Click() {
  if (!is_user_click()) return;
  if (!is_model_selected()) {
    chkAL.set_checked(false);
    return;
  }
  const bool is_bound = chkAL.enabled() && chkAL.checked();
  connection().execute("UPDATE MODELS SET ID_ACCESS_LEVELS = " +
                       (is_bound ? std::to_string(context_.lngAccessLevel) : "NULL") +
                       ",STANDARD = 0 WHERE ID = " + selected_model());
  show_changed_model();
}

void F_Selection::show_changed_model() {
  txtStandard.set_text(GetStandardModelName());
  Model_Click();
}

}  // namespace kestrova
