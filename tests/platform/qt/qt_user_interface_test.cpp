// Boxes, pointer, and which dialogs can be shown.
#include "platform/qt/qt_user_interface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "platform/error.h"
#include "tests/platform/qt/window_user.h"
#include "tests/support/controls_contract.h"

namespace kestrova::test {
namespace {

using testing::ElementsAre;

template <class Box>
Box& open_box() {
  auto* const box = qobject_cast<Box*>(QApplication::activeModalWidget());
  if (box == nullptr) throw std::out_of_range("the box is not open");
  return *box;
}

// --- Message boxes

struct BoxCase {
  std::string name;
  std::int32_t flags;
  std::vector<QString> buttons;
  std::vector<MessageResult> results;
  MessageResult escape;
};
void PrintTo(const BoxCase& c, std::ostream* out) { *out << c.name; }

class MessageBox : public testing::TestWithParam<BoxCase> {
 protected:
  QtUserInterface user_interface_;
};

TEST_P(MessageBox, AnswersTheSystemsCodeOfThePressedButton) {
  for (std::size_t i = 0; i < GetParam().buttons.size(); ++i) {
    when_idle({[i] {
      auto& box = open_box<QMessageBox>();
      std::vector<QString> texts;
      for (QAbstractButton* const button : box.buttons()) texts.push_back(button->text());
      EXPECT_THAT(texts, testing::UnorderedElementsAreArray(GetParam().buttons));
      for (QAbstractButton* const button : box.buttons()) {
        if (button->text() == GetParam().buttons[i]) button->click();
      }
    }});
    EXPECT_EQ(user_interface_.show_message({"Frage?", GetParam().flags, "Kestrova", "", 0}),
              GetParam().results[i]);
  }
}

TEST_P(MessageBox, AnswersEscape) {
  when_idle({[] { QTest::keyClick(&open_box<QMessageBox>(), Qt::Key_Escape); }});
  EXPECT_EQ(user_interface_.show_message({"Frage?", GetParam().flags, "Kestrova", "", 0}),
            GetParam().escape);
}

using enum MessageResult;
INSTANTIATE_TEST_SUITE_P(
    Buttons, MessageBox,
    testing::Values(
        BoxCase{"Ok", 0, {"OK"}, {kOk}, kOk},
        BoxCase{"OkCancel", 1, {"OK", "Abbrechen"}, {kOk, kCancel}, kCancel},
        BoxCase{"AbortRetryIgnore",
                2,
                {"&Beenden", "&Wiederholen", "&Ignorieren"},
                {kAbort, kRetry, kIgnore},
                kAbort},
        BoxCase{"YesNoCancel", 3, {"&Ja", "&Nein", "Abbrechen"}, {kYes, kNo, kCancel}, kCancel},
        BoxCase{"YesNo", 4, {"&Ja", "&Nein"}, {kYes, kNo}, kNo},
        BoxCase{"RetryCancel", 5, {"&Wiederholen", "Abbrechen"}, {kRetry, kCancel}, kCancel}),
    [](const auto& row) { return row.param.name; });

struct Boxes : testing::Test {
  QtUserInterface user_interface;
};

TEST_F(Boxes, EnterPressesTheButtonThatTheFlagsMakeTheDefault) {
  std::vector<MessageResult> results;
  for (const std::int32_t flags : {kYesNo, kYesNo + kSecondButtonDefault, 3 + 512}) {
    when_idle({[] { QTest::keyClick(&open_box<QMessageBox>(), Qt::Key_Return); }});
    results.push_back(user_interface.show_message({"Frage?", flags, "Kestrova", "", 0}));
  }
  EXPECT_THAT(results, ElementsAre(kYes, kNo, kCancel));
}

TEST_F(Boxes, AMessageShowsItsTextItsTitleAndItsIcon) {
  for (const auto& [flags, icon] :
       {std::pair{kCriticalIcon, QMessageBox::Critical}, std::pair{32, QMessageBox::Question},
        std::pair{kExclamationIcon, QMessageBox::Warning}, std::pair{64, QMessageBox::Information},
        std::pair{kOkOnly, QMessageBox::NoIcon}}) {
    when_idle({[icon = icon] {
      auto& box = open_box<QMessageBox>();
      EXPECT_EQ(box.text(), "<b>3 & 4</b>");
      EXPECT_EQ(box.textFormat(), Qt::PlainText);
      EXPECT_EQ(box.windowTitle(), "Kestrova");
      EXPECT_EQ(box.icon(), icon);
      box.accept();
    }});
    user_interface.show_message({"<b>3 & 4</b>", flags, "Kestrova", "", 0});
  }
}

TEST_F(Boxes, UnknownButtonsAreRefused) {
  EXPECT_THROW(user_interface.show_message({"?", 6, "Kestrova", "", 0}), InvalidArgument);
}

TEST_F(Boxes, AQuestionAnswersTheTypedText) {
  when_idle({[] {
    auto& box = open_box<QInputDialog>();
    EXPECT_EQ(box.labelText(), "Name des Modells");
    EXPECT_EQ(box.windowTitle(), "Kestrova");
    EXPECT_EQ(box.cancelButtonText(), "Abbrechen");
    QTest::keyClicks(box.findChild<QLineEdit*>(), "Lose");
    QTest::keyClick(&box, Qt::Key_Return);
  }});
  EXPECT_EQ(user_interface.ask_text("Name des Modells", "Kestrova"), "Lose");
}

TEST_F(Boxes, AQuestionThatIsCancelledAnswersNothing) {
  when_idle({[] { QTest::keyClick(&open_box<QInputDialog>(), Qt::Key_Escape); }});
  EXPECT_EQ(user_interface.ask_text("Name des Modells", "Kestrova"), std::nullopt);
}

// --- The pointer

TEST_F(Boxes, TheHourglassIsTheCursorOfTheApplication) {
  user_interface.set_pointer(PointerShape::kHourglass);
  user_interface.set_pointer(PointerShape::kHourglass);
  EXPECT_EQ(user_interface.pointer(), PointerShape::kHourglass);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  user_interface.set_pointer(PointerShape::kDefault);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  user_interface.set_pointer(PointerShape::kDefault);
  EXPECT_EQ(user_interface.pointer(), PointerShape::kDefault);
}

TEST_F(Boxes, OverAMessageThePointerIsAnArrow) {
  user_interface.set_pointer(PointerShape::kHourglass);
  when_idle({[this] {
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::ArrowCursor);
    EXPECT_EQ(user_interface.pointer(), PointerShape::kHourglass);
    open_box<QMessageBox>().accept();
  }});
  user_interface.show_message({"Text", kOkOnly, "Kestrova", "", 0});
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  user_interface.set_pointer(PointerShape::kDefault);
}

// --- Dialogs

TEST_F(Boxes, MessagesAndQuestionsAreModalToTheDialog) {
  PlainDialog dialog;
  dialog.btnOr.on_click = [&] { user_interface.show_message({"Text", 0, "Kestrova", "", 0}); };
  dialog.btnNew.on_click = [&] { user_interface.ask_text("Name", "Kestrova"); };
  QWidget* window = nullptr;
  const auto check = [&window] {
    QWidget* const box = QApplication::activeModalWidget();
    EXPECT_NE(box, window);
    EXPECT_TRUE(box->isModal());
    EXPECT_EQ(box->parentWidget(), window);
    box->close();
  };
  when_idle({[&] {
               window = QApplication::activeModalWidget();
               WindowUser(*window).click(dialog.btnOr);
             },
             check, [&] { WindowUser(*window).click(dialog.btnNew); }, check,
             [&] { window->close(); }});
  user_interface.show_modal(dialog);
  EXPECT_FALSE(dialog.visible);
}

TEST_F(Boxes, TheDialogOpensOverTheHostsWindow) {
  QWidget host;
  user_interface.settings().parent = &host;
  PlainDialog dialog;
  when_idle({[&] {
    EXPECT_EQ(QApplication::activeModalWidget()->parentWidget(), &host);
    QApplication::activeModalWidget()->close();
  }});
  user_interface.show_modal(dialog);
}

TEST_F(Boxes, AnotherDialogThanTheSelectionIsRefused) {
  class Other final : public ModalDialog {
   public:
    std::string caption() const override { return "Anderer"; }
    bool is_visible() const override { return true; }
    void close_requested() override {}
  } other;
  try {
    user_interface.show_modal(other);
    FAIL() << "was shown";
  } catch (const InvalidArgument& error) {
    EXPECT_STREQ(error.what(), "There is no window for the dialog 'Anderer'.");
  }
}

QSize shown_size(QtUserInterface& user_interface, std::optional<QSize> resized = {}) {
  PlainDialog dialog;
  QSize size;
  when_idle({[&] {
    QWidget* const window = QApplication::activeModalWidget();
    if (resized) window->resize(*resized);
    settle();
    size = window->size();
    window->close();
  }});
  user_interface.show_modal(dialog);
  return size;
}

TEST_F(Boxes, TheSizeIsKeptFromOneDialogToTheNext) {
  shown_size(user_interface, QSize(790, 610));
  EXPECT_EQ(shown_size(user_interface), QSize(790, 610));
  QtUserInterface another;
  EXPECT_NE(shown_size(another), QSize(790, 610));
}

TEST_F(Boxes, TheSizeIsKeptInTheUsersSettingsUnderTheNameOfTheApplicationOnly) {
  const QTemporaryDir folder;
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path());
  shown_size(user_interface, QSize(780, 620));
  EXPECT_TRUE(QDir(folder.path()).isEmpty());
  {
    QtUserInterface first({.application = "forest"});
    shown_size(first, QSize(785, 630));
  }
  QtUserInterface second({.application = "forest"});
  EXPECT_EQ(shown_size(second), QSize(785, 630));
}

}  // namespace
}  // namespace kestrova::test
