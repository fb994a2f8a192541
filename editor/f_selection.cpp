// Wiring: which event runs which handler, and the small things that all of them use.
#include "editor/f_selection.h"

#include "interface/module_state.h"
#include "platform/error.h"

namespace kestrova {

std::shared_ptr<SelectionForm> make_selection_form() { return std::make_shared<F_Selection>(); }

F_Selection& selection_editor() {
  auto* const editor = dynamic_cast<F_Selection*>(&selection_form());
  if (editor == nullptr) throw ObjectNotSet("The selection form is no editor.");
  return *editor;
}

F_Selection::F_Selection() { connect_handlers(); }

void F_Selection::connect_handlers() {
  const auto run = [this](void (F_Selection::*handler)()) {
    return [this, handler] { (this->*handler)(); };
  };
  struct ButtonHandler {
    Button& button;
    void (F_Selection::*handler)();
  };
  for (const ButtonHandler& row : {
           ButtonHandler{btnNew, &F_Selection::btnNew_Click},
           ButtonHandler{btnInsert, &F_Selection::btnInsert_Click},
           ButtonHandler{btnReplace, &F_Selection::btnReplace_Click},
           ButtonHandler{btnDelete, &F_Selection::btnDelete_Click},
           ButtonHandler{btnOr, &F_Selection::btnOr_Click},
           ButtonHandler{btnPlus, &F_Selection::btnPlus_Click},
           ButtonHandler{btnMinus, &F_Selection::btnMinus_Click},
           ButtonHandler{btnFirst, &F_Selection::btnFirst_Click},
           ButtonHandler{btnPrev, &F_Selection::btnPrev_Click},
           ButtonHandler{btnNext, &F_Selection::btnNext_Click},
           ButtonHandler{btnLast, &F_Selection::btnLast_Click},
           ButtonHandler{cmdUp, &F_Selection::cmdUp_Click},
           ButtonHandler{cmdDown, &F_Selection::cmdDown_Click},
           ButtonHandler{btnOk, &F_Selection::btnOk_Click},
           ButtonHandler{btnCancel, &F_Selection::btnCancel_Click},
           ButtonHandler{btnSaveModelle, &F_Selection::btnSaveModelle_Click},
           ButtonHandler{btnSaveModelleAs, &F_Selection::btnSaveModelleAs_Click},
           ButtonHandler{btnDeleteModelle, &F_Selection::btnDeleteModelle_Click},
       }) {
    row.button.on_click = run(row.handler);
  }
  ListCriteria.on_click = run(&F_Selection::ListCriteria_Click);
  ListCriteria.on_double_click = run(&F_Selection::ListCriteria_DblClick);
  ListCriteria.on_mouse_move = [this](int button) { ListCriteria_MouseMove(button); };
  ListCriteria.on_drag_drop = [this](const Control& source, double x, double y) {
    ListCriteria_DragDrop(source, x, y);
  };
  cboField.on_click = run(&F_Selection::cboField_Click);
  cboOperator.on_click = run(&F_Selection::cboOperator_Click);
  cboValue.on_click = run(&F_Selection::cboValue_Click);
  cboValue.on_key_press = [this](int& key) { cboValue_KeyPress(key); };
  cboValue.on_validate = [this](bool& cancel) { cboValue_Validate(cancel); };
  Model.on_click = run(&F_Selection::Model_Click);
  Model.on_double_click = run(&F_Selection::Model_DblClick);
  chkStandard.on_click = run(&F_Selection::chkStandard_Click);
  Check1.on_click = run(&F_Selection::Check1_Click);
  chkAL.on_click = run(&F_Selection::chkAL_Click);
}

Connection& F_Selection::connection() const {
  const std::shared_ptr<Connection>& connection = module_state().dbado;
  if (!connection) throw ObjectNotSet("No selection has been started on a database connection.");
  return *connection;
}

const std::string& F_Selection::or_line() const { return module_state().strOderLine; }

bool F_Selection::is_or_line(std::string_view line) const { return line == or_line(); }

const std::string& F_Selection::lookup_relation() const {
  // The contract relations work under a value that no table of relations knows.
  return strRelation == "2VABR" ? strParameter : strRelation;
}

void F_Selection::SetControlFocus(Control& control) {
  if (!control.reachable()) return;
  focused_ = &control;
  control.take_focus();
}

void F_Selection::close_requested() {
  bool cancel = false;
  Form_Unload(cancel);
}

}  // namespace kestrova
