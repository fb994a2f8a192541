// Wiring: which event runs which handler, and the small things that all of them use.
#include "editor/f_selection.h"

#include "interface/module_state.h"
#include "platform/error.h"

namespace kestrova {

std::shared_ptr<SelectionForm> make_selection_form() { return std::make_shared<F_Selection>(); }

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
       }) {
    row.button.on_click = run(row.handler);
  }
  ListCriteria.on_click = run(&F_Selection::ListCriteria_Click);
  ListCriteria.on_double_click = run(&F_Selection::ListCriteria_DblClick);
  cboField.on_click = run(&F_Selection::cboField_Click);
  cboOperator.on_click = run(&F_Selection::cboOperator_Click);
  cboValue.on_click = run(&F_Selection::cboValue_Click);
  Model.on_click = run(&F_Selection::Model_Click);
  Model.on_double_click = run(&F_Selection::Model_DblClick);
}

const std::string& F_Selection::lookup_relation() const {
  // The contract relations work under a value that no table of relations knows.
  return strRelation == "2VABR" ? strParameter : strRelation;
}

void F_Selection::SetControlFocus(const Control& control) {
  if (control.reachable()) focused_ = &control;
}

void F_Selection::close_requested() {
  bool cancel = false;
  Form_Unload(cancel);
}

}  // namespace kestrova
