// The dialog "Selektion" as a view shows it: its controls under their own names. The editor is the
// model behind it; a view binds each control, passes the user's actions on to it, and closes when
// is_visible() turns false.
#pragma once

#include <string>

#include "platform/controls.h"
#include "platform/user_interface.h"

namespace kestrova {

// Why Insert or Replace did not take the line, although field, operator and value were given. A
// line that cannot be kept or executed as it reads must not get into the list.
enum class LineRefusal {
  kNone,
  kSemicolon,   // a ";" ends a record of the criteria string, so that no value can hold one
  kApostrophe,  // an apostrophe inside the value is not doubled
  kNotClosed,   // a quote, bracket or parenthesis without its partner, a comment, or a character
                // that cannot be printed
  kOperatorInside,  // a sign of comparison inside the value would be read as the operator
  kListCut,         // an IN list that would be read back cut: it takes several lines with OR
};

struct RefusedLine {
  LineRefusal why = LineRefusal::kNone;
  std::string offered;  // the text for the value box that would be taken; "" when there is none
};

class SelectionDialog : public ModalDialog {
 public:
  // The criteria: display name, operator and value as text, the field's identifier as item data. An
  // OR line has the text of the OR line and item data -2.
  ListBox ListCriteria{"ListCriteria"};
  TextBox Formula{"Formula"};  // the line being composed, or the selected one
  ComboBox cboField{"cboField", ComboBox::Style::kDropDownList};
  ComboBox cboOperator{"cboOperator", ComboBox::Style::kDropDownList};
  ComboBox cboValue{"cboValue", ComboBox::Style::kFreeText};
  Button btnNew{"btnNew"};  // empties the list
  Button btnInsert{"btnInsert"}, btnReplace{"btnReplace"}, btnDelete{"btnDelete"}, btnOr{"btnOr"};
  Button btnPlus{"btnPlus"}, btnMinus{"btnMinus"};  // a value into the list of IN, and out of it
  Button btnFirst{"btnFirst"}, btnPrev{"btnPrev"}, btnNext{"btnNext"}, btnLast{"btnLast"};
  Button cmdUp{"cmdUp"}, cmdDown{"cmdDown"};  // move the selected line

  // The models of the relation: name, and MODELS.ID as item data.
  ComboBox Model{"Model", ComboBox::Style::kDropDownList};
  TextBox txtStandard{"txtStandard"};   // name of the standard model
  CheckBox chkStandard{"chkStandard"};  // the selected model is the standard
  CheckBox Check1{"Check1"};            // it is locked
  CheckBox chkAL{"chkAL"};              // it is bound to an access level, whose name is the caption
  Button btnSaveModelle{"btnSaveModelle"}, btnSaveModelleAs{"btnSaveModelleAs"},
      btnDeleteModelle{"btnDeleteModelle"};

  Frame Frame1{"Frame1"};  // around the pickers
  Frame Frame4{"Frame4"};  // around the models
  Button btnOk{"btnOk"}, btnCancel{"btnCancel"};

  // The text of the OR line, by which a line is known as one also after it has been dragged.
  virtual const std::string& or_line() const = 0;

  // What the last Insert, Replace or Plus refused; a view reads it after each of them and says why.
  virtual RefusedLine refused_line() const { return {}; }

 protected:
  SelectionDialog() = default;
};

}  // namespace kestrova
