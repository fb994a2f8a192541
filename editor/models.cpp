// Models: saving, deleting, and the properties that users give them.
#include <optional>
#include <string>

#include "editor/editor_texts.h"
#include "editor/f_selection.h"
#include "engine/comm_sel.h"
#include "engine/criterion.h"
#include "engine/model_name.h"
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
  require_model_name(name);
  return name;
}

bool may_replace(const std::string& name, const KesVar& context) {
  const std::string prompt = loc_texts().GetText(kModelExistsText, context) + " '" + name + "' " +
                             loc_texts().GetText(kReplaceItText, context);
  return ShowMessage(prompt, kReplaceFlags) == MessageResult::kYes;
}

bool may_replace_changed(const std::string& name, const KesVar& context) {
  return ShowMessage(editor_text(context, EditorText::kModelChanged, name), kReplaceFlags) ==
         MessageResult::kYes;
}

// What was selected in the list of models is selected again, unless the new selection is kept. An
// error of that is less than the one that has prevented the action.
class RestoredSelection {
 public:
  explicit RestoredSelection(ComboBox& models) : models_(models), before_(models.index()) {}
  ~RestoredSelection() {
    if (is_kept_ || models_.index() == before_) return;
    try {
      models_.set_index(before_);
    } catch (...) {
    }
  }
  RestoredSelection(const RestoredSelection&) = delete;
  RestoredSelection& operator=(const RestoredSelection&) = delete;

  void keep_new() { is_kept_ = true; }

 private:
  ComboBox& models_;
  int before_;
  bool is_kept_ = false;
};

// Boxes are also set in code, under the hourglass; only a click of the user changes the model.
bool is_user_click() { return user_interface().pointer() == PointerShape::kDefault; }

}  // namespace

void F_Selection::btnSaveModelle_Click() { SaveModel(true); }

void F_Selection::btnSaveModelleAs_Click() { SaveModel(false); }

void F_Selection::SaveModel(bool overwrite) {
  if (is_read_only_run() || is_refused_by_or_line(kOkOnly)) return;
  const bool is_chosen = overwrite && is_model_selected();
  const auto name = is_chosen ? Model.text() : ask_model_name(context_);
  if (!name) return;
  const bool is_listed = is_chosen || Model.has_entry(*name);
  if (!is_chosen && is_listed && !may_replace(*name, context_)) return;
  check_all_fields_offered();
  const std::string criteria = criteria_string(context_, kExecutable);
  if (is_listed) {
    RestoredSelection selection(Model);
    // Both show the state of the model as it is now.
    if (is_chosen) {
      RefreshModelState();
    } else {
      Model.set_text(*name);
    }
    if (!overwrite_model(criteria)) return;
    selection.keep_new();
  } else {
    insert_model(*name, criteria);
  }
  caption_ = "Selektion: " + std::string(text::trim(*name));
}

// Overwrites the selected model, whose state has just been read; false when the user does not want
// that any more. A question lets time pass, so that lock and text are read anew behind it. What
// others do between the last reading and the statement cannot be seen: it goes by the number alone.
bool F_Selection::overwrite_model(const std::string& criteria) {
  const std::int32_t id = Model.item_data(Model.index());
  // A model that was never loaded has no text that the user could expect to find.
  const auto seen = seen_models_.find(id);
  std::optional<std::string> agreed;
  if (seen != seen_models_.end()) agreed = seen->second;
  for (;; RefreshModelState()) {
    refuse_locked_model();
    if (!agreed) break;
    const std::string stored = stored_model();
    if (stored == *agreed) break;
    if (!may_replace_changed(Model.text(), context_)) return false;
    agreed = stored;
  }
  change_model("UPDATE MODELS SET MODEL = '" + text::replace_all(criteria, "'", "''") +
               "' WHERE ID = " + selected_model());
  seen_models_[id] = criteria;
  return true;
}

// A line whose field is not offered would be saved without its identifier, and be lost.
void F_Selection::check_all_fields_offered() const {
  for (const ListEntry& line : ListCriteria.entries()) {
    if (is_or_line(line.text) || Comm_Sel().get_FieldID(field_part(line.text)) != 0) continue;
    throw InvalidArgument("The field of the criterion '" + line.text +
                          "' is not offered any more: the model is not saved.");
  }
}

// The name goes into the statement as typed, unlike the criteria.
void F_Selection::insert_model(const std::string& name, const std::string& criteria) {
  const std::string relation = GetModelRelation();
  const std::string user = std::to_string(context_.lngUserID);
  const bool is_bound = chkAL.enabled() && chkAL.checked();
  connection().execute(
      "INSERT INTO MODELS "
      "(MODEL,NAME,RELATION,STANDARD,ID_USER,NICHT_ANDERBAR,ID_ACCESS_LEVELS) VALUES ('" +
      text::replace_all(criteria, "'", "''") + "','" + name + "','" + relation + "',0," + user +
      "," + (options_.b018 ? "1" : "NULL") + "," +
      (is_bound ? std::to_string(context_.lngAccessLevel) : "NULL") + ")");
  const auto row =
      open_query(connection(), "SELECT ID FROM MODELS WHERE NAME = '" + name +
                                   "' AND RELATION = '" + relation + "' AND ID_USER = " + user);
  if (row->eof()) return;
  const std::int32_t id = row->value(std::size_t{0}).integer();
  row->close();
  Model.add(name);
  Model.set_item_data(Model.new_index(), id);
  seen_models_[id] = criteria;
  Model.set_index(Model.new_index());
}

void F_Selection::btnDeleteModelle_Click() {
  if (is_read_only_run() || !is_model_selected()) return;
  RefreshModelState();
  refuse_locked_model();
  // No row is as good as one: then another user has done what this one wants.
  connection().execute("DELETE FROM MODELS WHERE ID = " + selected_model());
  txtStandard.set_text(GetStandardModelName());
  Model.remove(Model.index());
  SetListButtons();
}

void F_Selection::chkStandard_Click() {
  if (is_user_click() && !is_read_only_run()) SetStandardModel(!chkStandard.checked());
}

void F_Selection::SetStandardModel(bool clear) {
  if (!is_model_selected()) return;
  const std::string id = selected_model();
  const std::string model_class(kModelClass);
  run_or_reset(chkStandard, [this] { RefreshModelState(); });
  refuse_locked_model();
  if (clear) {
    change_model("UPDATE MODELS SET STANDARD = 0 WHERE ID = " + id);
  } else {
    change_model("UPDATE MODELS SET STANDARD = (CASE WHEN MODELS.ID = " + id +
                 " THEN 1 ELSE 0 END) WHERE RELATION = '" + GetModelRelation() + "'" +
                 and_visible_models() + " AND " + model_class + " = (SELECT " + model_class +
                 " FROM MODELS WHERE ID = " + id + ")");
  }
  show_box(chkStandard, !clear);
  txtStandard.set_text(GetStandardModelName());
}

void F_Selection::Check1_Click() {
  if (!is_user_click() || is_read_only_run()) return;
  if (!is_model_selected()) {
    Check1.set_checked(false);
    return;
  }
  run_or_reset(Check1, [this] {
    change_model(std::string("UPDATE MODELS SET NICHT_ANDERBAR = ") +
                 (Check1.checked() ? "1" : "0") + ",STANDARD = 0,ID_USER = ISNULL(ID_USER, " +
                 std::to_string(context_.lngUserID) + ") WHERE ID IN (" + selected_model() + ")");
  });
  show_changed_model();
}

void F_Selection::chkAL_Click() {
  if (!is_user_click() || is_read_only_run()) return;
  if (!is_model_selected()) {
    chkAL.set_checked(false);
    return;
  }
  const bool is_bound = chkAL.enabled() && chkAL.checked();
  run_or_reset(chkAL, [this, is_bound] {
    change_model("UPDATE MODELS SET ID_ACCESS_LEVELS = " +
                 (is_bound ? std::to_string(context_.lngAccessLevel) : "NULL") +
                 ",STANDARD = 0 WHERE ID = " + selected_model());
  });
  show_changed_model();
}

void F_Selection::change_model(const std::string& statement) {
  if (connection().execute(statement) == 0) throw_model_is_gone();
}

// Without its handler, which takes a change under the default pointer for the user's.
void F_Selection::show_box(CheckBox& box, bool checked) {
  const BusyPointer busy(user_interface());
  box.set_checked(checked);
}

// What a click on a box asks for; the box is as it was before the click when that fails.
void F_Selection::run_or_reset(CheckBox& box, const std::function<void()>& action) {
  const bool before = !box.checked();
  try {
    action();
  } catch (...) {
    show_box(box, before);
    throw;
  }
}

void F_Selection::show_changed_model() {
  txtStandard.set_text(GetStandardModelName());
  Model_Click();
}

}  // namespace kestrova
