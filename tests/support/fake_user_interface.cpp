#include "tests/support/fake_user_interface.h"

#include <gtest/gtest.h>

#include <utility>

namespace kestrova::test {
namespace {

std::string in_apostrophes(std::string_view text) { return "'" + std::string(text) + "'"; }

std::string describe(const Message& message) {
  std::string result = "message " + in_apostrophes(message.prompt) + ", flags " +
                       std::to_string(message.flags) + ", title " + in_apostrophes(message.title);
  if (!message.help_file.empty() || message.help_context != 0) {
    result +=
        ", help " + in_apostrophes(message.help_file) + " " + std::to_string(message.help_context);
  }
  return result;
}

std::string describe_question(std::string_view prompt, std::string_view title) {
  return "question " + in_apostrophes(prompt) + ", title " + in_apostrophes(title);
}

std::string describe_modal(std::string_view caption) { return "dialog " + in_apostrophes(caption); }

}  // namespace

ScriptedUserInterface::ScriptedUserInterface(CallLog log) : log_(std::move(log)) {}

ScriptedUserInterface::~ScriptedUserInterface() { ScriptedUserInterface::verify(); }

void ScriptedUserInterface::expect_message(Message message, MessageResult result) {
  expected_.push_back({describe(message), result});
}

void ScriptedUserInterface::expect_text_question(std::string prompt, std::string title,
                                                 std::optional<std::string> answer) {
  expected_.push_back({describe_question(prompt, title), std::move(answer)});
}

void ScriptedUserInterface::expect_modal(std::string caption,
                                         std::function<void(ModalDialog&)> action) {
  expected_.push_back({describe_modal(caption), std::move(action)});
}

void ScriptedUserInterface::verify() {
  for (const Expectation& expectation : expected_) {
    ADD_FAILURE() << "The user was not shown the expected " << expectation.dialog;
  }
  expected_.clear();
}

std::optional<ScriptedUserInterface::Expectation> ScriptedUserInterface::take(
    const std::string& dialog) {
  log_->push_back(dialog);
  if (expected_.empty() || expected_.front().dialog != dialog) {
    ADD_FAILURE() << "The user was shown the unexpected " << dialog << "\nExpected was "
                  << (expected_.empty() ? "no dialog" : "the " + expected_.front().dialog);
    return std::nullopt;
  }
  Expectation expectation = std::move(expected_.front());
  expected_.pop_front();
  return expectation;
}

MessageResult ScriptedUserInterface::show_message(const Message& message) {
  const auto expectation = take(describe(message));
  return expectation ? std::get<MessageResult>(expectation->answer) : MessageResult::kCancel;
}

std::optional<std::string> ScriptedUserInterface::ask_text(std::string_view prompt,
                                                           std::string_view title) {
  const auto expectation = take(describe_question(prompt, title));
  if (!expectation) return std::nullopt;
  return std::get<std::optional<std::string>>(expectation->answer);
}

void ScriptedUserInterface::set_pointer(PointerShape shape) {
  log_->push_back(shape == PointerShape::kHourglass ? "pointer hourglass" : "pointer default");
  pointer_changes_.push_back(shape);
  pointer_ = shape;
}

void ScriptedUserInterface::show_modal(ModalDialog& dialog) {
  const auto expectation = take(describe_modal(dialog.caption()));
  if (!expectation) {
    dialog.close_requested();
    return;
  }
  std::get<std::function<void(ModalDialog&)>>(expectation->answer)(dialog);
  if (dialog.is_visible()) {
    ADD_FAILURE() << "The user's action left the dialog open: " << expectation->dialog;
  }
}

}  // namespace kestrova::test
