// The user of a session, read line by line: what message boxes and input boxes ask and understand.
#include "tools/terminal.h"

#include <gtest/gtest.h>

#include <sstream>

#include "platform/error.h"
#include "tests/tools/usage_error.h"

namespace kestrova::tool {
namespace {

constexpr std::int32_t kDefaultNo = kYesNo + kExclamationIcon + kSecondButtonDefault;

// A terminal whose user types these lines.
struct User {
  User(const std::string& typed, bool interactive)
      : in(typed), lines(in, out, interactive), terminal(lines, out) {}

  MessageResult answer(std::int32_t flags = kDefaultNo) {
    return terminal.show_message(
        {.prompt = "Ersetzen?", .flags = flags, .title = {}, .help_file = {}});
  }

  std::istringstream in;
  std::ostringstream out;
  StreamLines lines;
  Terminal terminal;
};

struct Answer {
  const char* title;
  std::string typed;
  std::int32_t flags;
  MessageResult button;
};

void PrintTo(const Answer& row, std::ostream* out) { *out << row.title; }

class Question : public testing::TestWithParam<Answer> {};

TEST_P(Question, IsAnsweredByTheNextLine) {
  User user(GetParam().typed + "\nnext\n", false);
  EXPECT_EQ(user.answer(GetParam().flags), GetParam().button);
  EXPECT_EQ(user.out.str(), "Ersetzen? (yes/no) " + GetParam().typed + "\n");
  EXPECT_EQ(user.terminal.take_declined(), GetParam().button == MessageResult::kNo);
  EXPECT_EQ(user.lines.read(""), "next");
}

INSTANTIATE_TEST_SUITE_P(Answers, Question,
                         testing::Values(Answer{"Yes", "yes", kDefaultNo, MessageResult::kYes},
                                         Answer{"Y", "y", kDefaultNo, MessageResult::kYes},
                                         Answer{"Ja", " Ja ", kDefaultNo, MessageResult::kYes},
                                         Answer{"J", "J", kDefaultNo, MessageResult::kYes},
                                         Answer{"No", "no", kDefaultNo, MessageResult::kNo},
                                         Answer{"N", "n", kYesNo, MessageResult::kNo},
                                         Answer{"Nein", "NEIN", kYesNo, MessageResult::kNo},
                                         Answer{"TheDefault", "", kYesNo, MessageResult::kYes},
                                         Answer{"TheSecondAsDefault", "", kDefaultNo,
                                                MessageResult::kNo}),
                         [](const auto& test) { return test.param.title; });

TEST(Script, MustAnswerWhatItIsAsked) {
  User user("insert\n", false);
  EXPECT_EQ(usage_error([&] { user.answer(); }),
            "'insert' does not answer the question: 'yes' or 'no' does");
  EXPECT_EQ(usage_error([&] { user.answer(); }),
            "the input ends before the answer to \"Ersetzen? (yes/no) \"");
  EXPECT_EQ(usage_error([&] { user.terminal.ask_text("Name", ""); }),
            "the input ends before the answer to \"Name: \"");
}

TEST(Person, IsAskedAgain) {
  User user("what\nyes\n", true);
  EXPECT_EQ(user.answer(), MessageResult::kYes);
  EXPECT_EQ(user.out.str(), "Ersetzen? (yes/no) Ersetzen? (yes/no) ");
}

TEST(Person, DeclinesAtTheEndOfTheInput) {
  User user("", true);
  EXPECT_EQ(user.answer(), MessageResult::kNo);
  EXPECT_TRUE(user.terminal.take_declined());
  EXPECT_FALSE(user.terminal.take_declined());
  EXPECT_EQ(user.terminal.ask_text("Name", ""), std::nullopt);
  EXPECT_TRUE(user.terminal.take_declined());
}

TEST(Information, IsKeptForTheCommand) {
  User user("yes\n", false);
  EXPECT_FALSE(user.terminal.has_messages());
  EXPECT_EQ(user.answer(kExclamationIcon), MessageResult::kOk);
  EXPECT_EQ(user.answer(kOkOnly), MessageResult::kOk);
  EXPECT_TRUE(user.terminal.has_messages());
  EXPECT_EQ(user.terminal.take_messages(), (std::vector<std::string>{"Ersetzen?", "Ersetzen?"}));
  EXPECT_EQ(user.terminal.take_messages(), std::vector<std::string>());
  EXPECT_EQ(user.out.str(), "");
  EXPECT_EQ(user.lines.line_number(), 0);
}

TEST(InputBox, IsAnsweredByTheNextLine) {
  User user("Große Lose\r\n\n", false);
  EXPECT_EQ(user.terminal.ask_text("Name des Modells", "Titel"), "Große Lose");
  EXPECT_FALSE(user.terminal.take_declined());
  EXPECT_EQ(user.terminal.ask_text("Name des Modells", "Titel"), "");
  EXPECT_TRUE(user.terminal.take_declined());
  EXPECT_EQ(user.out.str(), "Name des Modells: Große Lose\nName des Modells: \n");
  EXPECT_EQ(user.lines.line_number(), 2);
}

TEST(InputBox, TakesTheAnswerThatACommandBroughtAlong) {
  User user("typed\n", false);
  user.terminal.prepare_answer("brought along");
  EXPECT_EQ(user.terminal.ask_text("Name", ""), "brought along");
  EXPECT_EQ(user.terminal.ask_text("Name", ""), "typed");
  user.terminal.prepare_answer("forgotten");
  user.terminal.forget_answer();
  EXPECT_EQ(usage_error([&] { user.terminal.ask_text("Name", ""); }),
            "the input ends before the answer to \"Name: \"");
}

TEST(Dialogs, OtherThanTheSelectionAreNotShown) {
  struct OtherDialog : ModalDialog {
    std::string caption() const override { return "Other"; }
    bool is_visible() const override { return true; }
    void close_requested() override {}
  } other;
  User user("", false);
  EXPECT_THROW(user.terminal.show_modal(other), InvalidArgument);
}

TEST(Lines, OfAPersonHaveAPrompt) {
  User user("list\n", true);
  EXPECT_EQ(user.lines.read("1VM> "), "list");
  EXPECT_EQ(user.lines.read("1VM> "), std::nullopt);
  EXPECT_EQ(user.out.str(), "1VM> 1VM> ");
  EXPECT_EQ(user.lines.line_number(), 1);
}

}  // namespace
}  // namespace kestrova::tool
