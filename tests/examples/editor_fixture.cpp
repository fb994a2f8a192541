#include "tests/examples/editor_fixture.h"

#include <algorithm>

#include "interface/module_state.h"
#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"

namespace kestrova::test {

ForestEditor::ForestEditor(std::shared_ptr<Connection> database)
    : database_(std::move(database)),
      ui_(std::make_shared<ScriptedUserInterface>()),
      user_(forest_user()) {
  user_.dbado = database_;
  const auto locale = std::make_shared<SettingsUserLocale>("DE", "DMY");
  install_host({.suite = make_standalone_suite(database_, locale),
                .user_interface = ui_,
                .user_locale = locale});
  editor_ = std::make_shared<F_Selection>();
  // What a host's start of a selection leaves in the module state.
  ModuleState& state = module_state();
  state.theSelectionForm = editor_;
  state.dbado = user_.dbado;
  state.strLanguage = user_.strLanguage;
  state.strOderLine = user_.strOderLine;
  state.strNatWahrung = user_.strNatWahrung;
  state.strBlank = " ";
  state.strDecimalSep = ",";
}

ForestEditor::~ForestEditor() { install_host({}); }

void ForestEditor::open(std::string relation) { editor_->InitForm(user_, relation); }

void ForestEditor::pick(ComboBox& combo, std::string_view text) {
  const auto& entries = combo.entries();
  const auto found = std::find_if(entries.begin(), entries.end(),
                                  [text](const ListEntry& entry) { return entry.text == text; });
  ASSERT_NE(found, entries.end()) << combo.name() << " offers no '" << text << "' but "
                                  << ::testing::PrintToString(texts_of(combo));
  combo.pick(static_cast<int>(found - entries.begin()));
}

void ForestEditor::type_value(std::string_view text) {
  editor_->cboValue.set_text(text);
  bool cancel = false;
  editor_->cboValue_Validate(cancel);
}

void ForestEditor::add_picked(std::string_view field, std::string_view op, std::string_view value) {
  pick(editor_->cboField, field);
  pick(editor_->cboOperator, op);
  pick(editor_->cboValue, value);
  editor_->btnInsert.click();
}

void ForestEditor::add_typed(std::string_view field, std::string_view op, std::string_view value) {
  pick(editor_->cboField, field);
  pick(editor_->cboOperator, op);
  type_value(value);
  editor_->btnInsert.click();
}

void ForestEditor::add_list(std::string_view field, const std::vector<std::string>& values) {
  pick(editor_->cboField, field);
  pick(editor_->cboOperator, "IN");
  for (const std::string& value : values) {
    pick(editor_->cboValue, value);
    editor_->btnPlus.click();
  }
  editor_->btnInsert.click();
}

ForestEditor::Result ForestEditor::run(const std::function<void()>& actions,
                                       std::string_view subset) {
  ui_->expect_modal(editor_->caption(), [&](ModalDialog&) {
    actions();
    editor_->btnOk.click();
  });
  Result result;
  editor_->Run(user_, result.from_where, result.formula, false, subset);
  return result;
}

std::vector<std::string> ForestEditor::lines() { return texts_of(editor_->ListCriteria); }

std::vector<std::string> ForestEditor::column(const std::string& sql) {
  std::vector<std::string> texts;
  for (auto& row : rows(db(), sql)) texts.push_back(std::move(row[0]));
  return texts;
}

std::vector<std::string> texts_of(const EntryList& list) {
  std::vector<std::string> texts;
  for (const ListEntry& entry : list.entries()) texts.push_back(entry.text);
  return texts;
}

std::vector<int> numbers_of(const EntryList& list) {
  std::vector<int> numbers;
  for (const ListEntry& entry : list.entries()) numbers.push_back(entry.item_data);
  return numbers;
}

}  // namespace kestrova::test
