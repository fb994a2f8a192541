#include "platform/qt/selection_widgets.h"

#include <QAbstractItemView>
#include <QGridLayout>
#include <QScreen>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>
#include <initializer_list>
#include <optional>
#include <utility>

#include "platform/qt/icons.h"

namespace kestrova::qt {
namespace {

struct ButtonRow {
  Button SelectionDialog::*control;
  std::optional<Glyph> glyph;
  const char* keys;  // a way to it besides its mnemonic
};

// In the order in which the keyboard reaches them.
const std::vector<ButtonRow> kButtons = {
    {&SelectionDialog::btnPlus, Glyph::kPlus, "Ctrl++"},
    {&SelectionDialog::btnMinus, Glyph::kMinus, "Ctrl+-"},
    {&SelectionDialog::btnInsert, {}, "Ins"},
    {&SelectionDialog::btnReplace, {}, "Ctrl+R"},
    {&SelectionDialog::btnDelete, {}, "Ctrl+Del"},
    {&SelectionDialog::btnOr, {}, "Ctrl+O"},
    {&SelectionDialog::btnFirst, Glyph::kFirst, "Alt+Home"},
    {&SelectionDialog::btnPrev, Glyph::kPrevious, "Alt+PgUp"},
    {&SelectionDialog::btnNext, Glyph::kNext, "Alt+PgDown"},
    {&SelectionDialog::btnLast, Glyph::kLast, "Alt+End"},
    {&SelectionDialog::cmdUp, Glyph::kUp, "Ctrl+Shift+Up"},
    {&SelectionDialog::cmdDown, Glyph::kDown, "Ctrl+Shift+Down"},
    {&SelectionDialog::btnNew, {}, "Ctrl+N"},
    {&SelectionDialog::btnSaveModelle, {}, "Ctrl+S"},
    {&SelectionDialog::btnSaveModelleAs, {}, "Ctrl+Shift+S"},
    {&SelectionDialog::btnDeleteModelle, {}, ""},
    {&SelectionDialog::btnOk, {}, "Ctrl+Return"},
    {&SelectionDialog::btnCancel, {}, "Esc"},
};

// A wheel that turns over a picker on its way through the window must not change the filter.
class PickerBox final : public QComboBox {
 public:
  PickerBox() {
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMaxVisibleItems(20);
    setFocusPolicy(Qt::StrongFocus);
  }

  // The list is as wide as its longest entry, as far as the screen goes.
  void showPopup() override {
    const int wanted = view()->sizeHintForColumn(0) + 4 * fontMetrics().averageCharWidth();
    view()->setMinimumWidth(std::min(wanted, screen()->availableGeometry().width() / 2));
    QComboBox::showPopup();
  }

 protected:
  void wheelEvent(QWheelEvent* event) override {
    if (hasFocus()) {
      QComboBox::wheelEvent(event);
    } else {
      event->ignore();
    }
  }
};

QComboBox& make_picker(int characters) {
  auto* const picker = new PickerBox;
  picker->setMinimumContentsLength(characters);
  return *picker;
}

// Only what is typed counts: nothing is completed, and nothing typed joins the list.
ValueEdit& make_value_edit(QComboBox& value) {
  auto* const edit = new ValueEdit;
  value.setEditable(true);
  value.setInsertPolicy(QComboBox::NoInsert);
  value.setLineEdit(edit);
  value.setCompleter(nullptr);
  return *edit;
}

}  // namespace

SelectionWidgets::SelectionWidgets(QWidget& window, SelectionDialog& dialog,
                                   const Captions& captions, QWidget* line_below_list)
    : body(*new QWidget(&window)),
      field(make_picker(16)),
      oper(make_picker(5)),
      value(make_picker(14)),
      value_edit(make_value_edit(value)),
      refusal(*new RefusalNotice(captions, value_edit)),
      formula(*new QPlainTextEdit),
      criteria(*new EntryListView),
      models(*new EntryListView),
      standard(*new QLineEdit),
      criterion_frame(*new QGroupBox(captions("Frame1"))),
      model_frame(*new QGroupBox(captions("Frame4"))),
      columns(*new QSplitter(Qt::Horizontal)),
      captions_(captions),
      dialog_(dialog) {
  for (const auto& [widget, control] : std::initializer_list<std::pair<QWidget*, const Control*>>{
           {&field, &dialog.cboField},
           {&oper, &dialog.cboOperator},
           {&value, &dialog.cboValue},
           {&formula, &dialog.Formula},
           {&criteria, &dialog.ListCriteria},
           {&models, &dialog.Model},
           {&standard, &dialog.txtStandard},
           {&criterion_frame, &dialog.Frame1},
           {&model_frame, &dialog.Frame4}}) {
    name(*widget, control->name());
  }
  value_edit.setAccessibleName(value.accessibleName());
  // Read-only, and seen to be: reached by mnemonic, key or mouse, to be read and copied.
  for (QWidget* const shown : std::initializer_list<QWidget*>{&formula, &standard}) {
    QPalette palette = shown->palette();
    palette.setBrush(QPalette::Base, palette.brush(QPalette::Window));
    shown->setPalette(palette);
  }
  formula.setReadOnly(true);
  formula.setTabChangesFocus(true);
  formula.setFocusPolicy(Qt::ClickFocus);
  formula.setFixedHeight(3 * formula.fontMetrics().lineSpacing());
  standard.setReadOnly(true);
  models.enter_double_clicks = true;
  make_buttons();
  make_check_boxes();
  lay_out(line_below_list);
  auto* const whole = new QVBoxLayout(&window);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(&body);
  set_tab_order();
}

QPushButton& SelectionWidgets::of(const Button& control) const {
  return std::find_if(buttons.begin(), buttons.end(),
                      [&control](const ButtonPair& pair) { return &pair.control == &control; })
      ->widget;
}

void SelectionWidgets::name(QWidget& widget, const std::string& key) const {
  widget.setObjectName(to_qt(key));
  widget.setAccessibleName(captions_.plain(captions_.knows(key + ".name") ? key + ".name" : key));
  if (captions_.knows(key + ".tip")) widget.setToolTip(captions_.plain(key + ".tip"));
}

void SelectionWidgets::make_buttons() {
  for (const ButtonRow& row : kButtons) {
    Button& control = dialog_.*row.control;
    auto* const widget = new QPushButton(captions_(control.name()));
    name(*widget, control.name());
    if (row.glyph) widget->setIcon(icon(*row.glyph));
    const QKeySequence keys(row.keys);
    if (!keys.isEmpty()) {
      widget->setToolTip(widget->toolTip() + " (" + keys.toString(QKeySequence::NativeText) + ")");
    }
    buttons.push_back({control, *widget, keys});
  }
}

void SelectionWidgets::make_check_boxes() {
  for (CheckBox* const box : {&dialog_.chkStandard, &dialog_.Check1, &dialog_.chkAL}) {
    auto* const widget = new QCheckBox(captions_(box->name()));
    name(*widget, box->name());
    check_boxes.push_back({*box, *widget});
  }
}

QLabel* SelectionWidgets::label_of(QWidget& buddy) const {
  auto* const label = new QLabel(captions_(from_qt(buddy.objectName())));
  label->setBuddy(&buddy);
  return label;
}

void SelectionWidgets::lay_out(QWidget* line_below_list) {
  lay_out_criterion();
  lay_out_models();
  auto* const left = new QWidget;
  auto* const left_rows = new QVBoxLayout(left);
  left_rows->setContentsMargins(0, 0, 0, 0);
  left_rows->addWidget(&criterion_frame);
  left_rows->addWidget(list_part(line_below_list), 1);
  columns.addWidget(left);
  columns.addWidget(&model_frame);
  columns.setStretchFactor(0, 1);
  columns.setChildrenCollapsible(false);

  auto* const answers = new QHBoxLayout;
  answers->addStretch();
  answers->addWidget(button(&SelectionDialog::btnOk));
  answers->addWidget(button(&SelectionDialog::btnCancel));
  auto* const rows = new QVBoxLayout(&body);
  rows->addWidget(&columns, 1);
  rows->addLayout(answers);
}

void SelectionWidgets::lay_out_criterion() {
  auto* const grid = new QGridLayout(&criterion_frame);
  grid->addWidget(label_of(field), 0, 0);
  grid->addWidget(label_of(oper), 0, 1);
  grid->addWidget(label_of(value), 0, 2);
  grid->addWidget(&field, 1, 0);
  grid->addWidget(&oper, 1, 1);
  grid->addWidget(&value, 1, 2);
  auto* const list_buttons = new QHBoxLayout;
  for (QPushButton* const widget :
       {button(&SelectionDialog::btnPlus), button(&SelectionDialog::btnMinus)}) {
    widget->setFixedWidth(value.sizeHint().height() + widget->fontMetrics().averageCharWidth());
    list_buttons->addWidget(widget);
  }
  grid->addLayout(list_buttons, 1, 3);
  grid->addWidget(&refusal, 2, 0, 1, 4);
  grid->addWidget(label_of(formula), 3, 0, 1, 4);
  grid->addWidget(&formula, 4, 0, 1, 4);
  auto* const line_buttons = new QHBoxLayout;
  for (Button SelectionDialog::*const control :
       {&SelectionDialog::btnInsert, &SelectionDialog::btnReplace, &SelectionDialog::btnDelete,
        &SelectionDialog::btnOr}) {
    line_buttons->addWidget(button(control));
  }
  line_buttons->addStretch();
  grid->addLayout(line_buttons, 5, 0, 1, 4);
  grid->setColumnStretch(0, 3);
  grid->setColumnStretch(2, 3);
}

QWidget* SelectionWidgets::list_part(QWidget* line_below_list) {
  auto* const part = new QWidget;
  auto* const grid = new QGridLayout(part);
  grid->setContentsMargins(0, 0, 0, 0);
  auto* const side = new QVBoxLayout;
  for (Button SelectionDialog::*const control :
       {&SelectionDialog::btnFirst, &SelectionDialog::btnPrev, &SelectionDialog::btnNext,
        &SelectionDialog::btnLast}) {
    side->addWidget(button(control));
  }
  side->addSpacing(side->spacing() + 6);
  side->addWidget(button(&SelectionDialog::cmdUp));
  side->addWidget(button(&SelectionDialog::cmdDown));
  side->addStretch();
  side->addWidget(button(&SelectionDialog::btnNew));
  grid->addWidget(label_of(criteria), 0, 0);
  grid->addWidget(&criteria, 1, 0);
  grid->addLayout(side, 1, 1);
  if (line_below_list != nullptr) grid->addWidget(line_below_list, 2, 0, 1, 2);
  grid->setColumnStretch(0, 1);
  grid->setRowStretch(1, 1);
  return part;
}

void SelectionWidgets::lay_out_models() {
  auto* const rows = new QVBoxLayout(&model_frame);
  rows->addWidget(&models, 1);
  rows->addWidget(label_of(standard));
  rows->addWidget(&standard);
  for (const CheckBoxPair& pair : check_boxes) rows->addWidget(&pair.widget);
  auto* const model_buttons = new QGridLayout;
  model_buttons->addWidget(button(&SelectionDialog::btnSaveModelle), 0, 0);
  model_buttons->addWidget(button(&SelectionDialog::btnDeleteModelle), 0, 1);
  model_buttons->addWidget(button(&SelectionDialog::btnSaveModelleAs), 1, 0, 1, 2);
  rows->addLayout(model_buttons);
}

// Through the criterion, the list and the models, in the order in which they are used.
void SelectionWidgets::set_tab_order() {
  std::vector<QWidget*> order = {&field, &oper, &value, &refusal.offer()};
  const auto add_until = [this, &order](const Button& last) {
    for (std::size_t i = std::size_t{0}; i < buttons.size(); ++i) {
      QPushButton* const widget = &buttons[i].widget;
      if (std::find(order.begin(), order.end(), widget) == order.end()) order.push_back(widget);
      if (&buttons[i].control == &last) return;
    }
  };
  add_until(dialog_.btnOr);
  order.push_back(&criteria);
  add_until(dialog_.btnNew);
  order.push_back(&models);
  order.push_back(&standard);
  for (const CheckBoxPair& pair : check_boxes) order.push_back(&pair.widget);
  add_until(dialog_.btnCancel);
  for (std::size_t i = 1; i < order.size(); ++i) QWidget::setTabOrder(order[i - 1], order[i]);
}

}  // namespace kestrova::qt
