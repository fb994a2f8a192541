// What a host sees of a selection: starting it, showing the editor, working without showing it, and
// what it gets back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <type_traits>

#include "tests/interface/facade_host.h"

namespace kestrova::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using Lines = std::vector<ListEntry>;
using Results = RunHost::Results;
using Texts = std::vector<std::string>;

const ListEntry kOr = {"=== ODER ===", -2};

static_assert(std::is_same_v<c_Selection_Init, SelectionFacade>, "hosts use both names");

std::set<std::string> distinct(const Texts& statements) {
  return {statements.begin(), statements.end()};
}

// The openings of queries in the host's log.
Texts opens(const FacadeHost& host) {
  Texts result;
  std::copy_if(host.log->begin(), host.log->end(), std::back_inserter(result),
               [](const std::string& line) { return line.starts_with("open "); });
  return result;
}

// --- Starting a selection

TEST(SelectionInit, FillsTheModuleState) {
  FacadeHost host;
  host.context.strLanguage = "DE";
  host.facade.c_Selection_Init(host.context, "SONST", "A3", host.held.text, host.held.formula);
  const ModuleState& state = module_state();
  EXPECT_EQ(state.dbado, host.connection);
  EXPECT_EQ(state.strLanguage, "DE");
  EXPECT_EQ(state.strOderLine, "=== ODER ===");
  EXPECT_EQ(state.strNatWahrung, "DM");
  EXPECT_EQ(state.strVerType, "A3");
  EXPECT_EQ(state.strBlank, " ");
  EXPECT_EQ(state.strDecimalSep, ",");
  EXPECT_EQ(state.strSelektion_Fr_Wh, "old text");
  EXPECT_EQ(state.strSelektionFormula, "old formula");
  EXPECT_EQ(state.blnOK, "");
  EXPECT_EQ(state.theSelectionForm, host.editor);
  EXPECT_EQ(host.held, (Results{"old text", "old formula"})) << "they stay";
}

TEST(SelectionInit, TakesTheDecimalSeparatorOfTheUser) {
  FacadeHost host(FakeLocale::Language::kEnglish);
  host.init();
  EXPECT_EQ(module_state().strDecimalSep, ".");
}

TEST(SelectionInit, BindsTheEditorWithoutShowingIt) {
  FacadeHost host;
  host.init("SONST");
  EXPECT_EQ(host.editor->relation(), "SONST");
  EXPECT_EQ(host.editor->cboField.count(), 10);
  EXPECT_EQ(host.editor->Model.entries(), (Lines{{"Alt", 3}, {"Neu", 4}}));
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
  EXPECT_FALSE(host.editor->is_visible());
}

TEST(SelectionInit, StartsAnotherSelectionOverTheSameEditor) {
  FacadeHost host;
  host.init("SONST");
  host.fill_lines({kOr});
  host.context.strNatWahrung = "EUR";
  host.held = {"new text", "new formula"};
  host.facade.c_Selection_Init(host.context, "VERLOHN", "R8", host.held.text, host.held.formula);
  EXPECT_EQ(module_state().theSelectionForm, host.editor);
  EXPECT_EQ(host.editor->relation(), "VERLOHN");
  EXPECT_EQ(host.editor->cboField.count(), 3);
  EXPECT_THAT(host.lines(), IsEmpty());
  EXPECT_EQ(module_state().strNatWahrung, "EUR");
  EXPECT_EQ(module_state().strVerType, "R8");
  EXPECT_EQ(module_state().strSelektion_Fr_Wh, "new text");
  EXPECT_EQ(module_state().strSelektionFormula, "new formula");
}

TEST(SelectionInit, IsSharedByAllObjectsOfTheClass) {
  FacadeHost host;
  host.init("SONST");
  SelectionFacade other;
  EXPECT_EQ(other.c_Selection_Init_Parameter(), "SONST");
  EXPECT_EQ(module_state().theSelectionForm, host.editor);
}

TEST(SelectionInit, LeavesTheAnswerOfTheLastSelection) {
  FacadeHost host;
  host.init();
  host.facade.OK_Click(host.held.text, host.held.formula);
  host.init();
  EXPECT_TRUE(host.facade.WasOKClick());
}

TEST(SelectionInit, ReadsTheNamesInTheUsersLanguage) {
  FacadeHost host;
  host.context.strLanguage = "FR";
  host.connection->answer(
      "SELECT SELEKTION.*,STRINGS.FR,STRINGS.CUSTOM_FR FROM SELEKTION LEFT JOIN STRINGS ON "
      "SELEKTION.ID_STRING = STRINGS.ID_STRING WHERE RTRIM(LTRIM(SELEKTION.PARAMETER)) = 'SONST' "
      "AND VISIBLE = 1 ORDER BY SELEKTION.ORDER_CUSTOM",
      {{"ID_SELEKTION", FieldType::kInteger}, {"FR"}, {"CUSTOM_FR"}}, {{10, "Essence", Value()}});
  host.init("SONST");
  EXPECT_EQ(host.editor->cboField.entries(), (Lines{{"Essence", 10}}));
}

// The editor asks the connection of the start for what it shows.
TEST(SelectionInit, KeepsItsConnectionForTheEditor) {
  FacadeHost host;
  host.init("SONST");
  const auto other = std::make_shared<RecordingConnection>();
  host.context.dbado = other;
  host.expect_dialog([&] { host.editor->Model.set_index(1); });
  host.show();
  EXPECT_EQ(host.connection->statements(),
            Texts({model_state_query("SONST", 3), model_state_query("SONST", 4)}));
  EXPECT_THAT(other->log(), IsEmpty());
}

TEST(SelectionParameter, IsTheCodeThatTheEditorWorksWith) {
  FacadeHost host;
  EXPECT_EQ(host.facade.c_Selection_Init_Parameter(), "");
  host.init(" sonst ");
  EXPECT_EQ(host.facade.c_Selection_Init_Parameter(), "SONST");
  host.init("VERLOHN");
  EXPECT_EQ(host.facade.c_Selection_Init_Parameter(), "VERLOHN");
}

TEST(SelectionParameter, OfASharedRelationIsTheOtherCode) {
  FacadeHost host;
  const std::string code = "HIZBB_SELEKTION_RECHNUNG_MV";
  host.offer("BBHAB_RECHNUNG_MV", {{"Holzart", 5}});
  host.init(code);
  EXPECT_EQ(host.facade.c_Selection_Init_Parameter(), "HIZBB_SELEKTION_RECHNUNG");
}

// --- Showing the editor

TEST(ShowSelection, ReturnsWhatTheUserConfirmed) {
  FacadeHost host;
  host.init();
  host.expect_dialog([&] {
    EXPECT_FALSE(host.facade.WasOKClick());
    host.compose("Anzahl", ">=", "2");
    host.editor->btnInsert.click();
    host.editor->btnOk.click();
    EXPECT_FALSE(host.editor->is_visible());
  });
  host.show();
  EXPECT_EQ(host.held, (Results{" LAGER WHERE (LAGER.ANZAHL >= 2)", "Anzahl >= 2"}));
  EXPECT_TRUE(host.facade.WasOKClick());
  EXPECT_EQ(host.facade.GetWriteString(host.context), "11 >= 2;");
}

TEST(ShowSelection, ReturnsTheTextsOfTheStartWhenTheUserCancels) {
  FacadeHost host;
  host.init();
  Results passed{"another text", "another formula"};
  host.expect_dialog([&] { host.editor->btnCancel.click(); });
  host.facade.c_form_Selection(host.context, passed.text, passed.formula, false);
  EXPECT_EQ(passed, (Results{"old text", "old formula"}));
  EXPECT_FALSE(host.facade.WasOKClick());
}

TEST(ShowSelection, ForReadingDisablesTheCriteria) {
  FacadeHost host;
  host.init();
  for (const bool read_only : {true, false}) {
    host.expect_dialog([&] {
      EXPECT_EQ(host.editor->btnInsert.enabled(), !read_only);
      EXPECT_EQ(host.editor->btnOk.enabled(), !read_only);
    });
    host.show(read_only);
  }
}

TEST(ShowSelection, ForgetsAnEarlierConfirmation) {
  FacadeHost host;
  host.init();
  host.expect_dialog([&] { host.editor->btnOk.click(); });
  host.show();
  EXPECT_TRUE(host.facade.WasOKClick());
  host.expect_dialog();
  host.show();
  EXPECT_FALSE(host.facade.WasOKClick());
}

TEST(ShowSubset, StartsWithTheCriteriaAndTellsWhetherTheUserConfirmed) {
  FacadeHost host;
  host.init("NML");
  bool ok = false;
  host.expect_dialog([&] {
    EXPECT_EQ(host.editor->ListCriteria.entries(), (Lines{{"Holzart = 'FI'", 5}}));
    host.editor->btnOk.click();
  });
  host.show_nml("5 = 'FI';", ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(host.held.formula, "Holzart = 'FI'");
  EXPECT_EQ(host.facade.GetWriteString(host.context), "5 = 'FI';");

  host.expect_dialog([&] { host.editor->btnCancel.click(); });
  host.show_nml("5 = 'BU';", ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(host.held.formula, "Holzart = 'FI'") << "the last confirmed one stays";
}

TEST(ShowSubset, OfNothingIsTheDialogAlone) {
  Texts logs[2];
  for (const bool nml : {false, true}) {
    FacadeHost host;
    host.init("NML");
    host.fill_lines({kOr});
    host.expect_dialog([&] { host.editor->btnOk.click(); });
    host.forget();
    bool ok = false;
    if (nml) {
      host.show_nml("", ok);
      EXPECT_TRUE(ok);
    } else {
      host.show();
    }
    EXPECT_EQ(host.held, (Results{"", ""}));
    EXPECT_THAT(host.lines(), IsEmpty()) << "the list is the subset";
    logs[nml ? 1 : 0] = *host.log;
  }
  EXPECT_EQ(logs[0], logs[1]);
}

TEST(ShowSubset, UnderstandsTheWordsOfEveryUser) {
  FacadeHost host(FakeLocale::Language::kEnglish);
  host.init("NML");
  bool ok = false;
  host.expect_dialog([&] { host.editor->btnOk.click(); });
  host.show_nml("", ok);
  EXPECT_EQ(module_state().blnOK, "True");
  EXPECT_TRUE(ok);
  host.expect_dialog();
  host.show_nml("", ok);
  EXPECT_EQ(module_state().blnOK, "False");
  EXPECT_FALSE(ok);
}

TEST(ShowSubset, ForReadingDisablesTheCriteria) {
  FacadeHost host;
  host.init("NML");
  bool ok = true;
  host.expect_dialog([&] { EXPECT_FALSE(host.editor->btnOk.enabled()); });
  host.show_nml("", ok, true);
  EXPECT_FALSE(ok);
}

// --- Whether the user confirmed

class OkFlag : public ::testing::TestWithParam<std::pair<const char*, bool>> {};

TEST_P(OkFlag, IsReadInEveryLanguage) {
  FacadeHost host;
  module_state().blnOK = GetParam().first;
  EXPECT_EQ(host.facade.WasOKClick(), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(Words, OkFlag,
                         ::testing::Values(std::pair("True", true), std::pair("Wahr", true),
                                           std::pair("Vrai", true), std::pair("TRUE", true),
                                           std::pair("wahr", true), std::pair("vRAI", true),
                                           std::pair("", false), std::pair("False", false),
                                           std::pair("Falsch", false), std::pair("Faux", false),
                                           std::pair("1", false), std::pair("-1", false),
                                           std::pair("Wahrheit", false)),
                         [](const auto& test) {
                           std::string name = test.param.first;
                           if (name.empty()) name = "nothing";
                           std::replace(name.begin(), name.end(), '-', 'm');
                           return name + "_" + std::to_string(test.index);
                         });

// --- Loading a model

TEST(LoadModelByName, SelectsAndLoadsIt) {
  FacadeHost host;
  host.init();
  host.facade.c_Selection_Model_DblClick("Neu");
  EXPECT_EQ(host.editor->Model.index(), 1);
  EXPECT_EQ(host.editor->caption(), "Selektion: Neu");
  EXPECT_EQ(host.editor->ListCriteria.entries(),
            (Lines{{"Holzart = 'FI'", 10}, kOr, {"Anzahl >= 5", 11}}));
  const Texts& statements = host.connection->statements();
  ASSERT_GE(statements.size(), 2U);
  EXPECT_EQ(statements[0], model_state_query("SONST", 4));
  EXPECT_EQ(statements[1], "SELECT MODEL FROM MODELS WHERE ID = 4");
}

TEST(LoadModelByName, LoadsTheSelectedOneAgain) {
  FacadeHost host;
  host.init();
  host.fill_lines({kOr});
  host.facade.c_Selection_Model_DblClick("Alt");
  EXPECT_THAT(host.lines(), IsEmpty());
}

TEST(LoadModelByName, RefusesANameThatIsNotListed) {
  FacadeHost host;
  host.init();
  host.fill_lines({kOr});
  for (const char* name : {"Gibt es nicht", "alt", ""}) {
    EXPECT_THROW(host.facade.c_Selection_Model_DblClick(name), InvalidArgument) << name;
  }
  EXPECT_EQ(host.editor->Model.index(), 0);
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
  EXPECT_EQ(host.editor->ListCriteria.entries(), (Lines{kOr}));
  EXPECT_THAT(host.connection->statements(), IsEmpty());
}

// --- Committing without the dialog

TEST(CommitWithoutDialog, ReturnsBothResults) {
  FacadeHost host;
  host.init();
  host.fill_lines({{"Anzahl >= 5", 11}});
  Results passed{"a", "b"};
  host.facade.OK_Click(passed.text, passed.formula);
  const Results expected{" LAGER WHERE (LAGER.ANZAHL >= 5)", "Anzahl >= 5"};
  EXPECT_EQ(passed, expected);
  EXPECT_EQ(module_state().strSelektion_Fr_Wh, expected.text);
  EXPECT_EQ(module_state().strSelektionFormula, expected.formula);
  EXPECT_TRUE(host.facade.WasOKClick());
}

TEST(CommitWithoutDialog, OfAnEmptyListIsEmpty) {
  FacadeHost host;
  host.init();
  Results passed{"a", "b"};
  host.facade.OK_Click(passed.text, passed.formula);
  EXPECT_EQ(passed, (Results{"", ""}));
  EXPECT_TRUE(host.facade.WasOKClick());
}

// The passed texts are the results until the commit has others.
TEST(CommitWithoutDialog, LeavesThePassedTextsWhenTheListIsRefused) {
  for (const auto& [lines, text] : std::vector<std::pair<Lines, std::string>>{
           {{kOr, {"Anzahl >= 5", 11}}, "T194"}, {{{"Anzahl >= 5", 11}, kOr}, "T193"}}) {
    FacadeHost host;
    host.init();
    host.fill_lines(lines);
    host.user->expect_message({text, 48, "Kestrova", "", 0});
    Results passed{"a", "b"};
    host.facade.OK_Click(passed.text, passed.formula);
    EXPECT_EQ(passed, (Results{"a", "b"}));
    EXPECT_EQ(module_state().strSelektion_Fr_Wh, "a");
    EXPECT_EQ(module_state().strSelektionFormula, "b");
    EXPECT_FALSE(host.facade.WasOKClick());
  }
}

// --- Writing the list

std::string written(const std::string& relation, const Lines& lines) {
  FacadeHost host;
  host.init(relation);
  host.fill_lines(lines);
  return host.facade.GetWriteString(host.context);
}

TEST(WriteString, OfAnEmptyListIsEmpty) { EXPECT_EQ(written("SONST", {}), ""); }

TEST(WriteString, OfTheOrLineAloneIsTheOrLine) {
  EXPECT_EQ(written("SONST", {kOr}), "=== ODER ===;");
}

TEST(WriteString, WritesARecordPerLine) {
  EXPECT_EQ(written("SONST", {{"Holzart = 'FI'", 10},
                              {"Anzahl IN (1, 2)", 11},
                              kOr,
                              {"Datum >= 3.4.2021", 13},
                              {"Datum < -3", 13},
                              {"Datum > 5", 13},
                              {"Datum = 'null'", 13},
                              {"Gesperrt = Wahr", 14},
                              {"Gesperrt = Falsch", 14},
                              {"Artname LIKE 'A%'", 15}}),
            "10 = 'FI';11 IN (1, 2) ;=== ODER ===;13 >= 'S(3.4.2021)';13 < GETDATE()-3;13 > "
            "GETDATE()+5;13 = Null;14 = 1;14 = 0;15 LIKE 'A%';");
}

TEST(WriteString, FindsTheFieldByTheTextOfTheLine) {
  EXPECT_EQ(written("VERLOHN", {{"Menge >= 3,5", 0}, {"holzart = 'FI'", 9}, {"Unbekannt = 1", 5}}),
            "7 >= 3,5;5 = 'FI';0 = 1;");
}

TEST(WriteString, WritesUnitsByTheirFlags) {
  EXPECT_EQ(
      written("SONST", {{"RINDEPROZENT = cm", 17}, {"RINDEPROZENT = %", 17}, {"DM/EURO = DM", 18}}),
      "17 = 1;17 = 0;18 = 0;");
}

TEST(WriteString, KnowsTheOrLineByThePassedContext) {
  FacadeHost host;
  host.init("VERLOHN");
  host.fill_lines({{"=== OU ===", -2}, {"Holzart = 'FI'", 5}});
  host.context.strOderLine = "=== OU ===";
  EXPECT_EQ(host.facade.GetWriteString(host.context), "=== OU ===;5 = 'FI';");
  host.context.strOderLine = "=== ou ===";
  EXPECT_THROW(host.facade.GetWriteString(host.context), InvalidArgument);
}

TEST(WriteString, LeavesTheListAsItIs) {
  FacadeHost host;
  host.init();
  host.fill_lines({{"Holzart = 'FI'", 10}, kOr, {"Anzahl = 1", 11}});
  host.facade.GetWriteString(host.context);
  EXPECT_EQ(host.editor->ListCriteria.entries(),
            (Lines{{"Holzart = 'FI'", 10}, kOr, {"Anzahl = 1", 11}}));
  EXPECT_EQ(host.connection->open_recordsets(), 1U) << "the field catalogue";
}

// --- Filling the list

Lines filled(FacadeHost& host, std::string_view criteria, std::string_view relation) {
  host.facade.FillListCriteria(host.context, criteria, relation);
  return host.editor->ListCriteria.entries();
}

TEST(FillList, NamesTheFieldsByTheirTexts) {
  FacadeHost host;
  host.init();
  EXPECT_EQ(filled(host, "10 = 'FI';=== ODER ===;11 >= 5;12 <> 1,5;10 IN ('A','B');", "SONST"),
            (Lines{{"Holzart = 'FI'", 10},
                   kOr,
                   {"Anzahl >= 5", 11},
                   {"Menge <> 1,5", 12},
                   {"Holzart IN ('A','B') ", 10}}));
}

TEST(FillList, ReadsTheTextNumberOfEveryField) {
  FacadeHost host;
  host.init();
  filled(host, "10 = 'FI';11 = 1;", "SONST");
  EXPECT_THAT(distinct(host.connection->statements()),
              UnorderedElementsAre("SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = 10",
                                   "SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = 11",
                                   "SELECT * FROM SELEKTION WHERE ID_SELEKTION = 10",
                                   "SELECT * FROM SELEKTION WHERE ID_SELEKTION = 11",
                                   "SELECT TOP 0 HA FROM LAGER", "SELECT TOP 0 ANZAHL FROM LAGER"));
  EXPECT_EQ(host.suite->calls_of("GetText"), Texts({"GetText(110)", "GetText(111)"}));
  EXPECT_EQ(host.connection->open_recordsets(), 1U) << "the field catalogue";
}

// The lookups of the types are opened as everywhere.
TEST(FillList, ReadsTheNamesWithCursorAndLockUnspecified) {
  FacadeHost host;
  host.init();
  filled(host, "10 = 'FI';", "SONST");
  EXPECT_THAT(distinct(opens(host)),
              UnorderedElementsAre("open SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = 10 "
                                   "[unspecified, unspecified]",
                                   opened("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 10"),
                                   opened("SELECT TOP 0 HA FROM LAGER")));
}

TEST(FillList, OfACatalogueRelationNamesTheFieldsAsTheEditorOffersThem) {
  FacadeHost host;
  host.init("VERLOHN");
  EXPECT_EQ(filled(host, "5 = 'FI';7 >= 3,5;9 = 1;", "VERLOHN"),
            (Lines{{"Holzart = 'FI'", 5}, {"Menge >= 3,5", 7}, {" = 1", 9}}));
  EXPECT_THAT(host.connection->statements(), IsEmpty());
}

// The relation of the criteria decides, not the one that the editor is bound to.
TEST(FillList, GoesByThePassedRelation) {
  FacadeHost host;
  host.init("SONST");
  EXPECT_EQ(filled(host, "10 = 'FI';", "VERLOHN"), (Lines{{"Holzart = 'FI'", 10}}));
  EXPECT_THAT(host.suite->calls_of("GetText"), IsEmpty());
  host.init("VERLOHN");
  EXPECT_EQ(filled(host, "11 = 1;", "SONST"), (Lines{{"Anzahl = 1", 11}}));
  EXPECT_EQ(host.facade.c_Selection_Init_Parameter(), "VERLOHN");
}

TEST(FillList, ShowsDatesInTheUsersForm) {
  const std::string sonst =
      "13 = '3/4/2021';13 > 31/12/2024;13 < GETDATE()-3;13 < GETDATE()+5;13 > getdate()+1;"
      "13 = 'null';13 <> NULL;13 IN (3/4/2021,'1/2/2024');13 = '31.12.2024';";
  const Lines lines = {{"Datum = '03.04.2021'", 13}, {"Datum > '31.12.2024'", 13},
                       {"Datum < -3", 13},           {"Datum < +5", 13},
                       {"Datum > getdate()+1", 13},  {"Datum = Null", 13},
                       {"Datum <> NULL", 13},        {"Datum IN ('03.04.2021','01.02.2024') ", 13},
                       {"Datum = '31.12.2024'", 13}};
  FacadeHost host;
  host.init();
  EXPECT_EQ(filled(host, sonst, "SONST"), lines);
  host.context.strDateOrder = "MDY";
  EXPECT_EQ(filled(host, "13 = 3/4/2021;", "SONST"), (Lines{{"Datum = '04.03.2021'", 13}}));
  host.init("VERLOHN");
  EXPECT_EQ(filled(host, "6 < GETDATE()-3;6 = 3/4/2021;5 = GETDATE();", "VERLOHN"),
            (Lines{{"Datum < -3", 6}, {"Datum = '04.03.2021'", 6}, {"Holzart = GETDATE()", 5}}));
}

TEST(FillList, TakesALastRecordWithoutSeparatorAndSkipsEmptyOnes) {
  FacadeHost host;
  host.init("VERLOHN");
  EXPECT_EQ(filled(host, "5 = 'FI';;7 = 1", "VERLOHN"),
            (Lines{{"Holzart = 'FI'", 5}, {"Menge = 1", 7}}));
  EXPECT_EQ(filled(host, "=== ODER ===", "VERLOHN"), (Lines{kOr}));
}

TEST(FillList, ReplacesTheListAndSelectsNothing) {
  FacadeHost host;
  host.init("VERLOHN");
  host.fill_lines({{"Holzart = 'X'", 5}, kOr});
  host.editor->ListCriteria.set_index(1);
  host.forget();
  EXPECT_EQ(filled(host, "7 = 1;", "VERLOHN"), (Lines{{"Menge = 1", 7}}));
  EXPECT_EQ(host.editor->ListCriteria.index(), -1);
  EXPECT_THAT(filled(host, "", "VERLOHN"), IsEmpty());
}

TEST(FillList, KnowsTheOrLineByExactEquality) {
  FacadeHost host;
  host.init("VERLOHN");
  for (const char* criteria : {"=== oder ===;", " === ODER ===;", "=== ODER === ;"}) {
    EXPECT_THROW(filled(host, criteria, "VERLOHN"), Error) << criteria;
    EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
  }
  EXPECT_EQ(filled(host, "=== ODER ===;", "VERLOHN"), (Lines{kOr}));
}

TEST(FillList, KnowsTheOrLineByThePassedContext) {
  FacadeHost host;
  host.init("VERLOHN");
  host.context.strOderLine = "=== OU ===";
  EXPECT_EQ(filled(host, "=== OU ===;5 = 'FI';", "VERLOHN"),
            (Lines{{"=== OU ===", -2}, {"Holzart = 'FI'", 5}}));
  EXPECT_THROW(filled(host, "=== ODER ===;", "VERLOHN"), InvalidArgument);
}

// Lookups of fields go by the context of the call, as all of the engine's do, so that they work
// before a selection is started.
TEST(FillList, LooksFieldsUpOnThePassedConnection) {
  FacadeHost host;
  EXPECT_EQ(filled(host, "11 = 1;=== ODER ===;", "SONST"), (Lines{{"Anzahl = 1", 11}, kOr}));
  EXPECT_EQ(module_state().dbado, nullptr);
}

TEST(FillList, FailsForAFieldThatIsNoNumber) {
  FacadeHost host;
  host.init("VERLOHN");
  EXPECT_THROW(filled(host, "5 = 'FI';Holzart = 'FI';", "VERLOHN"), TypeMismatch);
  EXPECT_THROW(filled(host, "40000 = 1;", "VERLOHN"), Overflow);
  EXPECT_EQ(filled(host, "5 = 'FI';", "VERLOHN"), (Lines{{"Holzart = 'FI'", 5}}));
}

TEST(FillList, ShowsTheHourglass) {
  FacadeHost host;
  host.init("SONST");
  filled(host, "10 = 'FI';", "SONST");
  EXPECT_EQ(host.log->front(), "pointer hourglass");
  EXPECT_EQ(host.log->back(), "pointer default");
  EXPECT_THAT(host.user->pointer(), PointerShape::kDefault);
}

TEST(FillList, IsWrittenBackAsItWas) {
  FacadeHost host;
  host.init();
  const std::string criteria =
      "10 = 'FI';11 IN (1, 2) ;=== ODER ===;13 < GETDATE()-3;13 = Null;15 LIKE 'A%';";
  filled(host, criteria, "SONST");
  EXPECT_EQ(host.facade.GetWriteString(host.context), criteria);
}

// --- Before a selection is started

TEST(BeforeTheStart, EveryMethodWorksWithEmptyState) {
  FacadeHost host;
  EXPECT_EQ(host.facade.c_Selection_Init_Parameter(), "");
  EXPECT_EQ(host.facade.GetWriteString(host.context), "");
  EXPECT_FALSE(host.facade.WasOKClick());
  EXPECT_THAT(filled(host, "", "SONST"), IsEmpty());
  EXPECT_THROW(host.facade.c_Selection_Model_DblClick("Alt"), InvalidArgument);
  host.facade.OK_Click(host.held.text, host.held.formula);
  EXPECT_EQ(host.held, (Results{"", ""}));
  EXPECT_TRUE(host.facade.WasOKClick());
  EXPECT_THAT(host.connection->statements(), IsEmpty());
  EXPECT_EQ(module_state().theSelectionForm, host.editor);
}

TEST(BeforeTheStart, TheDialogNeedsAConnection) {
  FacadeHost host;
  EXPECT_THROW(host.show(), ObjectNotSet);
  bool ok = true;
  EXPECT_THROW(host.show_nml("5 = 'FI';", ok), ObjectNotSet);
  EXPECT_TRUE(ok) << "there is no answer";
  EXPECT_EQ(host.held, (Results{"old text", "old formula"}));
  EXPECT_FALSE(host.facade.WasOKClick());
  EXPECT_FALSE(host.editor->is_visible());
  EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
  EXPECT_THAT(host.connection->statements(), IsEmpty());
}

TEST(BeforeTheStart, FieldsOfTheDatabaseNeedAConnection) {
  FacadeHost host;
  host.context.dbado = nullptr;
  EXPECT_THROW(filled(host, "10 = 'FI';", "SONST"), ObjectNotSet);
  EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
}

TEST(BeforeTheStart, WithoutAConnectionItFailsAndWorksWithOne) {
  FacadeHost host;
  host.context.dbado = nullptr;
  EXPECT_THROW(host.init(), ObjectNotSet);
  EXPECT_EQ(module_state().dbado, nullptr);
  EXPECT_EQ(module_state().strOderLine, "=== ODER ===");
  host.context.dbado = host.connection;
  host.init();
  EXPECT_EQ(host.facade.c_Selection_Init_Parameter(), "SONST");
}

TEST(BeforeTheStart, WhatWasCalledDoesNoHarm) {
  FacadeHost host;
  EXPECT_THROW(host.show(), ObjectNotSet);
  EXPECT_THROW(host.facade.c_Selection_Model_DblClick("Alt"), InvalidArgument);
  filled(host, "", "SONST");
  host.init();
  host.expect_dialog([&] {
    host.compose("Anzahl", "=", "1");
    host.editor->btnInsert.click();
    host.editor->btnOk.click();
  });
  host.show();
  EXPECT_EQ(host.held, (Results{" LAGER WHERE (LAGER.ANZAHL = 1)", "Anzahl = 1"}));
}

TEST(BeforeTheStart, TheFirstMethodMakesTheEditorThatAllOthersUse) {
  FacadeHost host;
  module_state().theSelectionForm = nullptr;
  host.facade.WasOKClick();
  host.facade.c_Selection_Init_Parameter();
  const std::shared_ptr<SelectionForm> made = module_state().theSelectionForm;
  ASSERT_NE(made, nullptr);
  EXPECT_NE(made, host.editor);
  host.facade.GetWriteString(host.context);
  filled(host, "", "SONST");
  host.init();
  EXPECT_EQ(module_state().theSelectionForm, made);
  EXPECT_EQ(host.facade.c_Selection_Init_Parameter(), "SONST");
}

// --- Without an installed host

TEST(WithoutAHost, WhatNeedsAServiceSaysSo) {
  install_host({});
  const KesVar context;
  Results passed{"a", "b"};
  bool ok = true;
  SelectionFacade facade;
  EXPECT_THROW(facade.c_Selection_Init(context, "SONST", "", passed.text, passed.formula),
               ObjectNotSet);
  EXPECT_THROW(facade.c_form_Selection(context, passed.text, passed.formula, false), ObjectNotSet);
  EXPECT_THROW(facade.c_form_SelectionNML(context, passed.text, passed.formula, "", ok, false),
               ObjectNotSet);
  EXPECT_THROW(facade.OK_Click(passed.text, passed.formula), ObjectNotSet);
  EXPECT_THROW(facade.FillListCriteria(context, "", "SONST"), ObjectNotSet);
  EXPECT_THROW(facade.c_Selection_Model_DblClick("Alt"), Error);
  EXPECT_EQ(facade.c_Selection_Init_Parameter(), "");
  EXPECT_EQ(facade.GetWriteString(context), "");
  EXPECT_FALSE(facade.WasOKClick());
  EXPECT_EQ(passed, (Results{"a", "b"}));
  EXPECT_TRUE(ok);
  install_host({});
}

}  // namespace
}  // namespace kestrova::test
