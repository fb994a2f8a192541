// Every database call and every service call of an action fails once.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "interface/module_state.h"
#include "platform/error.h"
#include "tests/editor/run_host.h"

namespace kestrova::test {

// What became of an action one of whose calls failed.
struct FailedAction {
  bool reached_the_caller = false;  // false: the failure was trapped
  std::string call;                 // the failing call, as the log shows it
  std::string statement;            // the statement that was last begun, "" for none
};

// A user who answers at once: the same name to every question, Yes to every message, and a dialog
// is closed.
class AnsweringUser : public ScriptedUserInterface {
 public:
  using ScriptedUserInterface::ScriptedUserInterface;
  MessageResult show_message(const Message& message) override {
    messages.push_back(message.prompt);
    return MessageResult::kYes;
  }
  std::optional<std::string> ask_text(std::string_view, std::string_view) override { return name; }
  void show_modal(ModalDialog& dialog) override {
    if (action) action();
    if (dialog.is_visible()) dialog.close_requested();
  }

  std::string name = "Drei";
  std::function<void()> action;
  std::vector<std::string> messages;  // what was shown
};

// Lets this user answer from now on. Module state stays as it is.
template <class User = AnsweringUser>
std::shared_ptr<User> let_user_answer(RunHost& host) {
  const ModuleState state = module_state();
  auto user = std::make_shared<User>(host.log);
  host.user = user;
  install_host(
      {host.suite, host.user, std::make_shared<FakeLocale>(FakeLocale::Language::kGerman)});
  module_state() = state;
  return user;
}

// What a user sees and what the host has received; the field picker's selection apart.
inline std::string visible_state(const RunHost& host) {
  const F_Selection& editor = *host.editor;
  std::string state = editor.relation() + "|" + editor.caption();
  for (const EntryList* list : std::initializer_list<const EntryList*>{
           &editor.cboField, &editor.Model, &editor.ListCriteria}) {
    state += "|" + list->name();
    for (const ListEntry& entry : list->entries()) {
      state += ", " + entry.text + " " + std::to_string(entry.item_data);
    }
  }
  for (const EntryList* list :
       std::initializer_list<const EntryList*>{&editor.Model, &editor.ListCriteria}) {
    state += "|" + std::to_string(list->index());
  }
  for (const CheckBox* box : {&editor.Check1, &editor.chkStandard, &editor.chkAL}) {
    state += "|" + box->name() + (box->checked() ? " checked " : " ") + box->caption();
  }
  return state + "|" + editor.txtStandard.text() + "|" + editor.Formula.text() + "|" +
         module_state().strSelektion_Fr_Wh + "|" + module_state().strSelektionFormula + "|" +
         module_state().blnOK;
}

// Prepared is a host whose act() is the action, which may be done again, and which holds
// kHeldRowSets row sets open. Each time a call has failed: the failure reached the caller as it was
// raised or was trapped, the pointer is the default one, nothing that the action opened stays open;
// then after(host, failed) says what else holds; and the same action works.
template <class Prepared, class After>
void expect_failures_survived(const After& after) {
  Prepared whole;
  whole.forget();
  const std::size_t services_before = whole.suite->calls_made();
  whole.act();
  const std::string state = visible_state(whole);
  const std::size_t database_calls = whole.connection->calls_made();
  const std::size_t service_calls = whole.suite->calls_made() - services_before;
  ASSERT_GT(database_calls + service_calls, 0U);

  for (std::size_t k = 1; k <= database_calls + service_calls; ++k) {
    const bool is_database = k <= database_calls;
    Prepared host;
    host.forget();
    const std::size_t call = is_database ? k : host.suite->calls_made() + k - database_calls;
    const std::string number = std::to_string(call) + ": ";
    FailedAction failed;
    if (is_database) {
      host.connection->fail_on_call(call);
    } else {
      host.suite->fail_on_call(call);
    }
    try {
      host.act();
    } catch (const DatabaseError& error) {
      const std::string message = error.what();
      ASSERT_TRUE(message.starts_with("scripted failure of call " + number)) << message;
      failed.call = message.substr(message.find(": ") + 2);
      failed.reached_the_caller = true;
    } catch (const InvalidArgument& error) {
      const std::string message = error.what();
      ASSERT_TRUE(message.starts_with("scripted service failure of call " + number)) << message;
      failed.call = message.substr(message.find(": ") + 2);
      failed.reached_the_caller = true;
    }
    host.connection->fail_on_call(0);
    host.suite->fail_on_call(0);
    if (!host.connection->statements().empty()) {
      failed.statement = host.connection->statements().back();
    }
    SCOPED_TRACE((is_database ? "database call " : "service call ") + number + failed.call);
    EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
    EXPECT_LE(host.connection->open_recordsets(), Prepared::kHeldRowSets);
    EXPECT_LE(host.suite->live_services(), 2U) << "the texts and the model settings are kept";
    EXPECT_FALSE(host.editor->is_visible());
    after(host, failed);
    host.act();
    EXPECT_EQ(visible_state(host), state);
  }
}

}  // namespace kestrova::test
