// What the editor shows of the selected model, and which controls it enables.
#include <string>

#include "editor/f_selection.h"
#include "engine/queries.h"
#include "interface/module_state.h"
#include "platform/error.h"

namespace kestrova {

std::string F_Selection::selected_model() const {
  return std::to_string(Model.item_data(Model.index()));
}

void F_Selection::throw_model_is_gone() const {
  throw NoCurrentRecord("The model '" + Model.text() + "' has been deleted meanwhile.");
}

std::string F_Selection::stored_model() const {
  const auto row =
      open_query(connection(), "SELECT MODEL FROM MODELS WHERE ID = " + selected_model());
  if (row->eof()) throw_model_is_gone();
  return row->value(std::size_t{0}).text_or_empty();
}

std::string F_Selection::and_visible_models() const {
  const std::string condition =
      suite().access_level_filter()->restrict("MODELS", "", context_, context_.lngAccessLevel);
  return condition.empty() ? "" : " AND " + condition;
}

int F_Selection::standard_model_index() {
  if (!model_settings_) model_settings_ = suite().model_settings();
  const std::int32_t standard = model_settings_->standard_model(context_, GetModelRelation(), 0);
  for (int i = 0; i < Model.count(); ++i) {
    if (Model.item_data(i) == standard) return i;
  }
  return -1;
}

std::string F_Selection::GetStandardModelName() {
  const int index = standard_model_index();
  return index == -1 ? std::string() : Model.entry_text(index);
}

void F_Selection::Model_Click() { RefreshModelState(); }

// The boxes are set under the hourglass, also at the start of a run: their handlers write to the
// database while the pointer is the default.
void F_Selection::RefreshModelState() {
  const BusyPointer busy(user_interface());
  const bool is_selected = is_model_selected();
  const std::string id = is_selected ? selected_model() : "";
  std::string part = is_selected ? "SELECT (CASE WHEN EXISTS(SELECT ID FROM MODELS WHERE ID = '" +
                                       id + "' AND NICHT_ANDERBAR = 1) THEN 1 ELSE 0 END) AS val1,"
                                 : "SELECT 0 AS val1,";
  part += "(CASE WHEN EXISTS(SELECT ID FROM MODELS WHERE RELATION = '" + GetModelRelation() +
          "' AND NICHT_ANDERBAR = 1 AND STANDARD = 1) THEN 1 ELSE 0 END) AS val2,";
  part += is_selected
              ? "(SELECT ID_ACCESS_LEVELS FROM MODELS WHERE ID = " + id +
                    ") as val3,(SELECT NAME FROM ACCESS_LEVELS WHERE ID IN (SELECT "
                    "ID_ACCESS_LEVELS FROM MODELS WHERE ID = " +
                    id + ")) AS val4,(CASE WHEN EXISTS(SELECT ID FROM MODELS WHERE ID = " + id +
                    " AND STANDARD = 1) THEN 1 ELSE 0 END) AS STANDARD"
              : "NULL AS val3,NULL AS val4,0 AS STANDARD";
  if (blnOracle) part += " FROM DUAL";
  const auto row = open_query(connection(), "SELECT * FROM (" + part + ") A");
  // Read whole before the first box is set.
  const bool locked = row->value("val1").integer() == 1;
  const bool standard = row->value("STANDARD").integer() == 1;
  const bool bound = !row->value("val3").is_null();
  const std::string level = row->value("val4").text_or_empty();
  row->close();
  Check1.set_checked(locked);
  chkStandard.set_checked(standard);
  chkAL.set_checked(bound);
  chkAL.set_caption(level);
  enable_controls();
}

// Whoever may overwrite a model may also delete it and make it the standard.
bool F_Selection::may_overwrite() const {
  const bool changes_locked = options_.change_models && options_.b018 && chkAL.enabled();
  return !blnReadOnly && options_.b057 && (!Check1.checked() || changes_locked);
}

void F_Selection::refuse_locked_model() const {
  if (!Check1.checked() || may_overwrite()) return;
  throw InvalidArgument("The model '" + Model.text() + "' is locked: it stays as it is.");
}

void F_Selection::enable_controls() {
  const bool writable = !blnReadOnly;
  Check1.set_enabled(writable && options_.change_models && options_.b049 && options_.b018);
  chkAL.set_enabled(writable && options_.change_models && options_.b049);
  btnSaveModelleAs.set_enabled(writable && options_.b049);
  for (Control* control :
       {static_cast<Control*>(&btnSaveModelle), static_cast<Control*>(&btnDeleteModelle),
        static_cast<Control*>(&chkStandard)}) {
    control->set_enabled(may_overwrite());
  }
  for (Control* control : std::initializer_list<Control*>{
           &btnOk, &Frame1, &btnPlus, &btnMinus, &btnReplace, &btnInsert, &Formula, &cboOperator,
           &cboValue, &cboField, &btnDelete, &btnNew, &btnLast, &btnNext, &btnPrev, &btnFirst,
           &btnOr, &Frame4, &Model}) {
    control->set_enabled(writable);
  }
}

}  // namespace kestrova
