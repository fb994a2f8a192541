// The list of criteria: composing, inserting, moving and showing lines.
#include <gmock/gmock.h>

#include "platform/error.h"
#include "tests/editor/editor_host.h"
#include "tests/editor/failure_sweep.h"

namespace kestrova::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kOr = "=== ODER ===";

class CriteriaList : public testing::Test {
 protected:
  CriteriaList() { host_.open_sonst(); }

  // Three lines of the field Anzahl, with the second selected.
  void fill_three() {
    host_.fill_lines({{"Anzahl = 1", 11}, {"Anzahl = 2", 11}, {"Anzahl = 3", 11}});
    list().set_index(1);
  }
  void fill_lines(int count) {
    for (int i = 0; i < count; ++i) list().add("Anzahl = 1");
  }
  void expect_pickers(const std::string& field, const std::string& op, const std::string& value,
                      const std::string& formula) {
    EXPECT_EQ(editor().cboField.text(), field);
    EXPECT_EQ(editor().cboOperator.text(), op);
    EXPECT_EQ(editor().cboValue.text(), value);
    EXPECT_EQ(editor().Formula.text(), formula);
  }

  F_Selection& editor() { return *host_.editor; }
  ListBox& list() { return editor().ListCriteria; }

  EditorHost host_;
};

// --- Composing

TEST_F(CriteriaList, TheFormulaIsFieldOperatorAndValueWithABlankEachEvenWhenEmpty) {
  host_.compose("Holzart", "=", "FI");
  EXPECT_EQ(editor().Formula.text(), "Holzart = 'FI'");
  editor().cboField.set_index(-1);
  editor().cboOperator.set_index(-1);
  EXPECT_EQ(editor().Formula.text(), "  FI");
}

TEST_F(CriteriaList, ALineWithoutSelectionGoesToTheTopAndIsSelected) {
  host_.fill_lines({{"Anzahl = 1", 11}, {"Anzahl = 2", 11}});
  host_.compose("Holzart", "=", "FI");
  editor().btnInsert_Click();
  EXPECT_THAT(host_.lines(), ElementsAre("Holzart = 'FI'", "Anzahl = 1", "Anzahl = 2"));
  EXPECT_EQ(list().index(), 0);
  EXPECT_EQ(list().item_data(0), 10);
  EXPECT_EQ(editor().focused(), &editor().cboField);
}

TEST_F(CriteriaList, ALineGoesBelowTheSelectedOneAndIsSelected) {
  fill_three();
  list().set_index(2);
  host_.compose("Menge", ">=", "10");
  editor().btnInsert_Click();
  EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 1", "Anzahl = 2", "Anzahl = 3", "Menge >= 10"));
  EXPECT_EQ(list().index(), 3);
  EXPECT_EQ(list().item_data(3), 12);
  expect_pickers("Menge", ">=", "10", "Menge >= 10");
}

TEST_F(CriteriaList, InsertingShowsTheNewLineByItsClickAndOnceMore) {
  host_.compose("Holzart", "=", "FI");
  host_.forget();
  editor().btnInsert_Click();
  int field_changes = 0;
  for (const std::string& sql : host_.connection->statements()) {
    if (sql == "SELECT NICKNAME_OF_FIELD FROM SELEKTION WHERE ID_SELEKTION = 10") ++field_changes;
  }
  EXPECT_EQ(field_changes, 2);
  EXPECT_EQ(host_.connection->statements()[0], "SELECT * FROM SELEKTION WHERE ID_SELEKTION = 10");
  EXPECT_EQ(host_.connection->statements()[1], "SELECT TOP 0 HA FROM LAGER");
  EXPECT_THAT(host_.lines(), ElementsAre("Holzart = 'FI'"));
}

TEST_F(CriteriaList, IncompleteInputIsIgnoredWithoutAskingTheDatabase) {
  fill_three();
  host_.compose("Holzart", "=", "FI");
  const auto expect_ignored = [&] {
    host_.forget();
    editor().btnInsert_Click();
    editor().btnReplace_Click();
    EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 1", "Anzahl = 2", "Anzahl = 3"));
    EXPECT_THAT(*host_.log, IsEmpty());
  };
  editor().cboValue.set_text("");
  expect_ignored();
  editor().cboValue.set_text("FI");
  editor().cboOperator.set_index(-1);
  expect_ignored();
  host_.pick(editor().cboOperator, "=");
  editor().cboField.set_index(-1);
  expect_ignored();
}

TEST_F(CriteriaList, ADateFieldTakesDaysDatesAndNullAndThenHasTheFocusOnTheValue) {
  struct Case {
    const char* value;
    bool taken;
  };
  for (const auto& [value, taken] :
       {Case{"5", true},          Case{"-3", true},         Case{"1,5", true},
        Case{"1.5", true},        Case{"1.2.2024", true},   Case{"null", true},
        Case{"31.2.2024", false}, Case{"1.000.000", false}, Case{"heute", false},
        Case{"NULL", true},       Case{"nUlL", true},       Case{" NULL", false},
        Case{"'NULL'", false},    Case{"1..5", false},      Case{"1.5.", false},
        Case{"29.2.2024", true},  Case{"29.2.2023", false}, Case{"0.1.2024", false},
        Case{"1.13.2024", false}, Case{"GETDATE()", false}}) {
    SCOPED_TRACE(value);
    list().clear();
    host_.compose("Datum", "=", value);
    editor().SetControlFocus(editor().btnOk);
    editor().btnReplace_Click();  // nothing is selected: only the test itself
    EXPECT_EQ(editor().focused(), &editor().cboValue);
    editor().btnInsert_Click();
    EXPECT_EQ(list().count(), taken ? 1 : 0);
    EXPECT_EQ(editor().focused(), taken ? &editor().cboField : &editor().cboValue);
  }
}

TEST_F(CriteriaList, InsertRefusesTheEmptyListOfInAndReplaceTakesIt) {
  fill_three();
  host_.compose("Holzart", "IN", "FI");
  editor().btnInsert_Click();
  EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 1", "Anzahl = 2", "Anzahl = 3"));
  editor().btnReplace_Click();
  EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 1", "Holzart IN ()", "Anzahl = 3"));
}

TEST_F(CriteriaList, ReplaceKeepsTheSelectionAndShowsNothingAnew) {
  fill_three();
  host_.compose("Holzart", "=", "FI");
  host_.forget();
  editor().btnReplace_Click();
  EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 1", "Holzart = 'FI'", "Anzahl = 3"));
  EXPECT_EQ(list().item_data(1), 10);
  EXPECT_EQ(list().index(), 1);
  EXPECT_THAT(
      host_.connection->statements(),
      ElementsAre("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 10", "SELECT TOP 0 HA FROM LAGER"));
}

TEST_F(CriteriaList, AnOrLineCanBeReplacedByACriterion) {
  editor().btnOr_Click();
  host_.compose("Holzart", "=", "FI");
  editor().btnReplace_Click();
  EXPECT_EQ(list().entries(), (std::vector<ListEntry>{{"Holzart = 'FI'", 10}}));
}

TEST_F(CriteriaList, ReplaceWithoutASelectedLineChangesNothing) {
  host_.compose("Holzart", "=", "FI");
  editor().btnReplace_Click();
  EXPECT_EQ(list().count(), 0);
}

TEST_F(CriteriaList, NewEmptiesTheListAndSelectsTheFirstFieldWithAnEmptyFormula) {
  fill_three();
  editor().btnNew_Click();
  EXPECT_EQ(list().count(), 0);
  expect_pickers("Holzart", "=", "", "");
  EXPECT_THAT(host_.texts_of(editor().cboValue), ElementsAre("Null", "BU", "FI", "KI"));
}

TEST_F(CriteriaList, NewWithoutFieldsOnlyEmptiesTheLists) {
  fill_three();
  editor().cboField.clear();
  host_.forget();
  editor().btnNew_Click();
  EXPECT_EQ(list().count(), 0);
  EXPECT_EQ(editor().cboValue.count(), 0);
  EXPECT_THAT(*host_.log, IsEmpty());
}

// --- Deleting

TEST_F(CriteriaList, DeletingSelectsTheLineAboveAndAtTheTopTheNewFirstOne) {
  fill_three();
  editor().btnDelete_Click();
  EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 1", "Anzahl = 3"));
  EXPECT_EQ(list().index(), 0);
  expect_pickers("Anzahl", "=", "1", "Anzahl = 1");
  editor().btnDelete_Click();
  EXPECT_EQ(list().index(), 0);
  expect_pickers("Anzahl", "=", "3", "Anzahl = 3");
  editor().btnDelete_Click();
  EXPECT_EQ(list().count(), 0);
  EXPECT_EQ(list().index(), -1);
  expect_pickers("", "", "", "");
  editor().btnDelete_Click();
  EXPECT_EQ(list().count(), 0);
}

TEST_F(CriteriaList, DeletingTheFourthLineSelectsTheThird) {
  fill_lines(5);
  list().set_index(3);
  editor().btnDelete_Click();
  EXPECT_EQ(list().index(), 2);
  EXPECT_EQ(list().count(), 4);
}

// --- OR lines

TEST_F(CriteriaList, OrOnAnEmptyListIsTheFirstLine) {
  editor().btnOr_Click();
  EXPECT_EQ(list().entries(), (std::vector<ListEntry>{{kOr, -2}}));
  EXPECT_EQ(list().index(), 0);
  expect_pickers("", "", "", "");
  EXPECT_EQ(editor().focused(), &editor().cboField);
}

TEST_F(CriteriaList, OrGoesBelowTheSelectedLineAlsoAtTheEnd) {
  fill_three();
  editor().btnOr_Click();
  EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 1", "Anzahl = 2", kOr, "Anzahl = 3"));
  EXPECT_EQ(list().index(), 2);
  EXPECT_EQ(list().item_data(2), -2);
  list().set_index(3);
  editor().btnOr_Click();
  EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 1", "Anzahl = 2", kOr, "Anzahl = 3", kOr));
}

TEST_F(CriteriaList, OrNeverStandsBesideOrButThePickersAreShownAnew) {
  host_.fill_lines({{"Anzahl = 1", 11}, {kOr, -2}});
  for (const int selected : {0, 1}) {
    list().set_index(selected);
    editor().Formula.set_text("stale");
    editor().SetControlFocus(editor().btnOk);
    editor().btnOr_Click();
    EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 1", kOr));
    EXPECT_EQ(list().index(), selected);
    EXPECT_EQ(editor().Formula.text(), selected == 0 ? "Anzahl = 1" : "");
    EXPECT_EQ(editor().focused(), &editor().cboField);
  }
}

TEST_F(CriteriaList, OrWithNothingSelectedLooksAtTheFirstLine) {
  host_.fill_lines({{"Anzahl = 1", 11}});
  editor().btnOr_Click();
  EXPECT_THAT(host_.lines(), ElementsAre(kOr, "Anzahl = 1"));
  EXPECT_EQ(list().index(), 0);
}

TEST_F(CriteriaList, AnOrLineIsKnownByItsExactText) {
  host_.fill_lines({{"=== oder ===", 0}});
  list().set_index(0);
  editor().btnOr_Click();
  EXPECT_THAT(host_.lines(), ElementsAre("=== oder ===", kOr));
}

// --- Lists of values

TEST_F(CriteriaList, PlusAndMinusBuildTheListOfIn) {
  host_.compose("Holzart", "IN", "FI");
  EXPECT_EQ(editor().value_text(), "()");
  editor().btnPlus_Click();
  EXPECT_EQ(editor().Formula.text(), "Holzart IN ('FI')");
  editor().cboValue.set_text("KI");
  editor().btnPlus_Click();
  EXPECT_EQ(editor().Formula.text(), "Holzart IN ('FI', 'KI')");
  editor().cboValue.set_text("BU");
  editor().btnMinus_Click();
  EXPECT_EQ(editor().Formula.text(), "Holzart IN ('FI', 'KI')");
  editor().cboValue.set_text("FI");
  editor().btnMinus_Click();
  EXPECT_EQ(editor().Formula.text(), "Holzart IN ('KI')");
  editor().cboValue.set_text("KI");
  editor().btnMinus_Click();
  EXPECT_EQ(editor().Formula.text(), "Holzart IN ()");
}

TEST_F(CriteriaList, ListsOfUmlautsAreCutBetweenCharacters) {
  host_.compose("Artname", "IN", "\u00c4");
  editor().btnPlus_Click();
  editor().cboValue.set_text("\u00d6");
  editor().btnPlus_Click();
  EXPECT_EQ(editor().Formula.text(), "Artname IN ('\u00c4', '\u00d6')");
  editor().btnMinus_Click();
  EXPECT_EQ(editor().Formula.text(), "Artname IN ('\u00c4')");
}

TEST_F(CriteriaList, MinusPrefersTheValueBehindACommaAndCutsItsFirstOccurrence) {
  host_.compose("Anzahl", "IN", "1");
  for (const char* value : {"1", "2", "1", "3", "1"}) {  // duplicates are taken
    editor().cboValue.set_text(value);
    editor().btnPlus_Click();
  }
  EXPECT_EQ(editor().value_text(), "(1, 2, 1, 3, 1)");
  editor().btnMinus_Click();  // still 1
  EXPECT_EQ(editor().value_text(), "(1, 2, 3, 1)");
  editor().btnMinus_Click();
  EXPECT_EQ(editor().value_text(), "(1, 2, 3)");
  editor().btnMinus_Click();
  EXPECT_EQ(editor().value_text(), "(2, 3)");
}

TEST_F(CriteriaList, PlusAndMinusNeedAValueAndPlusAListWithoutTheNickname) {
  host_.compose("Holzart", "IN", "HA1");  // holds the nickname HA
  editor().btnPlus_Click();
  editor().cboValue.set_text("FI");
  host_.forget();
  editor().btnPlus_Click();
  EXPECT_EQ(editor().value_text(), "('HA1')");
  EXPECT_THAT(*host_.log, IsEmpty());
  editor().cboValue.set_text("");
  editor().btnMinus_Click();
  EXPECT_EQ(editor().value_text(), "('HA1')");
  EXPECT_THAT(*host_.log, IsEmpty());
}

TEST_F(CriteriaList, PlusWithoutAValueOrWithoutAListDoesNothing) {
  host_.compose("Holzart", "IN", "FI");
  editor().btnPlus_Click();
  editor().cboValue.set_text("");
  const auto expect_ignored = [&](const std::string& value, const std::string& formula) {
    host_.forget();
    editor().btnPlus_Click();
    EXPECT_EQ(editor().value_text(), value);
    EXPECT_EQ(editor().Formula.text(), formula);
    EXPECT_THAT(*host_.log, IsEmpty());
  };
  expect_ignored("('FI')", "Holzart IN ('FI')");
  host_.pick(editor().cboField, "Anzahl");
  editor().cboValue.set_text("3");  // typed, and not yet confirmed
  expect_ignored("", "Anzahl = ");
}

// What the number formatter answers to a number can be told from what the user typed; a list is no
// number.
std::string marked(std::string_view number) {
  const std::string text(number);
  return text.starts_with('(') ? text : "N[" + text + "]";
}

TEST_F(CriteriaList, DecimalNumbersOfAListAreWrittenForTheServer) {
  host_.suite->answers().format = marked;
  host_.compose("Menge", "IN", "1,5");
  EXPECT_EQ(editor().value_text(), "()");
  host_.forget();
  editor().btnPlus_Click();
  EXPECT_THAT(host_.suite->calls_of("format"), ElementsAre("format('1,5', ' ')"));
  EXPECT_EQ(editor().Formula.text(), "Menge IN (N[1,5])");
  editor().cboValue.set_text("2,25");
  editor().btnPlus_Click();
  EXPECT_EQ(editor().Formula.text(), "Menge IN (N[1,5], N[2,25])");
  editor().cboValue.set_text("3");  // reads the same for the server
  editor().btnPlus_Click();
  EXPECT_EQ(editor().Formula.text(), "Menge IN (N[1,5], N[2,25], 3)");
  editor().cboValue.set_text("1,5");
  editor().btnMinus_Click();
  EXPECT_EQ(editor().Formula.text(), "Menge IN (N[2,25], 3)");
  editor().btnInsert_Click();
  EXPECT_THAT(host_.lines(), ElementsAre("Menge IN (N[2,25], 3)"));
}

TEST_F(CriteriaList, OtherValuesOfAListStayAsTheyAre) {
  host_.suite->answers().format = marked;
  host_.compose("Holzart", "IN", "1,5");
  editor().btnPlus_Click();
  EXPECT_EQ(editor().Formula.text(), "Holzart IN ('1,5')");
  host_.compose("Anzahl", "IN", "1,5");
  editor().btnPlus_Click();
  EXPECT_EQ(editor().Formula.text(), "Anzahl IN (1,5)") << "a whole number has no decimals";
  module_state().strDecimalSep = ".";
  host_.compose("Menge", "IN", "1.5");
  editor().btnPlus_Click();
  EXPECT_EQ(editor().Formula.text(), "Menge IN (1.5)");
  EXPECT_THAT(host_.suite->calls_of("format"), IsEmpty());
}

// A host or a view may call them whatever state they are in.
TEST_F(CriteriaList, PlusAndMinusActOnListsOfInOnly) {
  for (const char* op : {"=", "<>", "LIKE"}) {
    host_.compose("Holzart", op, "FI");
    for (const auto button : {&F_Selection::btnPlus_Click, &F_Selection::btnMinus_Click}) {
      editor().btnPlus.set_enabled(true);
      editor().btnMinus.set_enabled(true);
      host_.forget();
      (editor().*button)();
      EXPECT_EQ(editor().Formula.text(), "Holzart " + std::string(op) + " 'FI'");
      EXPECT_EQ(editor().value_text(), "'FI'");
      EXPECT_THAT(*host_.log, IsEmpty());
    }
  }
}

TEST(CriteriaListOfACatalogueRelation, InListsAreBuiltWithoutANickname) {
  EditorHost host;
  host.open_catalogue("1WL", "1WL", {{"Holzart", 5}});
  host.answer_values(
      "SELECT DISTINCT EXPR(TRANSPORT,5) FROM <TRANSPORT,0,><TRANSPORT,5,R7> WHERE  "
      "{TRANSPORTLOGISTIK_KOPF,7} ORDER BY 1",
      {"FI", "KI"});
  host.compose("Holzart", "IN", "FI");
  host.editor->btnPlus_Click();
  host.editor->cboValue.set_text("KI");
  host.editor->btnPlus_Click();
  EXPECT_EQ(host.editor->Formula.text(), "Holzart IN ('FI', 'KI')");
  host.editor->btnInsert_Click();
  EXPECT_EQ(host.editor->ListCriteria.entries(),
            (std::vector<ListEntry>{{"Holzart IN ('FI', 'KI')", 5}}));
}

TEST(CriteriaListOfACatalogueRelation, KnowsNoNicknameOfARelationBefore) {
  EditorHost host;
  host.open_sonst();
  host.pick(host.editor->cboField, "Holzart");  // nickname HA
  host.open_catalogue("1WL", "1WL", {{"Ort", 5}});
  host.answer_values(
      "SELECT DISTINCT EXPR(TRANSPORT,5) FROM <TRANSPORT,0,><TRANSPORT,5,R7> WHERE  "
      "{TRANSPORTLOGISTIK_KOPF,7} ORDER BY 1",
      {"HAU"});
  host.compose("Ort", "IN", "HAU");
  host.editor->btnPlus_Click();
  host.editor->cboValue.set_text("AU");
  host.editor->btnPlus_Click();
  EXPECT_EQ(host.editor->Formula.text(), "Ort IN ('HAU', 'AU')");
}

// --- Navigation and moving

TEST_F(CriteriaList, navigation) {
  fill_lines(3);
  struct Step {
    void (F_Selection::*handler)();
    int from;
    int to;
  };
  const Step steps[] = {
      {&F_Selection::btnFirst_Click, 2, 0}, {&F_Selection::btnFirst_Click, 0, 0},
      {&F_Selection::btnPrev_Click, 2, 1},  {&F_Selection::btnPrev_Click, 0, 0},
      {&F_Selection::btnNext_Click, 0, 1},  {&F_Selection::btnNext_Click, 2, 2},
      {&F_Selection::btnLast_Click, 0, 2},  {&F_Selection::btnLast_Click, 2, 2},
  };
  for (const Step& step : steps) {
    list().set_index(step.from);
    (editor().*step.handler)();
    EXPECT_EQ(list().index(), step.to);
  }
}

TEST_F(CriteriaList, NavigationInAnEmptyListSelectsNothing) {
  for (const auto handler : {&F_Selection::btnFirst_Click, &F_Selection::btnPrev_Click,
                             &F_Selection::btnNext_Click, &F_Selection::btnLast_Click}) {
    (editor().*handler)();
    EXPECT_EQ(list().index(), -1);
  }
}

TEST_F(CriteriaList, LastInAnEmptyListClearsWhatThePickersShow) {
  editor().Formula.set_text("stale");
  editor().cboValue.set_text("stale");
  editor().btnLast_Click();
  expect_pickers("", "", "", "");
}

TEST_F(CriteriaList, NextWithNothingSelectedSelectsTheFirstLine) {
  fill_lines(2);
  editor().btnNext_Click();
  EXPECT_EQ(list().index(), 0);
}

TEST_F(CriteriaList, UpAndDownCarryTheItemData) {
  host_.fill_lines({{"Anzahl = 1", 1}, {"Anzahl = 2", 2}, {"Anzahl = 3", 3}});
  list().set_index(2);
  editor().cmdUp_Click();
  EXPECT_EQ(list().entries(),
            (std::vector<ListEntry>{{"Anzahl = 1", 1}, {"Anzahl = 3", 3}, {"Anzahl = 2", 2}}));
  EXPECT_EQ(list().index(), 1);
  editor().cmdUp_Click();
  EXPECT_EQ(list().index(), 0);
  editor().cmdUp_Click();  // at the top
  editor().cmdDown_Click();
  editor().cmdDown_Click();
  EXPECT_EQ(list().entries(),
            (std::vector<ListEntry>{{"Anzahl = 1", 1}, {"Anzahl = 2", 2}, {"Anzahl = 3", 3}}));
  EXPECT_EQ(list().index(), 2);
  editor().cmdDown_Click();  // at the end
  EXPECT_EQ(list().index(), 2);
  expect_pickers("Anzahl", "=", "3", "Anzahl = 3");
}

TEST_F(CriteriaList, MovingWithoutASelectedLineChangesNothing) {
  fill_lines(2);
  editor().cmdUp_Click();
  editor().cmdDown_Click();
  EXPECT_EQ(list().index(), -1);
  EXPECT_EQ(list().count(), 2);
}

TEST_F(CriteriaList, TheMoveButtonsFollowTheSelection) {
  fill_lines(3);
  const auto state = [&](int index) {
    list().set_index(index);
    return std::pair(editor().cmdUp.enabled(), editor().cmdDown.enabled());
  };
  EXPECT_EQ(state(0), std::pair(false, true));
  EXPECT_EQ(state(1), std::pair(true, true));
  EXPECT_EQ(state(2), std::pair(true, false));
  list().clear();
  EXPECT_EQ(state(-1), std::pair(false, false));
}

TEST_F(CriteriaList, AMoveThatFailsIsSilent) {
  fill_three();
  host_.connection->clear_log();
  host_.connection->fail_from_call(1);
  editor().cmdUp_Click();
  EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 2", "Anzahl = 1", "Anzahl = 3"));
  EXPECT_EQ(list().index(), 0);
  editor().cmdDown_Click();
  EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 1", "Anzahl = 2", "Anzahl = 3"));
  EXPECT_EQ(list().index(), 1);
  host_.connection->fail_on_call(0);
  EXPECT_EQ(host_.user->pointer(), PointerShape::kDefault);
}

// Each call that shows the moved line fails once. Selecting a line shows the same, and there some
// of these failures reach the caller.
TEST(CriteriaListMoves, AreSilentWhateverFails) {
  struct Moving : EditorHost {
    Moving() {
      suite->answers().format = [](std::string_view number) { return std::string(number); };
      open_sonst();
      fill_lines({{"Menge = 1,5", 12}, {"Menge = 2", 12}, {"Menge = 1,5", 12}});
      editor->ListCriteria.set_index(1);
      forget();
    }
  };
  struct Move {
    void (F_Selection::*handler)();
    int target;
  };
  for (const Move& move :
       {Move{&F_Selection::cmdUp_Click, 0}, Move{&F_Selection::cmdDown_Click, 2}}) {
    Moving whole;
    const std::size_t services = whole.suite->calls_made();
    (whole.editor.get()->*move.handler)();
    const std::size_t database_calls = whole.connection->calls_made();
    const std::size_t calls = database_calls + whole.suite->calls_made() - services;
    int needed = 0;
    for (std::size_t k = 1; k <= calls; ++k) {
      SCOPED_TRACE(k);
      const auto fail = [&](Moving& host) {
        host.connection->fail_on_call(k <= database_calls ? k : 0);
        host.suite->fail_on_call(
            k <= database_calls ? 0 : host.suite->calls_made() + k - database_calls);
      };
      Moving host;
      fail(host);
      EXPECT_NO_THROW((host.editor.get()->*move.handler)());
      EXPECT_EQ(host.lines()[static_cast<std::size_t>(move.target)], "Menge = 2");
      EXPECT_EQ(host.editor->ListCriteria.index(), move.target);
      EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);

      Moving other;
      const ListEntry line = other.editor->ListCriteria.entries()[1];
      other.editor->ListCriteria.set_entry_text(move.target, line.text);
      fail(other);
      try {
        other.editor->ListCriteria.set_index(move.target);
        other.editor->SetListButtons();
      } catch (const Error&) {
        ++needed;
      }
    }
    EXPECT_GT(needed, 0) << "nothing would show that a move ignores errors";
  }
}

TEST_F(CriteriaList, OnlyTheLeftButtonDrags) {
  editor().ListCriteria_MouseMove(2);
  EXPECT_FALSE(list().is_dragging);
  editor().ListCriteria_MouseMove(1);
  EXPECT_TRUE(list().is_dragging);
}

TEST_F(CriteriaList, ADroppedLineGoesToTheRowUnderItAndLosesItsItemData) {
  host_.fill_lines({{"Anzahl = 1", 1}, {"Anzahl = 2", 2}, {"Anzahl = 3", 3}, {"Anzahl = 4", 4}});
  list().row_height = 15.4;  // 15
  list().top_index = 1;
  list().set_index(0);
  editor().ListCriteria_DragDrop(list(), 0, 29.6);  // 30: the second visible row
  EXPECT_EQ(list().entries(),
            (std::vector<ListEntry>{
                {"Anzahl = 2", 2}, {"Anzahl = 3", 3}, {"Anzahl = 4", 4}, {"Anzahl = 1", 0}}));
  EXPECT_EQ(list().index(), 3);
  expect_pickers("Anzahl", "=", "1", "Anzahl = 1");
}

TEST_F(CriteriaList, ALineDroppedOnItselfStaysAsItIs) {
  fill_three();
  list().row_height = 10;
  host_.forget();
  editor().ListCriteria_DragDrop(list(), 0, 14.4);
  EXPECT_EQ(list().item_data(1), 11);
  EXPECT_THAT(*host_.log, IsEmpty());
}

TEST_F(CriteriaList, ALineDroppedBelowTheEndIsTheLastOne) {
  fill_three();
  editor().ListCriteria_DragDrop(list(), 0, 50);
  EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 1", "Anzahl = 3", "Anzahl = 2"));
  EXPECT_EQ(list().item_data(2), 0);
  EXPECT_EQ(list().index(), 2);
}

// It is not its own row: the line is taken out and put in again.
TEST_F(CriteriaList, TheLastLineDroppedBelowTheEndLosesItsItemData) {
  fill_three();
  list().set_index(2);
  editor().Formula.set_text("stale");
  editor().ListCriteria_DragDrop(list(), 0, 3);
  EXPECT_EQ(list().entries(),
            (std::vector<ListEntry>{{"Anzahl = 1", 11}, {"Anzahl = 2", 11}, {"Anzahl = 3", 0}}));
  EXPECT_EQ(list().index(), 2);
  expect_pickers("Anzahl", "=", "3", "Anzahl = 3");
}

TEST_F(CriteriaList, ALineDroppedAboveTheListIsTheFirstOne) {
  fill_three();
  editor().ListCriteria_DragDrop(list(), 0, -7);
  EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 2", "Anzahl = 1", "Anzahl = 3"));
  EXPECT_EQ(list().index(), 0);
}

TEST_F(CriteriaList, ADropOfAnotherControlOrOnAnEmptyListDoesNothing) {
  host_.forget();
  editor().ListCriteria_DragDrop(list(), 0, 0);
  fill_three();
  host_.forget();
  editor().ListCriteria_DragDrop(editor().cboField, 0, 0);
  EXPECT_THAT(*host_.log, IsEmpty());
  EXPECT_EQ(list().index(), 1);
}

TEST_F(CriteriaList, ADropWithNothingSelectedSelectsTheFirstLine) {
  fill_lines(2);
  editor().ListCriteria_DragDrop(list(), 0, 1);
  EXPECT_EQ(list().index(), 0);
  EXPECT_EQ(list().count(), 2);
}

// --- Showing a line

TEST_F(CriteriaList, ALineIsLoadedIntoThePickers) {
  struct Line {
    const char* text;
    const char* field;
    const char* op;
    const char* value;
  };
  for (const Line& line :
       {Line{"Menge >= 10", "Menge", ">=", "10"}, Line{"Menge <> 10", "Menge", "<>", "10"},
        Line{"Holzart LIKE 'A%'", "Holzart", "LIKE", "A%"},
        Line{"Holzart = 'A = B'", "Holzart", "=", "A = B"},
        Line{"Holzart = 'x", "Holzart", "=", "x"}, Line{"Holzart = x'", "Holzart", "=", "x'"},
        Line{"Holzart IN ('FI', 'KI')", "Holzart", "IN", ""},
        Line{"Holzart = Null", "Holzart", "=", "Null"}}) {
    SCOPED_TRACE(line.text);
    list().clear();
    list().add(line.text);
    list().pick(0);
    expect_pickers(line.field, line.op, line.value, line.text);
  }
}

// Operators that are words stand between blanks, so that a name may hold their letters.
TEST(CriteriaListNames, ThatHoldTheWordsOfOperatorsAreNotCut) {
  EditorHost host;
  const auto open_with = [&host](const std::string& relation, const std::vector<ListEntry>& names) {
    std::vector<OfferedField> offered;
    for (const ListEntry& name : names) {
      const std::string column = "F" + std::to_string(name.item_data);
      offered.push_back(
          {{.id = name.item_data, .name = column, .nickname = column, .table = "LAGER"},
           name.text});
      host.answer_values(plain_query(column), {});
    }
    host.answer_fields(relation, offered);
    host.open(relation);
  };
  const std::vector<ListEntry> fields = {
      {"KLEIN INNEN", 1}, {"INhalt", 2}, {"LIKELY", 3}, {"a LIKElihood", 4}, {"xLIKE", 5}};
  open_with("NAMEN", fields);
  F_Selection& editor = *host.editor;
  for (const ListEntry& field : fields) {
    for (const auto& [op, value] : std::initializer_list<std::pair<const char*, const char*>>{
             {"=", "A"}, {"LIKE", "A%"}, {"IN", ""}}) {
      const std::string line = field.text + " " + op +
                               (*value == '\0' ? " ('A', 'B')" : " '" + std::string(value) + "'");
      SCOPED_TRACE(line);
      editor.ListCriteria.clear();
      editor.ListCriteria.add(line);
      editor.ListCriteria.set_index(0);
      EXPECT_EQ(editor.cboField.text(), field.text);
      EXPECT_EQ(editor.cboOperator.text(), op);
      EXPECT_EQ(editor.cboValue.text(), value);
      EXPECT_EQ(editor.Formula.text(), line);
    }
  }
  // A word between blanks is an operator, wherever it stands: the first one counts.
  open_with("WORTE", {{"Anteil IN Prozent", 1}, {"Anteil", 2}});
  editor.ListCriteria.add("Anteil IN Prozent = 5");
  editor.ListCriteria.set_index(0);
  EXPECT_EQ(editor.cboField.text(), "Anteil");
  EXPECT_EQ(editor.cboOperator.text(), "IN");
}

TEST_F(CriteriaList, ADoubleClickShowsTheLineToo) {
  fill_three();
  editor().Formula.set_text("stale");
  list().double_click();
  EXPECT_EQ(editor().Formula.text(), "Anzahl = 2");
}

TEST_F(CriteriaList, AnOrLineLeavesThePickersEmpty) {
  host_.fill_lines({{"Anzahl = 1", 11}, {kOr, -2}});
  list().set_index(0);
  list().set_index(1);
  expect_pickers("", "", "", "");
  EXPECT_EQ(editor().cboField.index(), -1);
}

TEST_F(CriteriaList, ALineWhoseFieldIsNoLongerOfferedStillShows) {
  host_.fill_lines({{"Alter Name = 'x'", 99}});
  list().set_index(0);
  EXPECT_EQ(editor().cboField.index(), -1);
  EXPECT_EQ(editor().cboValue.text(), "x");
  EXPECT_EQ(editor().Formula.text(), "Alter Name = 'x'");
}

TEST_F(CriteriaList, ALineWhoseOperatorIsNoLongerOfferedStillShows) {
  host_.fill_lines({{"Anzahl LIKE 5", 11}});
  list().set_index(0);
  expect_pickers("Anzahl", "", "5", "Anzahl LIKE 5");
}

TEST_F(CriteriaList, WithLinesAndNothingSelectedTheFirstLineIsShown) {
  fill_lines(2);
  editor().SetListButtons();
  EXPECT_EQ(list().index(), 0);
  EXPECT_TRUE(editor().cmdDown.enabled());
  expect_pickers("Anzahl", "=", "1", "Anzahl = 1");
}

TEST_F(CriteriaList, ShowingALineRunsTheClickOfEveryPicker) {
  host_.fill_lines({{kOr, -2}});
  host_.compose("Holzart", "=", "FI");
  host_.forget();
  list().set_index(0);
  // The field is deselected under the busy pointer; without a field nothing is asked.
  EXPECT_THAT(*host_.log, ElementsAre("pointer hourglass", "pointer default"));
  EXPECT_FALSE(editor().btnPlus.enabled());
}

// --- Limit

TEST_F(CriteriaList, Holds32767LinesAndRefusesTheNext) {
  fill_lines(32766);
  host_.compose("Anzahl", "=", "2");
  editor().btnInsert_Click();
  ASSERT_EQ(list().count(), 32767);
  EXPECT_EQ(list().index(), 0);
  const std::vector<ListEntry> full = list().entries();
  EXPECT_THROW(editor().btnInsert_Click(), Overflow);
  EXPECT_THROW(editor().btnOr_Click(), Overflow);
  EXPECT_TRUE(list().entries() == full);
  EXPECT_EQ(list().index(), 0);
}

TEST_F(CriteriaList, AFullListCannotBeMoved) {
  fill_lines(32766);
  list().add("Anzahl = 2");
  list().set_item_data(32766, 11);
  const std::vector<ListEntry> full = list().entries();
  const auto expect_unmoved = [&](int index, void (F_Selection::*move)()) {
    list().set_index(index);
    (editor().*move)();  // moves swallow all errors
    EXPECT_TRUE(list().entries() == full);
    EXPECT_EQ(list().index(), index);
  };
  expect_unmoved(32766, &F_Selection::cmdUp_Click);
  expect_unmoved(32765, &F_Selection::cmdDown_Click);
}

// --- Failures

TEST_F(CriteriaList, AFailingFieldChangeIsTrappedWhileALineIsShown) {
  fill_three();
  list().set_index(0);
  host_.connection->clear_log();
  host_.connection->fail_on_call(1);
  list().set_index(1);
  EXPECT_EQ(editor().cboField.index(), -1);
  EXPECT_EQ(editor().Formula.text(), "Anzahl = 2");
  EXPECT_EQ(host_.user->pointer(), PointerShape::kDefault);
  host_.connection->fail_on_call(0);
  list().set_index(2);
  expect_pickers("Anzahl", "=", "3", "Anzahl = 3");
}

TEST(CriteriaListFailures, EveryFailureOfInsertingIsSurvived) {
  expect_failures_to_be_survived(
      [](EditorHost& host) {
        host.open_sonst();
        host.compose("Menge", ">=", "10");
      },
      [](F_Selection& editor) { editor.btnInsert_Click(); }, ShowsALine::kYes);
}

TEST(CriteriaListFailures, EveryFailureOfPlusIsSurvived) {
  expect_failures_to_be_survived(
      [](EditorHost& host) {
        host.open_sonst();
        host.compose("Artname", "IN", "Buche");
      },
      [](F_Selection& editor) {
        try {
          editor.btnPlus_Click();
        } catch (const DatabaseError&) {
          EXPECT_EQ(editor.value_text(), "()");
          throw;
        }
      });
}

}  // namespace
}  // namespace kestrova::test
