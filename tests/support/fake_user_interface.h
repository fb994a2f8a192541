// A user who expects certain dialogs in a certain order and answers them.
//
// An unexpected dialog fails the test with both texts, and so does, at the latest in the
// destructor, an expected one that did not come.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/user_interface.h"
#include "tests/support/call_log.h"

namespace kestrova::test {

class ScriptedUserInterface : public UserInterface {
 public:
  // Dialogs and pointer changes are also written into the log.
  explicit ScriptedUserInterface(CallLog log = make_call_log());
  ~ScriptedUserInterface() override;

  // --- The expected dialogs, in order.

  void expect_message(Message message, MessageResult result = MessageResult::kOk);
  // The answer that the user types; std::nullopt when the user cancels.
  void expect_text_question(std::string prompt, std::string title,
                            std::optional<std::string> answer);
  // A dialog shown modally, known by its caption. The action is what the user does in it; the
  // dialog must be hidden when it returns.
  void expect_modal(std::string caption, std::function<void(ModalDialog&)> action);

  // Fails the test for every dialog that is still expected, and expects none any more.
  void verify();

  // Every set_pointer, in order, also to the shape that the pointer had already.
  const std::vector<PointerShape>& pointer_changes() const { return pointer_changes_; }

  const std::vector<std::string>& log() const { return *log_; }

  // --- UserInterface. Unexpected dialogs are answered with Cancel, nothing and closing the window.

  MessageResult show_message(const Message& message) override;
  std::optional<std::string> ask_text(std::string_view prompt, std::string_view title) override;
  PointerShape pointer() const override { return pointer_; }
  void set_pointer(PointerShape shape) override;
  void show_modal(ModalDialog& dialog) override;

 private:
  struct Expectation {
    std::string dialog;  // readable and complete: equal texts mean equal dialogs
    std::variant<MessageResult, std::optional<std::string>, std::function<void(ModalDialog&)>>
        answer;
  };

  // Takes the next expectation if it is this dialog; fails the test and returns nothing otherwise.
  std::optional<Expectation> take(const std::string& dialog);

  CallLog log_;
  std::deque<Expectation> expected_;
  std::vector<PointerShape> pointer_changes_;
  PointerShape pointer_ = PointerShape::kDefault;
};

}  // namespace kestrova::test
