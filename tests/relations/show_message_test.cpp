// The message box and its default title.
#include "relations/show_message.h"

#include <gtest/gtest.h>

#include "interface/module_state.h"
#include "platform/error.h"
#include "tests/support/fake_user_interface.h"

namespace kestrova::test {
namespace {

class ShowMessageTest : public ::testing::Test {
 protected:
  ShowMessageTest() { install_host({nullptr, user, nullptr}); }
  ~ShowMessageTest() override { install_host({}); }

  std::shared_ptr<ScriptedUserInterface> user = std::make_shared<ScriptedUserInterface>();
};

TEST_F(ShowMessageTest, AnEmptyTitleIsTheSuites) {
  user->expect_message({"Fertig", 0, "Kestrova", "", 0});
  ShowMessage("Fertig");
  user->expect_message({"Fertig", 48, "Kestrova", "", 0});
  ShowMessage("Fertig", kExclamationIcon, "");
}

TEST_F(ShowMessageTest, ATitleIsShownAsItIsAlsoOneBlank) {
  user->expect_message({"Fertig", 16, " ", "", 0});
  ShowMessage("Fertig", kCriticalIcon, " ");
  user->expect_message({"Fertig", 0, "Löschen", "", 0});
  ShowMessage("Fertig", kOkOnly, "Löschen");
}

TEST_F(ShowMessageTest, EverythingIsPassedOn) {
  user->expect_message({"Löschen?", 276, "Frage", "hilfe.chm", 4711});
  ShowMessage("Löschen?", kYesNo + kCriticalIcon + kSecondButtonDefault, "Frage", "hilfe.chm",
              4711);
}

TEST_F(ShowMessageTest, TheUsersButtonComesBack) {
  for (const MessageResult button :
       {MessageResult::kOk, MessageResult::kCancel, MessageResult::kAbort, MessageResult::kRetry,
        MessageResult::kIgnore, MessageResult::kYes, MessageResult::kNo}) {
    user->expect_message({"?", 4, "Kestrova", "", 0}, button);
    EXPECT_EQ(ShowMessage("?", kYesNo), button);
  }
}

TEST_F(ShowMessageTest, WithoutAUserInterfaceNothingCanBeShown) {
  install_host({});
  EXPECT_THROW(ShowMessage("Fertig"), ObjectNotSet);
}

}  // namespace
}  // namespace kestrova::test
