// The widgets of the dialog "Selektion": how they look, where they stand, in which order the
// keyboard reaches them. They are not bound to anything here.
//
// Every widget has the name of its control as object name, a spoken name and a tooltip.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <string>
#include <vector>

#include "platform/qt/captions.h"
#include "platform/qt/entry_list_view.h"
#include "platform/qt/refusal_notice.h"
#include "platform/qt/value_edit.h"
#include "platform/selection_dialog.h"

namespace kestrova::qt {

class SelectionWidgets {
 public:
  // Makes them and lays them out in the window, with this line below the list when there is one.
  SelectionWidgets(QWidget& window, SelectionDialog& dialog, const Captions& captions,
                   QWidget* line_below_list);

  struct ButtonPair {
    Button& control;
    QPushButton& widget;
    QKeySequence keys;  // a way to it besides its mnemonic; empty for none
  };
  struct CheckBoxPair {
    CheckBox& control;
    QCheckBox& widget;
  };
  std::vector<ButtonPair> buttons;
  std::vector<CheckBoxPair> check_boxes;

  QPushButton& of(const Button& control) const;

  QWidget& body;  // holds all others
  QComboBox& field;
  QComboBox& oper;
  QComboBox& value;
  ValueEdit& value_edit;
  RefusalNotice& refusal;
  QPlainTextEdit& formula;
  EntryListView& criteria;
  EntryListView& models;
  QLineEdit& standard;
  QGroupBox& criterion_frame;
  QGroupBox& model_frame;
  QSplitter& columns;

 private:
  void make_buttons();
  void make_check_boxes();
  // Gives the widget of a control its names and tooltip.
  void name(QWidget& widget, const std::string& key) const;
  QLabel* label_of(QWidget& buddy) const;
  QPushButton* button(Button SelectionDialog::*control) const { return &of(dialog_.*control); }
  void lay_out_criterion();
  void lay_out_models();
  QWidget* list_part(QWidget* line_below_list);
  void lay_out(QWidget* line_below_list);
  void set_tab_order();

  const Captions& captions_;
  SelectionDialog& dialog_;
};

}  // namespace kestrova::qt
