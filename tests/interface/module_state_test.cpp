// The library's one set of state and the services that the host installs.
#include "interface/module_state.h"

#include <gtest/gtest.h>

#include "platform/error.h"
#include "tests/support/fake_suite.h"
#include "tests/support/fake_user_interface.h"
#include "tests/support/recording_connection.h"

namespace kestrova::test {
namespace {

// As the program found it.
const ModuleState kStateAtStart = module_state();

class FakeForm : public SelectionForm {
 public:
  const ComboBox& field_list() const override { return fields_; }
  const ComboBox& value_list() const override { return values_; }

 private:
  ComboBox fields_{"cboField", ComboBox::Style::kDropDownList};
  ComboBox values_{"cboValue", ComboBox::Style::kFreeText};
};

class CountingSuite : public FakeSuite {
 public:
  std::shared_ptr<LocTexts> loc_texts() override {
    ++texts_made;
    return FakeSuite::loc_texts();
  }
  int texts_made = 0;
};

class ModuleStateTest : public ::testing::Test {
 protected:
  ~ModuleStateTest() override { install_host({}); }

  // A host with all services.
  Host whole_host() {
    return {suite_, user_, std::make_shared<FakeLocale>(FakeLocale::Language::kGerman)};
  }

  std::shared_ptr<CountingSuite> suite_ = std::make_shared<CountingSuite>();
  std::shared_ptr<ScriptedUserInterface> user_ = std::make_shared<ScriptedUserInterface>();
};

void expect_empty(const ModuleState& state) {
  EXPECT_EQ(state.dbado, nullptr);
  EXPECT_EQ(state.strLanguage, "");
  EXPECT_EQ(state.strOderLine, "");
  EXPECT_EQ(state.strNatWahrung, "");
  EXPECT_EQ(state.strVerType, "");
  EXPECT_EQ(state.strBlank, "");
  EXPECT_EQ(state.strDecimalSep, "");
  EXPECT_EQ(state.strSelektion_Fr_Wh, "");
  EXPECT_EQ(state.strSelektionFormula, "");
  EXPECT_EQ(state.blnOK, "");
  EXPECT_EQ(state.theSelectionForm, nullptr);
  EXPECT_EQ(state.theLocTexts, nullptr);
}

// The message of the ObjectNotSet that an operation raises.
template <class Operation>
std::string not_set_message(Operation operation) {
  try {
    operation();
  } catch (const ObjectNotSet& error) {
    EXPECT_EQ(error.number(), 91);
    return error.what();
  }
  return "no error";
}

TEST_F(ModuleStateTest, ItStartsEmpty) { expect_empty(kStateAtStart); }

TEST_F(ModuleStateTest, ThereIsOne) { EXPECT_EQ(&module_state(), &module_state()); }

TEST_F(ModuleStateTest, InstallingAHostBeginsAnew) {
  install_host(whole_host());
  ModuleState& state = module_state();
  state.dbado = std::make_shared<RecordingConnection>();
  for (std::string* text : {&state.strLanguage, &state.strOderLine, &state.strNatWahrung,
                            &state.strVerType, &state.strBlank, &state.strDecimalSep,
                            &state.strSelektion_Fr_Wh, &state.strSelektionFormula, &state.blnOK}) {
    *text = "x";
  }
  loc_texts();
  selection_form();
  install_host(whole_host());
  expect_empty(module_state());
}

TEST_F(ModuleStateTest, AnAbsentServiceIsNamedWhenItIsNeeded) {
  install_host({});
  EXPECT_EQ(not_set_message([] { suite(); }), "The host has installed no suite services.");
  EXPECT_EQ(not_set_message([] { user_interface(); }), "The host has installed no user interface.");
  EXPECT_EQ(not_set_message([] { user_locale(); }), "The host has installed no user locale.");
  EXPECT_EQ(not_set_message([] { loc_texts(); }), "The host has installed no suite services.");
}

TEST_F(ModuleStateTest, TheInstalledServicesAreAnswered) {
  const Host host = whole_host();
  install_host(host);
  EXPECT_EQ(&suite(), host.suite.get());
  EXPECT_EQ(&user_interface(), host.user_interface.get());
  EXPECT_EQ(&user_locale(), host.user_locale.get());
}

TEST_F(ModuleStateTest, TheTextServiceIsMadeOnFirstUseAndKept) {
  install_host(whole_host());
  EXPECT_EQ(suite_->texts_made, 0);
  LocTexts& first = loc_texts();
  EXPECT_EQ(&loc_texts(), &first);
  EXPECT_EQ(module_state().theLocTexts.get(), &first);
  EXPECT_EQ(suite_->texts_made, 1);
  EXPECT_EQ(first.GetText(6, KesVar()), "Wahr");
}

// No service of a host is needed for it.
TEST_F(ModuleStateTest, TheEditorIsMadeOnFirstUseAndKept) {
  install_host({});
  EXPECT_EQ(module_state().theSelectionForm, nullptr);
  SelectionForm& first = selection_form();
  EXPECT_EQ(&selection_form(), &first);
  EXPECT_EQ(module_state().theSelectionForm.get(), &first);
  EXPECT_EQ(first.field_list().count(), 0);
  EXPECT_EQ(first.value_list().count(), 0);
}

// An editor that still talks to the user while it is released.
class TalkingForm : public FakeForm {
 public:
  explicit TalkingForm(UserInterface*& last_heard) : last_heard_(last_heard) {}
  ~TalkingForm() override { last_heard_ = &user_interface(); }

 private:
  UserInterface*& last_heard_;
};

TEST_F(ModuleStateTest, TheEditorIsReleasedWhileItsOwnHostIsInstalled) {
  UserInterface* heard = nullptr;
  const Host host = whole_host();
  install_host(host);
  module_state().theSelectionForm = std::make_shared<TalkingForm>(heard);
  install_host({});
  EXPECT_EQ(heard, host.user_interface.get());
}

TEST_F(ModuleStateTest, AnotherHostReplacesTheServices) {
  install_host(whole_host());
  loc_texts();
  const auto other = std::make_shared<CountingSuite>();
  Host host = whole_host();
  host.suite = other;
  install_host(host);
  loc_texts();
  EXPECT_EQ(&suite(), other.get());
  EXPECT_EQ(other->texts_made, 1);
  EXPECT_EQ(suite_->live_services(), 0U) << "the first text service is released";
}

}  // namespace
}  // namespace kestrova::test
