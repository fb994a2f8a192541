// The pickers: fields, the operators of their types, and their values.
#include <gmock/gmock.h>

#include <map>

#include "editor/catalogue_values.h"
#include "platform/error.h"
#include "tests/editor/editor_host.h"
#include "tests/editor/failure_sweep.h"

namespace kestrova::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class Pickers : public testing::Test {
 protected:
  Pickers() { host_.open_sonst(); }

  void pick_field(std::string_view field) { host_.pick(editor().cboField, field); }
  std::vector<std::string> values() { return host_.texts_of(editor().cboValue); }
  std::vector<std::string> operators() { return host_.texts_of(editor().cboOperator); }
  const std::string& formula() { return editor().Formula.text(); }
  F_Selection& editor() { return *host_.editor; }

  EditorHost host_;
};

// One field "Feld" of the main table.
struct OneField : EditorHost {
  OneField(std::string nickname, FieldType type) {
    SelektionRow row;
    row.id = 20;
    row.name = "SPALTE";
    row.nickname = Value(nickname);
    row.table = "LAGER";
    answer_fields("SONST", {{row, "Feld", "", type}});
    answer_values(plain_query("SPALTE"), {"x"});
    open("SONST");
  }
};

// --- Fields

TEST_F(Pickers, TheFieldListShowsTheCustomisedNameBeforeTheGeneralOne) {
  EXPECT_THAT(host_.texts_of(editor().cboField),
              ElementsAre("Holzart", "Anzahl", "Menge", "Datum", "Gesperrt", "Artname", "Gruppe",
                          "RINDEPROZENT", "DM/EURO", "Kreuz"));
}

TEST_F(Pickers, ChoosingAFieldAsksInThisOrder) {
  pick_field("Holzart");
  EXPECT_THAT(
      host_.calls(),
      ElementsAre(
          "pointer hourglass",
          "open SELECT NICKNAME_OF_FIELD FROM SELEKTION WHERE ID_SELEKTION = 10 [forward-only, "
          "read-only]",
          "#4 close",
          "open SELECT HA FROM HOLZART WHERE ISNULL(DISABLE,0) = 0 ORDER BY HA [forward-only, "
          "read-only]",
          // Before the first value: is it an ordinary field of the main table?
          "#2 move_first", "#2 find NICKNAME_OF_FIELD = 'HA'", "#5 move_next", "#5 move_next",
          "#5 move_next", "#5 close",
          // The type, for the operators
          "#2 move_first", "#2 find ID_SELEKTION = 10",
          "open SELECT TOP 0 HA FROM LAGER [forward-only, read-only]", "#6 type HA", "#6 close",
          // The first operator is selected and converts the value.
          "#2 move_first", "#2 find NICKNAME_OF_FIELD = 'HA'",
          "open LAGER [forward-only, read-only]", "#7 type HA", "#7 close", "pointer default"));
  EXPECT_THAT(values(), ElementsAre("Null", "BU", "FI", "KI"));
  EXPECT_EQ(editor().cboOperator.text(), "=");
  EXPECT_EQ(editor().value_text(), "");
  EXPECT_EQ(formula(), "Holzart = ");
}

TEST_F(Pickers, ChoosingNoFieldOnlyShowsTheBusyPointer) {
  pick_field("Holzart");
  host_.forget();
  editor().cboField.set_index(-1);
  EXPECT_THAT(*host_.log, ElementsAre("pointer hourglass", "pointer default"));
  EXPECT_THAT(values(), ElementsAre("Null", "BU", "FI", "KI"));
  EXPECT_EQ(formula(), "Holzart = ");
}

TEST_F(Pickers, AnotherFieldDropsTheValue) {
  host_.compose("Holzart", "=", "FI");
  pick_field("Anzahl");
  EXPECT_EQ(editor().cboValue.text(), "");
  EXPECT_EQ(formula(), "Anzahl = ");
  host_.compose("Holzart", "IN", "FI");
  editor().btnPlus_Click();
  pick_field("Anzahl");
  EXPECT_EQ(formula(), "Anzahl = ");
}

TEST(PickersOfWellKnownFields, HaveAValueQueryEachWhateverTheCaseOfTheNickname) {
  std::map<std::string, std::string> queries = {
      {"HA", "SELECT HA FROM HOLZART WHERE ISNULL(DISABLE,0) = 0 ORDER BY HA"},
      {"HS", "SELECT HS FROM HOLZSORTE ORDER BY HS"},
      {"GKL", "SELECT GKL FROM GUETEKLASSE ORDER BY GKL"},
      {"STKL", "SELECT STKL FROM STKL ORDER BY STKL"},
      {"NA", "SELECT NA FROM NUTZUNGSART ORDER BY NA"},
      {"KA", "SELECT KA FROM KALAMITAET ORDER BY KA"},
      {"LAUB/NADEL", "SELECT DISTINCT LNH FROM HOLZART ORDER BY LNH"},
      {"SORTIMENT", "SELECT NAME FROM DSART ORDER BY 1"},
      {"RELTABLE 0", plain_query("SPALTE")},
      {"RELTABLE 11", plain_query("SPALTE")},
      {"HA ", plain_query("SPALTE")},
      {"reltable 7", "SELECT KURZNAME FROM RELTABLE WHERE RELTABLE_ID = 7 ORDER BY KURZNAME"},
      {"Sortiment", "SELECT NAME FROM DSART ORDER BY 1"}};
  for (int key = 1; key <= 10; ++key) {
    queries["RELTABLE " + std::to_string(key)] =
        "SELECT KURZNAME FROM RELTABLE WHERE RELTABLE_ID = " + std::to_string(key) +
        " ORDER BY KURZNAME";
  }
  for (const auto& [nickname, query] : queries) {
    SCOPED_TRACE(nickname);
    OneField host(nickname, FieldType::kVarWChar);
    host.answer_values(query, {"a", "b"});
    host.pick(host.editor->cboField, "Feld");
    EXPECT_EQ(host.connection->statements()[1], query);
    EXPECT_THAT(host.texts_of(host.editor->cboValue), testing::Not(IsEmpty()));
  }
}

TEST_F(Pickers, AFieldOfOneJoinedTableListsItsValuesWithoutNull) {
  pick_field("Artname");
  EXPECT_EQ(host_.connection->statements()[1], kInnerValues);
  EXPECT_THAT(values(), ElementsAre("Buche", "Fichte"));
}

TEST_F(Pickers, AFieldOfTwoJoinedTablesListsItsValuesWithoutNull) {
  pick_field("Gruppe");
  EXPECT_EQ(host_.connection->statements()[1], kTripleValues);
  EXPECT_THAT(values(), ElementsAre("Laub", "Nadel"));
}

TEST_F(Pickers, AnUnknownJoinKindIsToldAndLeavesThePointerBusy) {
  pick_field("Gesperrt");
  host_.user->expect_message(
      {"Debug: Unhandled parameter in SELECT CASE at function cboField_Click in "
       "Kestrova_Sel.F_Selection",
       0, "Kestrova", "", 0});
  pick_field("Kreuz");
  EXPECT_EQ(host_.user->pointer(), PointerShape::kHourglass);
  EXPECT_THAT(values(), IsEmpty());
  EXPECT_THAT(operators(), IsEmpty());
  editor().cboValue.set_text("x");
  editor().btnInsert_Click();
  EXPECT_EQ(editor().ListCriteria.count(), 0) << "nothing can be composed";
  pick_field("Anzahl");
  EXPECT_EQ(host_.user->pointer(), PointerShape::kDefault);
  EXPECT_THAT(values(), ElementsAre("Null", "1", "2"));
}

TEST(PickersOfValues, RowsWithoutTextAreLeftOutAndNullComesBeforeTheFirstValue) {
  OneField host("GKL", FieldType::kVarWChar);
  host.answer_values("SELECT GKL FROM GUETEKLASSE ORDER BY GKL", {Value(), "", "  ", "A", " B "});
  host.pick(host.editor->cboField, "Feld");
  EXPECT_THAT(host.texts_of(host.editor->cboValue), ElementsAre("Null", "A", " B "));
}

TEST(PickersOfValues, WithoutValuesThereIsNoNullEither) {
  OneField host("GKL", FieldType::kVarWChar);
  host.answer_values("SELECT GKL FROM GUETEKLASSE ORDER BY GKL", {Value(), " "});
  host.pick(host.editor->cboField, "Feld");
  EXPECT_THAT(host.texts_of(host.editor->cboValue), IsEmpty());
}

// What is read back as typed stands as the user types it; all else goes to the server as it stands.
TEST(PickersOfValues, DatesAndBooleansAreTheUsersTextsAndAllElseTheServers) {
  const auto entries = [](FieldType type, const Value& value) {
    OneField host("GKL", type);
    host.answer_values("SELECT GKL FROM GUETEKLASSE ORDER BY GKL", {value});
    host.pick(host.editor->cboField, "Feld");
    return host.texts_of(host.editor->cboValue);
  };
  EXPECT_THAT(entries(FieldType::kDBTimeStamp, DateTime{2024, 2, 29}),
              ElementsAre("Null", "29.02.2024"));
  EXPECT_THAT(entries(FieldType::kBoolean, true), ElementsAre("Null", "Wahr"));
  EXPECT_THAT(entries(FieldType::kBoolean, false), ElementsAre("Null", "Falsch"));
  EXPECT_THAT(entries(FieldType::kUnsignedTinyInt, true), ElementsAre("Null", "1"));
  EXPECT_THAT(entries(FieldType::kDouble, 1.5), ElementsAre("Null", "1.5"));
  EXPECT_THAT(entries(FieldType::kNumeric, Decimal{"2.50"}), ElementsAre("Null", "2.50"));
}

TEST_F(Pickers, TheUnitFieldsListUnits) {
  pick_field("RINDEPROZENT");
  EXPECT_THAT(values(), ElementsAre("'%'", "'cm'"));
  pick_field("DM/EURO");
  EXPECT_THAT(values(), ElementsAre("EURO", "DM"));
}

TEST(PickersOfValues, OfATableWithoutRestrictionAreThoseOfAllItsRows) {
  EditorHost host;
  host.suite->answers().has_restrictions = false;
  host.connection->answer(
      "SELECT MODELS.ID,MODELS.NAME FROM MODELS LEFT JOIN ACCESS_LEVELS ON MODELS.ID_ACCESS_LEVELS "
      "= ACCESS_LEVELS.ID WHERE MODELS.RELATION = 'SONST' ORDER BY MODELS.NAME,MODELS.ID",
      {{"ID", FieldType::kInteger}, {"NAME"}});
  const std::map<std::string, std::string> queries = {
      {"Anzahl", "SELECT DISTINCT LAGER.ANZAHL FROM LAGER ORDER BY 1"},
      {"Artname",
       "SELECT DISTINCT HOLZART.NAME AS FVALUE FROM LAGER INNER JOIN HOLZART ON LAGER.ID_HA = "
       "HOLZART.ID ORDER BY 1"},
      {"Gruppe",
       "SELECT DISTINCT HOLZART.NAME AS FVALUE FROM LAGER INNER JOIN (HOLZART INNER JOIN GRUPPE ON "
       "HOLZART.ID_GR = GRUPPE.ID) ON LAGER.ID_HA = HOLZART.ID ORDER BY 1"}};
  for (const auto& [field, query] : queries) host.answer_values(query, {"1"});
  host.open_sonst();
  for (const auto& [field, query] : queries) {
    SCOPED_TRACE(field);
    host.forget();
    host.pick(host.editor->cboField, field);
    EXPECT_EQ(host.connection->statements()[1], query);
    EXPECT_EQ(host.editor->cboValue.entries().back().text, "1");
  }
}

// --- Operators

TEST(PickersOfTypes, OfferTheOperatorsOfEveryTypeCode) {
  const std::vector<std::string> compared = {"=", ">", "<", ">=", "<=", "<>"};
  const auto with = [&](std::vector<std::string> further) {
    further.insert(further.begin(), compared.begin(), compared.end());
    return further;
  };
  std::map<int, std::vector<std::string>> expected;
  for (const int code : {8, 129, 130, 200, 202, 1001}) expected[code] = with({"LIKE", "IN"});
  for (const int code : {201, 203}) expected[code] = with({"LIKE"});
  for (const int code : {7, 133, 134, 135}) expected[code] = with({"IN"});
  for (const int code : {2, 3, 4, 5, 14, 16, 17, 18, 19, 20, 21, 131, 139}) {
    expected[code] = with({"IN"});
  }
  expected[11] = {"="};

  std::vector<int> codes(211);
  for (int code = 0; code <= 210; ++code) codes[static_cast<std::size_t>(code)] = code;
  codes.push_back(1001);
  for (const int code : codes) {
    SCOPED_TRACE(code);
    OneField host("SPALTE", static_cast<FieldType>(code));
    const bool known = expected.count(code) == 1;
    if (!known) host.user->expect_message({"Unknow data type!", 0, "Kestrova", "", 0});
    host.pick(host.editor->cboField, "Feld");
    EXPECT_THAT(host.texts_of(host.editor->cboOperator), ElementsAreArray(expected[code]));
    EXPECT_EQ(host.editor->cboOperator.index(), known ? 0 : -1);
    EXPECT_EQ(host.editor->Formula.text(), known ? "Feld = " : "Feld  ");
    EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
    host.user->verify();
  }
}

TEST_F(Pickers, InStartsAnEmptyListAndAnotherOperatorConvertsTheValue) {
  host_.compose("Holzart", "=", "FI");
  EXPECT_EQ(formula(), "Holzart = 'FI'");
  EXPECT_FALSE(editor().btnPlus.enabled());
  EXPECT_FALSE(editor().btnMinus.enabled());
  host_.forget();
  host_.pick(editor().cboOperator, "IN");
  EXPECT_THAT(*host_.log, IsEmpty());
  EXPECT_EQ(formula(), "Holzart IN ()");
  EXPECT_TRUE(editor().btnPlus.enabled());
  EXPECT_TRUE(editor().btnMinus.enabled());
  editor().btnPlus_Click();
  host_.pick(editor().cboOperator, "IN");  // drops the list
  EXPECT_EQ(formula(), "Holzart IN ()");
  host_.pick(editor().cboOperator, "<>");
  EXPECT_EQ(formula(), "Holzart <> 'FI'");
  EXPECT_FALSE(editor().btnPlus.enabled());
  EXPECT_FALSE(editor().btnMinus.enabled());
}

// --- Values

TEST_F(Pickers, APickedValueIsConvertedByTheTypeOfItsColumn) {
  pick_field("Holzart");
  host_.forget();
  host_.pick(editor().cboValue, "FI");
  EXPECT_THAT(host_.calls(),
              ElementsAre("pointer hourglass", "#2 move_first", "#2 find NICKNAME_OF_FIELD = 'HA'",
                          "open LAGER [forward-only, read-only]", "#8 type HA", "#8 close",
                          "#2 move_first", "#2 find ID_SELEKTION = 10",
                          "open SELECT TOP 0 HA FROM LAGER [forward-only, read-only]", "#9 type HA",
                          "#9 close", "pointer default"));
  EXPECT_EQ(formula(), "Holzart = 'FI'");
  pick_field("Anzahl");
  host_.pick(editor().cboValue, "2");
  EXPECT_EQ(formula(), "Anzahl = 2");
}

// Marks what the number formatter has seen; a list is no number.
std::string marked(std::string_view number) {
  const std::string text(number);
  return text.starts_with('(') ? text : "N<" + text + ">";
}

TEST_F(Pickers, AValueOfADecimalFieldIsWhatTheNumberFormatterMakesOfIt) {
  host_.suite->answers().format = marked;
  pick_field("Menge");
  host_.forget();
  host_.pick(editor().cboValue, "1,5");
  EXPECT_THAT(host_.suite->calls_of("format"), ElementsAre("format('1,5', ' ')"));
  EXPECT_EQ(editor().value_text(), "N<1,5>");
  EXPECT_EQ(formula(), "Menge = N<1,5>");
  host_.compose("Menge", "=", "7");
  EXPECT_EQ(formula(), "Menge = N<7>");
  host_.forget();
  host_.compose("Anzahl", "=", "2");
  EXPECT_THAT(host_.suite->calls_of("format"), IsEmpty());
  EXPECT_EQ(formula(), "Anzahl = 2");
}

TEST_F(Pickers, AnotherOperatorKeepsADecimalNumberAsTheServerReadsIt) {
  host_.suite->answers().format = marked;
  host_.compose("Menge", "=", "1,5");
  host_.pick(editor().cboOperator, "<");
  EXPECT_EQ(formula(), "Menge < N<1,5>");
  host_.pick(editor().cboOperator, "IN");
  host_.pick(editor().cboOperator, ">=");
  EXPECT_EQ(formula(), "Menge >= N<1,5>");
}

TEST_F(Pickers, AListOfDecimalNumbersStaysAsItIsWhenAValueIsChosen) {
  host_.suite->answers().format = marked;
  host_.compose("Menge", "IN", "2,5");
  host_.forget();
  host_.pick(editor().cboValue, "1,5");
  EXPECT_THAT(host_.suite->calls_of("format"), ElementsAre("format('()', ' ')"));
  EXPECT_EQ(formula(), "Menge IN ()");
  editor().btnPlus_Click();
  host_.pick(editor().cboValue, "2");
  EXPECT_EQ(formula(), "Menge IN (N<1,5>)");
}

TEST_F(Pickers, AnEmptyValueAsksForNoType) {
  pick_field("Anzahl");
  host_.forget();
  editor().cboValue_Click();
  EXPECT_THAT(host_.connection->statements(), ElementsAre("LAGER"));
  EXPECT_EQ(formula(), "Anzahl = ");
}

TEST_F(Pickers, NullIsTheWordAndNoText) {
  pick_field("Holzart");
  host_.pick(editor().cboValue, "Null");
  EXPECT_EQ(formula(), "Holzart = Null");
  host_.compose("Holzart", "=", "NULL");  // exactly the word of the list
  EXPECT_EQ(formula(), "Holzart = 'NULL'");
}

TEST_F(Pickers, WithInAPickedValueWaitsForPlus) {
  pick_field("Holzart");
  host_.pick(editor().cboOperator, "IN");
  host_.pick(editor().cboValue, "FI");
  EXPECT_EQ(formula(), "Holzart IN ()");
}

TEST_F(Pickers, LeavingTheValueBoxTakesATypedValue) {
  pick_field("Holzart");
  bool cancel = false;
  editor().cboValue.set_text("XY");
  EXPECT_EQ(formula(), "Holzart = ");
  editor().cboValue_Validate(cancel);
  EXPECT_EQ(formula(), "Holzart = 'XY'");
  EXPECT_FALSE(cancel);
}

TEST_F(Pickers, LeavingTheValueBoxDoesNothingForAnEntryAnEmptyTextAndIn) {
  pick_field("Holzart");
  const auto expect_nothing_done = [&](const std::string& shown) {
    editor().Formula.set_text("as it was");
    host_.forget();
    bool cancel = false;
    editor().cboValue_Validate(cancel);
    EXPECT_THAT(*host_.log, IsEmpty());
    EXPECT_FALSE(cancel);
    EXPECT_EQ(formula(), "as it was");
    EXPECT_EQ(editor().value_text(), shown);
  };
  host_.pick(editor().cboValue, "FI");
  expect_nothing_done("'FI'");
  editor().cboValue.set_text("");
  expect_nothing_done("'FI'");
  host_.pick(editor().cboOperator, "IN");
  editor().cboValue.set_text("XY");
  expect_nothing_done("()");
}

// --- Keys

TEST_F(Pickers, TheNumberFilterKeepsDigitsBackspaceEnterAndOneSeparator) {
  for (int key = 0; key <= 255; ++key) {
    SCOPED_TRACE(key);
    const bool digit = (key >= 48 && key <= 57) || key == 8 || key == 13;
    EXPECT_EQ(editor().OnlyNumbers(key, false, ""), digit ? key : 0);
    EXPECT_EQ(editor().OnlyNumbers(key, true, "12"), digit || key == ',' ? key : 0);
    EXPECT_EQ(editor().OnlyNumbers(key, true, "1,2"), digit ? key : 0);
  }
  module_state().strDecimalSep = ".";
  EXPECT_EQ(editor().OnlyNumbers('.', true, "1,2"), '.');
  EXPECT_EQ(editor().OnlyNumbers(',', true, ""), 0);
}

TEST(PickersOfKeys, DependOnTheTypeOfTheField) {
  for (int code = 2; code <= 203; ++code) {
    SCOPED_TRACE(code);
    OneField host("SPALTE", static_cast<FieldType>(code));
    const auto key_kept = [&host](int key) {
      host.editor->cboValue_KeyPress(key);
      return key;
    };
    // Selecting the entry without its click: operators do not matter here.
    host.editor->cboField.on_click = nullptr;
    host.editor->cboField.set_index(0);
    const bool whole = code == 2 || code == 3 || code == 4 || code == 129 || code == 131;
    const bool decimal = code == 5;
    EXPECT_EQ(key_kept('7'), '7');
    EXPECT_EQ(key_kept('x'), whole || decimal ? 0 : 'x');
    EXPECT_EQ(key_kept(','), whole ? 0 : ',');
    host.editor->cboValue.set_text("1,5");
    EXPECT_EQ(key_kept(','), whole || decimal ? 0 : ',');
  }
}

TEST(PickersOfKeys, KnowTheUnitFieldsInEitherCaseAndWithBlanks) {
  for (const char* text : {" rindeprozent ", "RindeProzent", "dm/euro", " DM/Euro"}) {
    SCOPED_TRACE(text);
    EditorHost host;
    SelektionRow row = {.id = 20, .name = "SPALTE", .nickname = "SPALTE", .table = "LAGER"};
    host.answer_fields("SONST", {{row, text, "", FieldType::kVarWChar}});
    host.answer_values(plain_query("SPALTE"), {"x"});
    host.open("SONST");
    host.pick(host.editor->cboField, text);
    host.user->expect_message({"T195", 48, "Kestrova", "", 0});
    int key = '1';
    host.editor->cboValue_KeyPress(key);
    EXPECT_EQ(key, 0);
    host.user->verify();
  }
}

TEST_F(Pickers, TheUnitFieldsRefuseEveryKeyWithAMessage) {
  for (const char* field : {"RINDEPROZENT", "DM/EURO"}) {
    pick_field(field);
    host_.user->expect_message({"T195", 48, "Kestrova", "", 0});
    int key = '1';
    editor().cboValue_KeyPress(key);
    EXPECT_EQ(key, 0);
    EXPECT_EQ(editor().cboValue.text(), "");
  }
}

// --- Nicknames of the invoice runs, and the focus

TEST_F(Pickers, TheFieldsOfAnInvoiceRunBearTheVariantTag) {
  module_state().strVerType = "a3";
  for (const char* name :
       {"NAME", "PREIS", "EINH", "TOTALPREIS", "MSZ", "EURO", "KUNDE", "VERTRAG"}) {
    std::string nickname = "r_" + std::string(name);
    EXPECT_EQ(editor().SetValueFormat(nickname), "A3_" + std::string(name));
    EXPECT_EQ(nickname, "R_" + std::string(name));
  }
  std::string other = "R_Menge";
  EXPECT_EQ(editor().SetValueFormat(other), "R_MENGE");
  EXPECT_EQ(other, "R_MENGE");
}

TEST_F(Pickers, TheFocusGoesToVisibleAndEnabledControlsOnly) {
  editor().SetControlFocus(editor().cboField);
  editor().cboValue.set_enabled(false);
  editor().SetControlFocus(editor().cboValue);
  EXPECT_EQ(editor().focused(), &editor().cboField);
  editor().cboValue.set_enabled(true);
  editor().cboValue.set_visible(false);
  editor().SetControlFocus(editor().cboValue);
  EXPECT_EQ(editor().focused(), &editor().cboField);
  editor().cboValue.set_visible(true);
  editor().SetControlFocus(editor().cboValue);
  EXPECT_EQ(editor().focused(), &editor().cboValue);
}

// --- Catalogue relations

constexpr const char* kTransportValues =
    "SELECT DISTINCT EXPR(TRANSPORT,5) FROM <TRANSPORT,0,><TRANSPORT,5,R7> WHERE  "
    "{TRANSPORTLOGISTIK_KOPF,7} ORDER BY 1";
constexpr const char* kLogValues = "SELECT DISTINCT EXPR(LOG,5) FROM <LOG,0,><LOG,5,R7> ORDER BY 1";

std::vector<Value> numbered(int count) {
  std::vector<Value> values;
  for (int row = 0; row < count; ++row) values.push_back(Value(row));
  return values;
}

std::vector<std::string> numbered_texts(int first, int last) {
  std::vector<std::string> texts;
  for (int row = first; row <= last; ++row) texts.push_back(std::to_string(row));
  return texts;
}

TEST(PickersOfACatalogueRelation, ListTheLastHundredValues) {
  struct Case {
    int rows;
    int first_shown;
  };
  for (const auto& [rows, first_shown] :
       {Case{0, 0}, Case{1, 0}, Case{99, 0}, Case{100, 0}, Case{101, 1}, Case{150, 50}}) {
    SCOPED_TRACE(rows);
    EditorHost host;
    host.open_catalogue("1WL", "1WL", {{"Holzart", 5}});
    host.answer_values(kTransportValues, numbered(rows));
    host.pick(host.editor->cboField, "Holzart");
    EXPECT_EQ(host.texts_of(host.editor->cboValue), numbered_texts(first_shown, rows - 1));
  }
}

// "BB" is no relation of the catalogue today, so that no editor can show this.
TEST(CatalogueValues, AreTheLastHundredAndForOneRelationAll) {
  const auto shown = [](std::string_view relation, int count) {
    CatalogueValues values(relation);
    for (const std::string& value : numbered_texts(0, count - 1)) values.add(value);
    return std::vector<std::string>(values.entries().begin(), values.entries().end());
  };
  EXPECT_EQ(shown("1WL", 150), numbered_texts(50, 149));
  EXPECT_EQ(shown("1WL", 101), numbered_texts(1, 100));
  EXPECT_EQ(shown("1WL", 100), numbered_texts(0, 99));
  EXPECT_THAT(shown("1WL", 0), IsEmpty());
  EXPECT_EQ(shown("BB", 150), numbered_texts(0, 149));
  EXPECT_EQ(shown("bb", 150), numbered_texts(50, 149));
  EXPECT_EQ(shown("BBF", 150), numbered_texts(50, 149));
}

TEST(PickersOfACatalogueRelation, AskTheSuiteAndTheRowsOfTheRelation) {
  EditorHost host;
  host.open_catalogue("1WL", "1WL", {{"Holzart", 5}});
  host.answer_values(kTransportValues, {"FI"});
  host.pick(host.editor->cboField, "Holzart");
  EXPECT_THAT(
      host.calls(),
      ElementsAre("pointer hourglass", "AddFieldTables('TRANSPORT', 0, '', '')",
                  "restrict('TRANSPORTLOGISTIK_KOPF', '', 7)", "MapFieldId('1WL', 5)",
                  "AddFieldTables('TRANSPORT', 5, '<TRANSPORT,0,>', 'R7')",
                  "GetFieldExpression('TRANSPORT', 5, 0, 0)",
                  "open " + std::string(kTransportValues) + " [forward-only, read-only]",
                  "#3 move_next", "#3 close",
                  // the type, for the operators and for the conversion of the value
                  "MapFieldId('1WL', 5)", "field_format('TRANSPORT', 5)", "MapFieldId('1WL', 5)",
                  "field_format('TRANSPORT', 5)", "pointer default"));
  EXPECT_EQ(host.editor->Formula.text(), "Holzart = ");
}

TEST(PickersOfACatalogueRelation, ShowAMissingValueAsNullAndBlankOnesAsTheyAre) {
  EditorHost host;
  host.open_catalogue("1EXP", "LOG", {{"Holzart", 5}});
  host.answer_values(kLogValues, {Value(), "", " ", "FI"});
  host.pick(host.editor->cboField, "Holzart");
  EXPECT_EQ(host.connection->statements(), std::vector<std::string>{kLogValues});
  EXPECT_THAT(host.texts_of(host.editor->cboValue), ElementsAre("Null", "", " ", "FI"));
  host.pick(host.editor->cboValue, "Null");
  EXPECT_EQ(host.editor->Formula.text(), "Holzart = Null");
  host.pick(host.editor->cboValue, "FI");
  EXPECT_EQ(host.editor->Formula.text(), "Holzart = 'FI'");
}

TEST(PickersOfACatalogueRelation, KnowTheOperatorsByTheDisplayFormat) {
  const std::vector<std::string> of_text = {"=", ">", "<", ">=", "<=", "<>", "LIKE", "IN"};
  const std::vector<std::string> of_numbers = {"=", ">", "<", ">=", "<=", "<>", "IN"};
  for (const char* format : {"", "dd.mm.yyyy", "0.00", "0"}) {
    SCOPED_TRACE(format);
    EditorHost host;
    host.suite->answers().field_formats[5] = format;
    host.open_catalogue("1EXP", "LOG", {{"Holzart", 5}});
    host.answer_values(kLogValues, {});
    host.pick(host.editor->cboField, "Holzart");
    EXPECT_EQ(host.texts_of(host.editor->cboOperator), *format == 0 ? of_text : of_numbers);
  }
}

TEST(PickersOfACatalogueRelation, HaveNoOperatorsForAnUnknownDisplayFormat) {
  EditorHost host;
  host.suite->answers().field_formats[5] = "#,##0";
  host.open_catalogue("1EXP", "LOG", {{"Holzart", 5}});
  host.answer_values(kLogValues, {});
  host.user->expect_message({"Unknow data type!", 0, "Kestrova", "", 0});
  host.pick(host.editor->cboField, "Holzart");
  EXPECT_THAT(host.texts_of(host.editor->cboOperator), IsEmpty());
}

// --- Failures

void open_sonst(EditorHost& host) { host.open_sonst(); }

template <int Index>
void pick_field(F_Selection& editor) {
  editor.cboField.set_index(Index);
}

TEST(PickersFailures, EveryFailureOfChoosingAFieldOfAFixedQueryIsSurvived) {
  expect_failures_to_be_survived(open_sonst, pick_field<0>);
}

TEST(PickersFailures, EveryFailureOfChoosingAFieldOfTwoJoinedTablesIsSurvived) {
  expect_failures_to_be_survived(open_sonst, pick_field<6>);
}

TEST(PickersFailures, EveryFailureOfChoosingACatalogueFieldIsSurvived) {
  expect_failures_to_be_survived(
      [](EditorHost& host) {
        host.open_catalogue("1WL", "1WL", {{"Holzart", 5}});
        host.answer_values(kTransportValues, {"FI", "KI"});
      },
      pick_field<0>);
}

TEST(PickersOfACatalogueRelation, AskForContractFieldsByTheCallersCode) {
  EditorHost host;
  host.connection->answer(models_query("2VABR"), {{"ID", FieldType::kInteger}, {"NAME"}});
  host.open_catalogue("2VABR3", "2VABR3", {{"Nummer", 5}});
  host.answer_values(
      "SELECT DISTINCT EXPR(VERTRAG,5) FROM <VERTRAG,0,><VERTRAG,5,R7> WHERE "
      "VERTRAEGE.ID_FAKTART = 3 {VERTRAEGE,7} ORDER BY 1",
      {"A"});
  host.pick(host.editor->cboField, "Nummer");
  EXPECT_EQ(host.editor->relation(), "2VABR");
  EXPECT_THAT(host.texts_of(host.editor->cboValue), ElementsAre("A"));
  EXPECT_THAT(host.suite->calls_of("field_format"), ::testing::Each("field_format('VERTRAG', 5)"));
}

TEST(PickersOfACatalogueRelation, ShowDatesAsTheUserTypesThem) {
  EditorHost host;
  host.suite->answers().field_formats[5] = "dd.mm.yyyy";
  host.open_catalogue("1EXP", "LOG", {{"Datum", 5}});
  host.answer_values(kLogValues, {DateTime{2024, 2, 29}});
  host.pick(host.editor->cboField, "Datum");
  host.pick(host.editor->cboValue, "29.02.2024");
  EXPECT_EQ(host.editor->Formula.text(), "Datum = '29.02.2024'");
}

TEST(PickersFailures, EveryFailureOfTakingAValueIsSurvived) {
  expect_failures_to_be_survived(
      [](EditorHost& host) {
        host.open_sonst();
        host.pick(host.editor->cboField, "Menge");
        host.editor->cboValue.set_text("3");
      },
      [](F_Selection& editor) { editor.cboValue_Click(); });
}

}  // namespace
}  // namespace kestrova::test
