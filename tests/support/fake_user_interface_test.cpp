#include "tests/support/fake_user_interface.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace kestrova::test {
namespace {

class Window : public ModalDialog {
 public:
  std::string caption() const override { return "Selektion"; }
  bool is_visible() const override { return visible; }
  void close_requested() override { visible = false; }

  bool visible = true;
};

const Message kQuestion = {"Löschen?", kYesNo, "Selektion", "", 0};

TEST(ScriptedUserInterface, AnswersTheExpectedDialogs) {
  ScriptedUserInterface ui;
  ui.expect_message(kQuestion, MessageResult::kYes);
  ui.expect_text_question("Name?", "Modell", "Fichte");
  ui.expect_text_question("Name?", "Modell", std::nullopt);
  ui.expect_modal("Selektion", [](ModalDialog& dialog) { dialog.close_requested(); });
  EXPECT_EQ(ui.show_message(kQuestion), MessageResult::kYes);
  EXPECT_EQ(ui.ask_text("Name?", "Modell"), "Fichte");
  EXPECT_EQ(ui.ask_text("Name?", "Modell"), std::nullopt);
  Window window;
  ui.show_modal(window);
  EXPECT_FALSE(window.is_visible());
  EXPECT_EQ(ui.log(), (std::vector<std::string>{
                          "message 'Löschen?', flags 4, title 'Selektion'",
                          "question 'Name?', title 'Modell'",
                          "question 'Name?', title 'Modell'",
                          "dialog 'Selektion'",
                      }));
}

TEST(ScriptedUserInterface, FailsTheTestOnAnUnexpectedDialog) {
  ScriptedUserInterface ui;
  EXPECT_NONFATAL_FAILURE(EXPECT_EQ(ui.show_message(kQuestion), MessageResult::kCancel),
                          "The user was shown the unexpected message 'Löschen?', flags 4, title "
                          "'Selektion'\nExpected was no dialog");
  EXPECT_NONFATAL_FAILURE(EXPECT_EQ(ui.ask_text("Name?", "Modell"), std::nullopt),
                          "unexpected question 'Name?', title 'Modell'");
  Window window;
  EXPECT_NONFATAL_FAILURE(ui.show_modal(window), "unexpected dialog 'Selektion'");
  EXPECT_FALSE(window.is_visible());
}

// Shows a message where another was expected. The failures are both ways: one dialog unexpected,
// one missing.
int failures_of(const Message& expected, const Message& shown) {
  testing::TestPartResultArray failures;
  const testing::ScopedFakeTestPartResultReporter reporter(
      testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
  ScriptedUserInterface ui;
  ui.expect_message(expected);
  ui.show_message(shown);
  ui.verify();
  return failures.size();
}

TEST(ScriptedUserInterface, FailsTheTestOnAMessageThatDiffersInAnything) {
  const Message message = {"Text", kCriticalIcon, "Titel", "hilfe.chm", 7};
  EXPECT_EQ(failures_of(message, message), 0);
  EXPECT_EQ(failures_of(message, {"text", kCriticalIcon, "Titel", "hilfe.chm", 7}), 2);
  EXPECT_EQ(failures_of(message, {"Text", kExclamationIcon, "Titel", "hilfe.chm", 7}), 2);
  EXPECT_EQ(failures_of(message, {"Text", kCriticalIcon, "", "hilfe.chm", 7}), 2);
  EXPECT_EQ(failures_of(message, {"Text", kCriticalIcon, "Titel", "", 7}), 2);
  EXPECT_EQ(failures_of(message, {"Text", kCriticalIcon, "Titel", "hilfe.chm", 8}), 2);
}

TEST(ScriptedUserInterface, FailsTheTestOnAMissingDialog) {
  EXPECT_NONFATAL_FAILURE(
      {
        ScriptedUserInterface ui;
        ui.expect_message(kQuestion);
      },
      "The user was not shown the expected message 'Löschen?', flags 4, title 'Selektion'");
  ScriptedUserInterface ui;
  ui.expect_text_question("Name?", "Modell", "Fichte");
  EXPECT_NONFATAL_FAILURE(ui.verify(), "not shown the expected question 'Name?', title 'Modell'");
  ui.verify();
}

TEST(ScriptedUserInterface, FailsTheTestWhenADialogStaysOpen) {
  ScriptedUserInterface ui;
  ui.expect_modal("Selektion", [](ModalDialog&) {});
  Window window;
  EXPECT_NONFATAL_FAILURE(ui.show_modal(window),
                          "The user's action left the dialog open: dialog 'Selektion'");
}

TEST(ScriptedUserInterface, RemembersPointerChangesInOrder) {
  ScriptedUserInterface ui;
  EXPECT_EQ(ui.pointer(), PointerShape::kDefault);
  {
    const BusyPointer busy(ui);
    EXPECT_EQ(ui.pointer(), PointerShape::kHourglass);
  }
  ui.set_pointer(PointerShape::kDefault);
  EXPECT_EQ(ui.pointer_changes(),
            (std::vector<PointerShape>{PointerShape::kHourglass, PointerShape::kDefault,
                                       PointerShape::kDefault}));
}

}  // namespace
}  // namespace kestrova::test
