// The window itself: keyboard, captions, names, dragging, errors.
#include "platform/qt/selection_window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <map>
#include <set>
#include <stdexcept>

#include "platform/error.h"
#include "platform/qt/qt_user_interface.h"
#include "platform/row_counter.h"
#include "tests/platform/qt/window_user.h"
#include "tests/support/controls_contract.h"
#include "tests/support/fake_user_interface.h"

namespace kestrova::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// All controls that a user meets.
std::vector<Control*> all_controls(SelectionDialog& d) {
  return {&d.cboField,
          &d.cboOperator,
          &d.cboValue,
          &d.Formula,
          &d.btnPlus,
          &d.btnMinus,
          &d.btnInsert,
          &d.btnReplace,
          &d.btnDelete,
          &d.btnOr,
          &d.ListCriteria,
          &d.btnFirst,
          &d.btnPrev,
          &d.btnNext,
          &d.btnLast,
          &d.cmdUp,
          &d.cmdDown,
          &d.btnNew,
          &d.Model,
          &d.txtStandard,
          &d.chkStandard,
          &d.Check1,
          &d.chkAL,
          &d.btnSaveModelle,
          &d.btnDeleteModelle,
          &d.btnSaveModelleAs,
          &d.btnOk,
          &d.btnCancel};
}

class Window : public testing::Test {
 protected:
  Window() { open(); }

  void open() {
    window_.reset();
    window_ = std::make_unique<SelectionWindow>(dialog_, messages_, settings_);
    user_ = std::make_unique<WindowUser>(*window_);
    window_->show();
    window_->activateWindow();
    settle();
  }

  // The names of the buttons that are clicked from now on.
  void watch_buttons() {
    for (Control* const control : all_controls(dialog_)) {
      if (auto* const button = dynamic_cast<Button*>(control)) {
        button->on_click = [this, button] { clicked_.push_back(button->name()); };
      }
    }
  }

  void fill_lines(std::initializer_list<const char*> lines) {
    for (const char* const line : lines) dialog_.ListCriteria.add(line);
    settle();
  }

  PlainDialog dialog_;
  ScriptedUserInterface messages_;
  QtSettings settings_;
  std::unique_ptr<SelectionWindow> window_;
  std::unique_ptr<WindowUser> user_;
  std::vector<std::string> clicked_;
};

// --- Keyboard

TEST_F(Window, TabGoesThroughTheControlsInTheOrderOfTheirUse) {
  user_->focus(dialog_.cboField);
  std::vector<std::string> order;
  do {
    order.push_back(user_->focused());
    user_->key(Qt::Key_Tab);
  } while (order.size() < 50 && user_->focused() != "cboField");
  EXPECT_THAT(
      order, ElementsAre("cboField", "cboOperator", "cboValue", "btnPlus", "btnMinus", "btnInsert",
                         "btnReplace", "btnDelete", "btnOr", "ListCriteria", "btnFirst", "btnPrev",
                         "btnNext", "btnLast", "cmdUp", "cmdDown", "btnNew", "Model", "txtStandard",
                         "chkStandard", "Check1", "chkAL", "btnSaveModelle", "btnSaveModelleAs",
                         "btnDeleteModelle", "btnOk", "btnCancel"));
}

TEST_F(Window, EveryButtonHasAShortcut) {
  watch_buttons();
  struct Keys {
    int key;
    Qt::KeyboardModifiers modifiers;
  };
  const Qt::KeyboardModifiers control_shift = Qt::ControlModifier | Qt::ShiftModifier;
  user_->focus(dialog_.ListCriteria);
  for (const Keys& keys :
       {Keys{Qt::Key_Plus, Qt::ControlModifier}, Keys{Qt::Key_Minus, Qt::ControlModifier},
        Keys{Qt::Key_Insert, Qt::NoModifier}, Keys{Qt::Key_R, Qt::ControlModifier},
        Keys{Qt::Key_Delete, Qt::ControlModifier}, Keys{Qt::Key_O, Qt::ControlModifier},
        Keys{Qt::Key_Home, Qt::AltModifier}, Keys{Qt::Key_PageUp, Qt::AltModifier},
        Keys{Qt::Key_PageDown, Qt::AltModifier}, Keys{Qt::Key_End, Qt::AltModifier},
        Keys{Qt::Key_Up, control_shift}, Keys{Qt::Key_Down, control_shift},
        Keys{Qt::Key_N, Qt::ControlModifier}, Keys{Qt::Key_S, Qt::ControlModifier},
        Keys{Qt::Key_S, control_shift}, Keys{Qt::Key_Return, Qt::ControlModifier},
        Keys{Qt::Key_Delete, Qt::NoModifier}}) {
    user_->key(keys.key, keys.modifiers);
  }
  user_->focus(dialog_.Model);
  user_->key(Qt::Key_Delete);
  user_->key(Qt::Key_Escape);
  EXPECT_THAT(clicked_, ElementsAre("btnPlus", "btnMinus", "btnInsert", "btnReplace", "btnDelete",
                                    "btnOr", "btnFirst", "btnPrev", "btnNext", "btnLast", "cmdUp",
                                    "cmdDown", "btnNew", "btnSaveModelle", "btnSaveModelleAs",
                                    "btnOk", "btnDelete", "btnDeleteModelle", "btnCancel"));
}

TEST_F(Window, AShortcutOfADisabledButtonDoesNothing) {
  watch_buttons();
  dialog_.btnNew.set_enabled(false);
  settle();
  user_->focus(dialog_.ListCriteria);
  user_->key(Qt::Key_N, Qt::ControlModifier);
  EXPECT_THAT(clicked_, IsEmpty());
}

TEST_F(Window, EnterInsertsWhileALineIsComposedAndIsOkElsewhere) {
  watch_buttons();
  for (Control* const control : std::initializer_list<Control*>{
           &dialog_.cboField, &dialog_.cboOperator, &dialog_.cboValue, &dialog_.ListCriteria,
           &dialog_.Check1, &dialog_.btnReplace}) {
    user_->focus(*control);
    user_->key(Qt::Key_Return);
  }
  EXPECT_THAT(clicked_,
              ElementsAre("btnInsert", "btnInsert", "btnInsert", "btnOk", "btnOk", "btnReplace"));
}

TEST_F(Window, AButtonThatIsDisabledUnderItsKeyPassesNoKeyOn) {
  watch_buttons();
  dialog_.cmdDown.on_click = [this] {
    clicked_.push_back("cmdDown");
    dialog_.cmdDown.set_enabled(false);
  };
  user_->focus(dialog_.cmdDown);
  user_->key(Qt::Key_Space);
  EXPECT_EQ(user_->focused(), "ListCriteria");
  user_->key(Qt::Key_Space);
  EXPECT_THAT(clicked_, ElementsAre("cmdDown"));
}

TEST_F(Window, AHeldEnterIsNotOk) {
  watch_buttons();
  user_->focus(dialog_.ListCriteria);
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
  QApplication::sendEvent(&user_->widget(dialog_.ListCriteria), &held);
  EXPECT_THAT(clicked_, IsEmpty());
}

TEST_F(Window, AWindowThatGoesAcceptsToBeClosed) {
  EXPECT_TRUE(window_->close());
  EXPECT_FALSE(window_->isVisible());
}

TEST_F(Window, EnterInTheModelListLoadsTheModel) {
  watch_buttons();
  int loaded = 0;
  dialog_.Model.on_double_click = [&loaded] { ++loaded; };
  dialog_.Model.add("Fichte stark");
  user_->focus(dialog_.Model);
  user_->key(Qt::Key_Return);
  EXPECT_EQ(loaded, 1);
  EXPECT_THAT(clicked_, IsEmpty());
}

TEST_F(Window, TheListGetsTheFocusWithoutAPick) {
  std::vector<int> picks;
  fill_lines({"a = 1", "b = 2"});
  dialog_.ListCriteria.on_click = [&] { picks.push_back(dialog_.ListCriteria.index()); };
  user_->focus(dialog_.ListCriteria);
  EXPECT_THAT(picks, IsEmpty());
  user_->key(Qt::Key_Down);
  user_->key(Qt::Key_Down);
  user_->key(Qt::Key_Home);
  EXPECT_THAT(picks, ElementsAre(0, 1, 0));
}

TEST_F(Window, AWheelOverAPickerWithoutTheFocusChangesNothing) {
  dialog_.cboField.add("Holzart");
  dialog_.cboField.add("Menge");
  dialog_.cboField.set_index(0);
  user_->focus(dialog_.ListCriteria);
  QWidget& picker = user_->widget(dialog_.cboField);
  QWheelEvent turn(QPointF(5, 5), picker.mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120),
                   Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&picker, &turn);
  settle();
  EXPECT_EQ(dialog_.cboField.index(), 0);
}

// --- Typing

// A mnemonic does not move the focus, but the button must find the value confirmed.
TEST_F(Window, WhatIsTypedIsConfirmedBeforeAnyOtherAction) {
  std::vector<std::string> order;
  dialog_.cboValue.on_validate = [&](bool&) {
    order.push_back("validate " + dialog_.cboValue.text());
  };
  dialog_.btnInsert.on_click = [&] { order.push_back("insert"); };
  dialog_.Check1.on_click = [&] { order.push_back("lock"); };
  user_->focus(dialog_.cboValue);
  user_->type("1");
  user_->key(Qt::Key_E, Qt::AltModifier);
  user_->focus(dialog_.cboValue);
  user_->type("2");
  user_->key(Qt::Key_Return);
  user_->type("3");
  user_->click(dialog_.Check1);
  EXPECT_THAT(order,
              ElementsAre("validate 1", "insert", "validate 12", "insert", "validate 123", "lock"));
}

TEST_F(Window, ATextThatCodePutIntoTheValueBoxIsNotConfirmed) {
  int asked = 0;
  dialog_.cboValue.on_validate = [&asked](bool&) { ++asked; };
  user_->focus(dialog_.cboValue);
  user_->type("1");
  dialog_.cboValue.set_text("3.5");
  settle();
  user_->key(Qt::Key_Tab);
  EXPECT_EQ(asked, 0);
}

TEST_F(Window, EnterIsAKeyOfTheValueBox) {
  watch_buttons();
  std::vector<int> keys;
  dialog_.cboValue.on_key_press = [&keys](int& key) {
    keys.push_back(key);
    key = 0;
  };
  user_->focus(dialog_.cboValue);
  user_->key(Qt::Key_Return);
  EXPECT_THAT(keys, ElementsAre(13));
  EXPECT_THAT(clicked_, IsEmpty());
}

TEST_F(Window, APastedTextIsTypedAndRefusedAsAWhole) {
  dialog_.cboValue.on_key_press = [this](int& key) {
    const bool second = key == ',' && dialog_.cboValue.text().find(',') != std::string::npos;
    if (second || key == 'x') key = 0;
  };
  user_->focus(dialog_.cboValue);
  QApplication::clipboard()->setText("1,5");
  user_->key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(dialog_.cboValue.text(), "1,5");
  for (const char* const refused : {"7x", "6,", "x"}) {
    QApplication::clipboard()->setText(refused);
    user_->key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(dialog_.cboValue.text(), "1,5") << refused;
    EXPECT_EQ(user_->combo(dialog_.cboValue).currentText(), "1,5") << refused;
  }
}

// --- The list

TEST_F(Window, ADraggedLineIsDroppedOnTheRowUnderThePointer) {
  fill_lines({"a = 1", "b = 2", "c = 3", "d = 4"});
  std::vector<int> buttons;
  std::vector<std::string> drops;
  ListBox& list = dialog_.ListCriteria;
  list.on_mouse_move = [&](int button) {
    buttons.push_back(button);
    list.is_dragging = true;
  };
  list.on_drag_drop = [&](const Control& source, double, double y) {
    list.is_dragging = false;
    drops.push_back(source.name() + " " + std::to_string(list.index()) + " to " +
                    std::to_string(list.top_index + static_cast<int>(y / list.row_height)));
  };
  user_->drag(list, 0, 2);
  user_->drag(list, 3, 1);
  user_->drag(list, 1, 1.2);
  EXPECT_THAT(buttons, ElementsAre(1, 1));
  EXPECT_THAT(drops, ElementsAre("ListCriteria 0 to 2", "ListCriteria 3 to 1"));
}

TEST_F(Window, ADropOutsideTheListIsNoDrop) {
  fill_lines({"a = 1", "b = 2"});
  ListBox& list = dialog_.ListCriteria;
  int drops = 0;
  list.on_mouse_move = [&](int) { list.is_dragging = true; };
  list.on_drag_drop = [&](const Control&, double, double) { ++drops; };
  user_->drag(list, 0, 500);
  EXPECT_EQ(drops, 0);
  EXPECT_FALSE(list.is_dragging);
}

TEST_F(Window, OrLinesLookUnlikeOtherLines) {
  fill_lines({"a = 1", "=== ODER ===", "b = 2"});
  QListWidget& list = user_->list(dialog_.ListCriteria);
  const QImage picture = list.viewport()->grab().toImage();
  const auto colours = [&](int row) {
    const QRect place = list.visualItemRect(list.item(row));
    std::set<QRgb> result;
    for (int x = 0; x < list.viewport()->width(); ++x)
      result.insert(picture.pixel(x, place.center().y()));
    return result;
  };
  const QRgb ink = list.palette().color(QPalette::Text).rgb();
  EXPECT_TRUE(colours(1).count(ink)) << "no line drawn through the OR row";
  const QRgb ground = list.palette().color(QPalette::AlternateBase).rgb();
  EXPECT_TRUE(colours(1).count(ground));
  EXPECT_FALSE(colours(0).count(ground));
}

// --- Captions and names

TEST_F(Window, CaptionsAreGermanOrEnglish) {
  EXPECT_EQ(user_->button(dialog_.btnInsert).text(), "&Einfügen");
  settings_.language = "EN";
  open();
  EXPECT_EQ(user_->button(dialog_.btnInsert).text(), "&Insert");
  EXPECT_EQ(user_->button(dialog_.btnOr).text(), "&OR");
}

TEST_F(Window, TextsOfTheSuiteGoBeforeTheBuiltInOnes) {
  settings_.text = [](std::int32_t number) {
    return number == 3441 ? "OU" : number == 77 ? "Eintragen" : "";
  };
  settings_.caption_numbers = {{"btnInsert", 77}, {"btnReplace", 78}};
  open();
  EXPECT_EQ(user_->button(dialog_.btnOr).text(), "&OU");
  EXPECT_EQ(user_->button(dialog_.btnInsert).text(), "&Eintragen");
  EXPECT_EQ(user_->button(dialog_.btnReplace).text(), "Er&setzen");
}

TEST_F(Window, MnemonicsAreUniqueInBothLanguages) {
  for (const char* const language : {"DE", "EN"}) {
    settings_.language = language;
    open();
    std::map<QKeySequence, std::vector<std::string>> owners;
    for (QAbstractButton* const button : window_->findChildren<QAbstractButton*>()) {
      if (!QKeySequence::mnemonic(button->text()).isEmpty()) {
        owners[QKeySequence::mnemonic(button->text())].push_back(button->text().toStdString());
      }
    }
    for (QLabel* const label : window_->findChildren<QLabel*>()) {
      if (label->buddy())
        owners[QKeySequence::mnemonic(label->text())].push_back(label->text().toStdString());
    }
    EXPECT_GE(owners.size(), 16U) << language;
    for (const auto& [keys, texts] : owners) {
      if (keys.isEmpty()) continue;
      EXPECT_EQ(texts.size(), 1U) << language << ": " << testing::PrintToString(texts);
    }
  }
}

TEST_F(Window, EveryControlHasASpokenNameAndATooltip) {
  for (const char* const language : {"DE", "EN"}) {
    settings_.language = language;
    open();
    std::set<QString> names;
    for (const Control* const control : all_controls(dialog_)) {
      QWidget& widget = user_->widget(*control);
      QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&widget);
      ASSERT_NE(spoken, nullptr) << control->name();
      EXPECT_NE(spoken->text(QAccessible::Name), "") << control->name();
      EXPECT_FALSE(spoken->text(QAccessible::Name).contains('&')) << control->name();
      EXPECT_TRUE(names.insert(spoken->text(QAccessible::Name)).second)
          << spoken->text(QAccessible::Name).toStdString();
      EXPECT_NE(widget.toolTip(), "") << control->name();
    }
  }
}

TEST_F(Window, TheAccessLevelOfTheModelStandsInItsCaption) {
  auto& box = dynamic_cast<QAbstractButton&>(user_->widget(dialog_.chkAL));
  EXPECT_EQ(box.text(), "&Zugriffsebene");
  dialog_.chkAL.set_caption("Nord & Süd");
  settle();
  EXPECT_EQ(box.text(), "&Zugriffsebene: Nord && Süd");
}

TEST_F(Window, ADisabledControlLooksUnlikeAnEnabledOne) {
  for (Button* const button : {&dialog_.btnInsert, &dialog_.btnPlus, &dialog_.cmdUp}) {
    const QImage enabled = user_->button(*button).grab().toImage();
    button->set_enabled(false);
    settle();
    EXPECT_NE(user_->button(*button).grab().toImage(), enabled) << button->name();
  }
}

TEST_F(Window, TheCaptionFollowsTheDialog) {
  EXPECT_EQ(window_->windowTitle(), "Selektion");
  dialog_.Model.add("Fichte stark");
  dialog_.Model.on_double_click = [this] { dialog_.caption_text = "Selektion: Fichte stark"; };
  user_->double_click(dialog_.Model, 0);
  EXPECT_EQ(window_->windowTitle(), "Selektion: Fichte stark");
}

// A control that the dialog gives the focus may have been enabled in the same breath.
TEST_F(Window, TheFocusGoesWhereTheDialogPutsIt) {
  dialog_.cboValue.set_enabled(false);
  settle();
  dialog_.btnInsert.on_click = [this] {
    dialog_.cboValue.set_enabled(true);
    dialog_.cboValue.take_focus();
  };
  user_->click(dialog_.btnInsert);
  EXPECT_EQ(user_->focused(), "cboValue");
}

TEST_F(Window, SizeAndColumnsAreKept) {
  window_->resize(1000, 700);
  settle();
  const std::string state = window_->layout_state();
  open();
  EXPECT_NE(window_->size(), QSize(1000, 700));
  window_->restore_layout(state);
  settle();
  EXPECT_EQ(window_->size(), QSize(1000, 700));
}

TEST_F(Window, ALayoutThatCannotBeReadChangesNothing) {
  const QSize size = window_->size();
  for (const char* const broken : {"", "x", "nonsense, longer than any number"}) {
    window_->restore_layout(broken);
    EXPECT_EQ(window_->size(), size) << broken;
  }
}

// --- A line that is not taken

class Refusal : public Window {
 protected:
  Refusal() {
    dialog_.cboField.add("Käufer");
    dialog_.cboField.add("Ort");
    dialog_.cboField.set_index(0);
    dialog_.cboOperator.add("=");
    dialog_.cboOperator.add("LIKE");
    dialog_.cboOperator.set_index(0);
    dialog_.cboValue.add("Eder");
    dialog_.cboValue.set_text("O'Brien");
    settle();
  }

  void refuse(LineRefusal why, std::string offered = "") {
    dialog_.refused = {why, std::move(offered)};
    user_->click(dialog_.btnInsert);
  }

  QLabel& sentence() { return dynamic_cast<QLabel&>(user_->widget("refusal")); }
  QPushButton& offer() { return dynamic_cast<QPushButton&>(user_->widget("refusal.offer")); }
  bool is_marked() {
    const QList<QAction*> marks =
        user_->widget(dialog_.cboValue).findChild<QLineEdit*>()->actions();
    return marks.size() == 1 && marks.front()->isVisible();
  }
  bool is_shown() { return sentence().isVisible(); }
};

TEST_F(Refusal, IsNotShownForALineThatIsTaken) {
  EXPECT_FALSE(is_shown());
  EXPECT_FALSE(offer().isVisible());
  EXPECT_FALSE(is_marked());
  refuse(LineRefusal::kNone);
  EXPECT_FALSE(is_shown());
  EXPECT_FALSE(is_marked());
}

TEST_F(Refusal, SaysWhyInTheLanguageOfTheUser) {
  struct Case {
    LineRefusal why;
    const char* german;
    const char* english;
  };
  const Case cases[] = {
      {LineRefusal::kSemicolon,
       "Ein Wert kann kein Semikolon enthalten, denn es trennt die gespeicherten Kriterien. Mit "
       "dem "
       "Operator LIKE steht _ für ein beliebiges Zeichen.",
       "A value cannot hold a semicolon, because it separates the stored criteria. With the "
       "operator "
       "LIKE, _ stands for any character."},
      {LineRefusal::kApostrophe, "Ein Apostroph innerhalb des Wertes muss doppelt getippt werden.",
       "An apostrophe inside the value must be typed twice."},
      {LineRefusal::kNotClosed,
       "Im Wert ist ein Anführungszeichen oder eine Klammer nicht geschlossen, oder er enthält "
       "einen "
       "Kommentar (-- oder /*) oder ein unsichtbares Zeichen.",
       "A quote or bracket in the value is not closed, or the value holds a comment (-- or /*) or "
       "an "
       "invisible character."},
      {LineRefusal::kListCut,
       "Diese Werteliste würde beim Laden an einer Klammer abgeschnitten. Statt der Liste mehrere "
       "Zeilen einfügen, mit ODER dazwischen.",
       "This list of values would be cut at a parenthesis when it is loaded. Insert several lines "
       "with OR between them instead of the list."},
  };
  for (const char* const language : {"DE", "EN"}) {
    settings_.language = language;
    open();
    for (const Case& c : cases) {
      refuse(c.why);
      EXPECT_EQ(sentence().text().toStdString(),
                language == std::string("DE") ? c.german : c.english);
      EXPECT_TRUE(is_shown());
      EXPECT_TRUE(is_marked());
      EXPECT_FALSE(offer().isVisible()) << "nothing is offered";
      EXPECT_EQ(user_->widget(dialog_.cboValue).findChild<QLineEdit*>()->accessibleDescription(),
                sentence().text());
    }
  }
}

TEST_F(Refusal, OfReplaceIsShownAsWell) {
  dialog_.refused = {LineRefusal::kSemicolon, ""};
  user_->click(dialog_.btnReplace);
  EXPECT_TRUE(is_shown());
  dialog_.refused = {};
  user_->click(dialog_.btnReplace);
  EXPECT_FALSE(is_shown());
}

TEST_F(Refusal, OfEnterInTheValueBoxIsShownAsWell) {
  dialog_.refused = {LineRefusal::kSemicolon, ""};
  user_->focus(dialog_.cboValue);
  user_->key(Qt::Key_Return);
  EXPECT_TRUE(is_shown());
}

TEST_F(Refusal, GoesWhenFieldOperatorValueOrLinesChange) {
  const std::vector<std::function<void()>> changes = {
      [this] { user_->pick(dialog_.cboField, 1); },
      [this] { user_->pick(dialog_.cboOperator, 1); },
      [this] { user_->pick(dialog_.cboValue, 0); },
      [this] {
        user_->focus(dialog_.cboValue);
        user_->type("s");
      },
      [this] {
        dialog_.btnOr.on_click = [this] { dialog_.ListCriteria.add("=== ODER ==="); };
        user_->click(dialog_.btnOr);
      },
  };
  for (std::size_t i = 0; i < changes.size(); ++i) {
    refuse(LineRefusal::kApostrophe, "O''Brien");
    EXPECT_TRUE(is_shown());
    changes[i]();
    EXPECT_FALSE(is_shown()) << i;
    EXPECT_FALSE(offer().isVisible()) << i;
    EXPECT_FALSE(is_marked()) << i;
    EXPECT_EQ(user_->widget(dialog_.cboValue).findChild<QLineEdit*>()->accessibleDescription(), "");
  }
}

TEST_F(Refusal, StaysWhileNothingOfTheLineChanges) {
  dialog_.ListCriteria.add("Ort = 'X'");
  settle();
  refuse(LineRefusal::kSemicolon);
  user_->click(dialog_.btnFirst);
  user_->focus(dialog_.cboValue);
  EXPECT_TRUE(is_shown());
}

TEST_F(Refusal, IsNotShownForAnActionThatFailed) {
  dialog_.btnInsert.on_click = [] { throw DatabaseError("no table", "42S02"); };
  messages_.expect_message(
      {"Das konnte nicht ausgeführt werden.\n\nno table", kCriticalIcon, "Selektion", "", 0});
  refuse(LineRefusal::kSemicolon);
  EXPECT_FALSE(is_shown());
}

// The doubled form goes the way of a typed value, and to the button that refused the line.
TEST_F(Refusal, OffersTheTextThatWouldBeTaken) {
  for (Button* const button : {&dialog_.btnInsert, &dialog_.btnReplace}) {
    std::vector<std::string> events;
    dialog_.cboValue.set_text("O'Brien");
    dialog_.cboValue.on_validate = [&](bool&) {
      events.push_back("validate " + dialog_.cboValue.text());
      dialog_.refused = {};
    };
    dialog_.refused = {LineRefusal::kApostrophe, "O''Brien"};
    user_->click(*button);
    ASSERT_TRUE(offer().isVisible());
    EXPECT_EQ(offer().text().toStdString(), "„O''Brien“ verwenden");
    button->on_click = [&] { events.push_back(button->name()); };
    QTest::mouseClick(&offer(), Qt::LeftButton);
    settle();
    EXPECT_THAT(events, ElementsAre("validate O''Brien", button->name()));
    EXPECT_EQ(user_->combo(dialog_.cboValue).currentText(), "O''Brien");
    EXPECT_FALSE(is_shown());
    button->on_click = {};
  }
}

TEST_F(Refusal, OfTheOfferedTextIsShownAgain) {
  refuse(LineRefusal::kApostrophe, "O''Brien");
  dialog_.cboValue.on_validate = [this](bool&) { dialog_.refused = {LineRefusal::kNotClosed, ""}; };
  QTest::mouseClick(&offer(), Qt::LeftButton);
  settle();
  EXPECT_TRUE(is_shown());
  EXPECT_TRUE(sentence().text().startsWith("Im Wert ist")) << sentence().text().toStdString();
  EXPECT_FALSE(offer().isVisible());
  EXPECT_EQ(user_->focused(), "cboValue") << "the button that had the focus has gone";
}

TEST_F(Refusal, ShowsALongOfferShortened) {
  const std::string value = "D''Angelo & Söhne " + std::string(200, 'x') + "\ny";
  refuse(LineRefusal::kApostrophe, value);
  EXPECT_LT(offer().width(), window_->width() / 2);
  EXPECT_TRUE(offer().text().startsWith("„D''Angelo && ")) << offer().text().toStdString();
  EXPECT_TRUE(offer().text().contains("…")) << offer().text().toStdString();
  EXPECT_EQ(offer().accessibleName().toStdString(),
            "„D''Angelo & Söhne " + std::string(200, 'x') + " y“ verwenden");
}

TEST_F(Refusal, TheOfferStandsBehindTheValueForTheKeyboard) {
  refuse(LineRefusal::kApostrophe, "O''Brien");
  user_->focus(dialog_.cboValue);
  user_->key(Qt::Key_Tab);
  EXPECT_EQ(user_->focused(), "refusal.offer");
  dialog_.cboValue.on_validate = [this](bool&) { dialog_.refused = {}; };
  user_->key(Qt::Key_Space);
  EXPECT_EQ(user_->combo(dialog_.cboValue).currentText(), "O''Brien");
}

// --- Closing

TEST_F(Window, ClosesWhenTheDialogIsNoLongerVisible) {
  dialog_.btnOk.on_click = [this] { dialog_.visible = false; };
  when_idle({[this] { user_->click(dialog_.btnOk); }});
  window_->show_until_hidden();
  EXPECT_FALSE(window_->isVisible());
}

TEST_F(Window, AsksTheDialogWhenTheUserClosesIt) {
  when_idle({[this] { window_->close(); }});
  window_->show_until_hidden();
  EXPECT_FALSE(dialog_.visible);
}

TEST_F(Window, EscapeIsCancelAlsoFromAPicker) {
  dialog_.btnCancel.on_click = [this] { dialog_.visible = false; };
  when_idle({[this] {
    user_->focus(dialog_.cboValue);
    user_->key(Qt::Key_Escape);
  }});
  window_->show_until_hidden();
  EXPECT_FALSE(window_->isVisible());
}

// --- Errors

Message error_message(const std::string& what) {
  return {"Das konnte nicht ausgeführt werden.\n\n" + what, kCriticalIcon, "Selektion", "", 0};
}

TEST_F(Window, AnErrorIsToldToTheUserAndTheWindowStays) {
  dialog_.btnInsert.on_click = [] { throw TypeMismatch("'abc' is no date."); };
  messages_.expect_message(error_message("'abc' is no date."));
  when_idle({[this] { user_->click(dialog_.btnInsert); },
             [this] {
               EXPECT_TRUE(window_->isVisible());
               messages_.verify();
               window_->close();
             }});
  window_->show_until_hidden();
}

// A button must not build on a value that could not be confirmed.
TEST_F(Window, ABrokenValueStopsTheButtonBehindIt) {
  watch_buttons();
  dialog_.cboValue.on_validate = [](bool&) { throw TypeMismatch("'abc' is no date."); };
  messages_.expect_message(error_message("'abc' is no date."));
  user_->focus(dialog_.cboValue);
  user_->type("abc");
  user_->key(Qt::Key_E, Qt::AltModifier);
  EXPECT_THAT(clicked_, IsEmpty());
  // The value is still not confirmed: the line being composed holds the one before it.
  messages_.expect_message(error_message("'abc' is no date."));
  user_->click(dialog_.btnOr);
  EXPECT_THAT(clicked_, IsEmpty());
  dialog_.cboValue.on_validate = [](bool&) {};
  user_->click(dialog_.btnOr);
  EXPECT_THAT(clicked_, ElementsAre("btnOr"));
}

TEST_F(Window, CancelAsksNothingOfATypedValue) {
  watch_buttons();
  dialog_.cboValue.on_validate = [](bool&) { throw TypeMismatch("'abc' is no date."); };
  user_->focus(dialog_.cboValue);
  user_->type("abc");
  user_->key(Qt::Key_Escape);
  EXPECT_THAT(clicked_, ElementsAre("btnCancel"));
}

// A press of the mouse takes the focus from the value box before it is a click.
TEST_F(Window, TheFirstClickOnCancelClosesAlsoWhenTheTypedValueIsBroken) {
  dialog_.btnCancel.on_click = [this] { dialog_.visible = false; };
  dialog_.cboValue.on_validate = [](bool&) { throw DatabaseError("no connection", "08S01"); };
  user_->focus(dialog_.cboValue);
  user_->type("abc");
  user_->click(dialog_.btnCancel);
  EXPECT_FALSE(window_->isVisible());
}

TEST_F(Window, ClosingTheWindowAsksNothingOfATypedValue) {
  dialog_.cboValue.on_validate = [](bool&) { throw DatabaseError("no connection", "08S01"); };
  user_->focus(dialog_.cboValue);
  user_->type("abc");
  window_->close();
  EXPECT_FALSE(window_->isVisible());
  EXPECT_FALSE(dialog_.visible);
}

TEST_F(Window, ATypedValueIsConfirmedWhenTheFocusGoesOnFromCancel) {
  std::vector<std::string> validated;
  dialog_.cboValue.on_validate = [&](bool&) { validated.push_back(dialog_.cboValue.text()); };
  user_->focus(dialog_.cboValue);
  user_->type("abc");
  user_->focus(dialog_.btnCancel);
  EXPECT_THAT(validated, IsEmpty());
  user_->focus(dialog_.cboValue);
  EXPECT_THAT(validated, IsEmpty()) << "back to go on typing";
  user_->focus(dialog_.btnCancel);
  user_->focus(dialog_.ListCriteria);
  EXPECT_THAT(validated, ElementsAre("abc"));
}

TEST_F(Window, TheLevelOfTheBoxIsSpoken) {
  dialog_.chkAL.set_caption("Revier Nord");
  settle();
  EXPECT_EQ(user_->widget(dialog_.chkAL).accessibleName().toStdString(),
            "Zugriffsebene: Revier Nord");
}

TEST_F(Window, AnOkThatFailedReachesTheHostWhenTheWindowIsClosed) {
  dialog_.btnOk.on_click = [] { throw DatabaseError("no table", "42S02"); };
  messages_.expect_message(error_message("no table"));
  when_idle({[this] { user_->click(dialog_.btnOk); }, [this] { window_->close(); }});
  EXPECT_THROW(window_->show_until_hidden(), DatabaseError);
}

TEST_F(Window, AnOkThatFailedIsForgottenAfterCancelOrAnotherOk) {
  for (Button* const last : {&dialog_.btnOk, &dialog_.btnCancel}) {
    dialog_.visible = true;
    open();
    dialog_.btnOk.on_click = [] { throw DatabaseError("no table", "42S02"); };
    messages_.expect_message(error_message("no table"));
    when_idle({[this] { user_->click(dialog_.btnOk); },
               [this, last] {
                 last->on_click = [this] { dialog_.visible = false; };
                 user_->click(*last);
               }});
    EXPECT_NO_THROW(window_->show_until_hidden()) << last->name();
  }
}

TEST_F(Window, AnyOtherExceptionClosesTheWindowAndReachesTheHost) {
  dialog_.btnInsert.on_click = [] { throw std::logic_error("broken"); };
  when_idle({[this] { user_->click(dialog_.btnInsert); }});
  EXPECT_THROW(window_->show_until_hidden(), std::logic_error);
  EXPECT_FALSE(window_->isVisible());
}

TEST_F(Window, AnErrorThatCannotBeToldReachesTheHost) {
  settings_.caption_numbers = {{"error", 77}};
  settings_.text = [](std::int32_t number) -> std::string {
    if (number == 77) throw DatabaseError("The connection is lost.", "08S01");
    return "";
  };
  open();
  dialog_.btnInsert.on_click = [] { throw InvalidArgument("no value"); };
  when_idle({[this] { user_->click(dialog_.btnInsert); }});
  EXPECT_THROW(window_->show_until_hidden(), DatabaseError);
  EXPECT_FALSE(window_->isVisible());
}

// --- The number of records

class ScriptedCounter final : public RowCounter {
 public:
  RowCount begin() override {
    ++begun;
    if (!error.empty()) throw DatabaseError(error, "42000");
    rows_ = 0;
    return first;
  }
  RowCount advance(std::chrono::milliseconds) override {
    rows_ += 1000;
    return rows_ < all ? RowCount::kCounting : last;
  }
  std::int64_t rows() const override { return rows_; }
  void stop() override { ++stopped; }

  RowCount first = RowCount::kCounting;
  RowCount last = RowCount::kAll;
  std::int64_t all = 3000;
  std::string error;
  int begun = 0;
  int stopped = 0;

 private:
  std::int64_t rows_ = 0;
};

class CountedWindow : public Window {
 protected:
  CountedWindow() {
    settings_.row_counter = counter_;
    open();
  }

  QWidget* line() const {
    for (QWidget* const widget : window_->findChildren<QWidget*>()) {
      if (widget->accessibleName() == "Datensätze") return widget;
    }
    return nullptr;
  }
  std::string shown_after(int milliseconds) const {
    QTest::qWait(milliseconds);
    return line()->accessibleDescription().toStdString();
  }

  std::shared_ptr<ScriptedCounter> counter_ = std::make_shared<ScriptedCounter>();
};

TEST_F(Window, CountsNothingUnlessAsked) {
  for (QWidget* const widget : window_->findChildren<QWidget*>()) {
    EXPECT_NE(widget->accessibleName(), "Datensätze");
  }
}

TEST_F(CountedWindow, ShowsHowManyRecordsTheLinesSelect) {
  EXPECT_EQ(shown_after(600), "3.000 Datensätze");
  EXPECT_EQ(counter_->begun, 1);
}

TEST_F(CountedWindow, ShowsThatThereAreMore) {
  counter_->last = RowCount::kMore;
  EXPECT_EQ(shown_after(600), "mindestens 3.000 Datensätze");
}

TEST_F(CountedWindow, ClaimsNoNumberWhereNoneIsKnown) {
  counter_->first = RowCount::kMore;
  EXPECT_EQ(shown_after(600), "Das Zählen dauert zu lange");
}

TEST_F(CountedWindow, ShowsTheErrorOfABrokenLine) {
  counter_->error = "Incorrect syntax near 'OR'.";
  EXPECT_EQ(shown_after(600), "Incorrect syntax near 'OR'.");
}

TEST_F(CountedWindow, CountsAgainWhenTheLinesHaveChangedOnly) {
  shown_after(600);
  dialog_.btnOr.on_click = [this] { dialog_.ListCriteria.add("=== ODER ==="); };
  user_->click(dialog_.btnFirst);
  shown_after(600);
  EXPECT_EQ(counter_->begun, 1);
  user_->click(dialog_.btnOr);
  EXPECT_EQ(shown_after(600), "3.000 Datensätze");
  EXPECT_EQ(counter_->begun, 2);
}

TEST_F(CountedWindow, AnActionOfTheUserBreaksCountingOff) {
  counter_->all = 1'000'000'000;
  shown_after(600);
  const int stopped = counter_->stopped;
  user_->click(dialog_.btnFirst);
  EXPECT_EQ(counter_->stopped, stopped + 1);
  EXPECT_EQ(counter_->begun, 1);
  counter_->all = 0;
  EXPECT_EQ(shown_after(600), "1.000 Datensätze");
}

TEST_F(CountedWindow, EndsWhenTheBudgetIsSpent) {
  counter_->all = 1'000'000'000'000;
  EXPECT_TRUE(QString::fromStdString(shown_after(2800)).startsWith("mindestens "));
}

}  // namespace
}  // namespace kestrova::test
