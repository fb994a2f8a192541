// The criteria list as FROM/WHERE text and as formula.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include "editor/row_counter.h"
#include "tests/editor/run_host.h"

namespace kestrova::test {
namespace {

using ::testing::IsEmpty;
using Results = RunHost::Results;
using Texts = std::vector<std::string>;

const char* const kOr = "=== ODER ===";

void put(RunHost& host, const Texts& lines) {
  for (const std::string& line : lines) host.editor->ListCriteria.add(line);
}

// Presses OK without showing the dialog.
Results committed(RunHost& host, const Texts& lines) {
  host.editor->ListCriteria.clear();
  put(host, lines);
  Results results;
  host.editor->btnOK2_Click(results.text, results.formula);
  return results;
}

// --- Relations whose fields stand in SELEKTION

struct SonstHost : RunHost {
  explicit SonstHost(std::vector<OfferedField> fields = sonst_fields(),
                     const std::string& code = "SONST") {
    suite->answers().texts[3441] = "ODER";
    answer_fields(code, fields);
    answer_models(code);
    for (const OfferedField& field : fields) know_lookups(field.row);
    start(code);
    forget();
  }
};

TEST(Commit, JoinsTablesAndConditionsOnceAndLeavesTheWordFromToTheCaller) {
  SonstHost host;
  EXPECT_EQ(
      committed(host,
                {"Holzart = 'FI'", "Artname LIKE 'A%'", kOr, "Gruppe <> null", "Artname = 'B'"}),
      (Results{" LAGER,HOLZART,GRUPPE WHERE LAGER.ID_HA = HOLZART.ID AND HOLZART.ID_GR = GRUPPE.ID "
               "AND (LAGER.HA = 'FI' AND HOLZART.NAME LIKE 'A%' OR NOT(HOLZART.NAME IS NULL OR "
               "RTRIM(LTRIM(HOLZART.NAME)) = '') AND HOLZART.NAME = 'B')",
               "Holzart = 'FI' AND  AND Artname LIKE 'A%' OR Gruppe <> null AND  AND Artname = "
               "'B'"}));
}

TEST(Commit, OfOnePlainField) {
  SonstHost host;
  EXPECT_EQ(committed(host, {"Anzahl IN (1, 2)"}),
            (Results{" LAGER WHERE (LAGER.ANZAHL IN (1, 2))", "Anzahl IN (1, 2)"}));
}

TEST(Commit, LeavesABlankForTheValueOfAnInList) {
  SonstHost host;
  EXPECT_EQ(committed(host, {"Anzahl IN (1, 2)", "Anzahl = 3"}).text,
            " LAGER WHERE (LAGER.ANZAHL IN (1, 2)  AND LAGER.ANZAHL = 3)");
}

TEST(Commit, OfAnotherJoinKindAddsNoTable) {
  SonstHost host;
  EXPECT_EQ(committed(host, {"Kreuz = 'A'"}).text, "  WHERE (HOLZART.NAME = 'A')");
}

TEST(Commit, LooksForAConditionRegardlessOfCase) {
  std::vector<OfferedField> fields = {sonst_fields()[5], sonst_fields()[5]};
  fields[1].row.id = 25;
  fields[1].text = "Zweitname";
  fields[1].row.condition = "lager.id_ha = holzart.id";
  SonstHost host(fields);
  EXPECT_EQ(
      committed(host, {"Artname = 'A'", "Zweitname = 'B'"}).text,
      " LAGER,HOLZART WHERE LAGER.ID_HA = HOLZART.ID AND (HOLZART.NAME = 'A' AND HOLZART.NAME "
      "= 'B')");
}

TEST(Commit, CutsCommasAndBlanksBehindTheTables) {
  OfferedField field = sonst_fields()[0];
  field.row.table = "LAGER , ,";
  SonstHost host({field});
  host.connection->answer("SELECT TOP 0 HA FROM LAGER , ,", {{"HA"}});
  EXPECT_EQ(committed(host, {"Holzart = 'FI'"}).text, " LAGER WHERE (LAGER , ,.HA = 'FI')");
}

TEST(Commit, WritesNullByTheOperator) {
  SonstHost host;
  const std::string is_null = "(LAGER.HA IS NULL OR RTRIM(LTRIM(LAGER.HA)) = '')";
  EXPECT_EQ(committed(host, {"Holzart = NULL"}).text, " LAGER WHERE (" + is_null + ")");
  EXPECT_EQ(committed(host, {"Holzart <>   nUlL  "}).text, " LAGER WHERE (NOT" + is_null + ")");
  EXPECT_EQ(committed(host, {"Holzart >= 'null'"}).text, " LAGER WHERE (NOT" + is_null + ")");
  EXPECT_EQ(committed(host, {"Holzart = 'NULLE'"}).text, " LAGER WHERE (LAGER.HA = 'NULLE')");
}

TEST(Commit, TurnsDatesAndTruthIntoServerText) {
  SonstHost host;
  EXPECT_EQ(
      committed(host, {"Datum >= 3.4.2021", "Datum < -3", "Gesperrt = Wahr", "Gesperrt = Falsch"})
          .text,
      " LAGER WHERE (LAGER.DATUM >= 'S(3.4.2021)' AND LAGER.DATUM < GETDATE()-3 AND "
      "LAGER.GESPERRT = 1 AND LAGER.GESPERRT = 0)");
}

TEST(Commit, TurnsAListOfDatesIntoServerText) {
  SonstHost host;
  EXPECT_EQ(committed(host, {"Datum IN ('3.4.2021')", "Datum IN (,-3)"}),
            (Results{" LAGER WHERE (LAGER.DATUM IN ('S(3.4.2021)')  AND LAGER.DATUM IN "
                     "(GETDATE()-3))",
                     "Datum IN ('3.4.2021') AND  AND Datum IN (,-3)"}));
}

// --- Lines that are refused

void expect_refused_line(const std::string& line) {
  SCOPED_TRACE(line);
  SonstHost host;
  module_state().strSelektion_Fr_Wh = "old text";
  module_state().strSelektionFormula = "old formula";
  module_state().blnOK = "Falsch";
  put(host, {"Anzahl = 1", line});
  try {
    host.editor->btnOk_Click();
    ADD_FAILURE() << "not refused";
  } catch (const InvalidArgument& error) {
    EXPECT_THAT(error.what(), ::testing::HasSubstr("'" + line + "'"));
  }
  EXPECT_EQ(module_state().strSelektion_Fr_Wh, "old text");
  EXPECT_EQ(module_state().strSelektionFormula, "old formula");
  EXPECT_EQ(module_state().blnOK, "Falsch");
  EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
  for (const std::string& statement : host.connection->statements()) {
    EXPECT_EQ(statement.substr(0, 7), "SELECT ") << statement;
  }
}

TEST(Commit, RefusesALineThatCouldLeaveItsParenthesesAndChangesNothing) {
  expect_refused_line("Holzart = 'x') OR ('1'='1'");
  expect_refused_line("Holzart = 'O'Brien'");
  expect_refused_line("Anzahl = 1 -- x");
  expect_refused_line("Anzahl = 1; DELETE FROM MODELS");
  expect_refused_line("Holzart = 'x\ty'");
}

TEST(Commit, RefusesAListThatWouldBeReadBackCut) {
  expect_refused_line("Holzart IN ('Huber (Lenggries)', 'Eder (Tölz)')");
  expect_refused_line("Datum IN (-5, -7)");
  expect_refused_line("Datum IN (-12345)");
  expect_refused_line("Gesperrt IN (1, 0)");
}

TEST(Commit, TakesNullOfABooleanAsNull) {
  SonstHost host;
  EXPECT_EQ(committed(host, {"Gesperrt = Null"}),
            (Results{" LAGER WHERE ((LAGER.GESPERRT IS NULL OR RTRIM(LTRIM(LAGER.GESPERRT)) = ''))",
                     "Gesperrt = Null"}));
}

TEST(Commit, TakesBothEntriesOfTheBarkAllowance) {
  SonstHost host;
  EXPECT_EQ(committed(host, {"RINDEPROZENT = 'cm'", "RINDEPROZENT = '%'"}).text,
            " LAGER WHERE (LAGER.RINDE = 1 AND LAGER.RINDE = 0)");
}

TEST(Commit, OfAPickedTruthIsOneOrZero) {
  SonstHost host;
  host.answer_values(plain_query("GESPERRT"), {true, false});
  host.pick(host.editor->cboField, "Gesperrt");
  EXPECT_EQ(host.texts_of(host.editor->cboValue), (Texts{"Null", "Wahr", "Falsch"}));
  const auto picked = [&host](const std::string& word) {
    host.pick(host.editor->cboField, "Gesperrt");
    host.pick(host.editor->cboValue, word);
    return committed(host, {host.editor->Formula.text()});
  };
  EXPECT_EQ(picked("Wahr"), (Results{" LAGER WHERE (LAGER.GESPERRT = 1)", "Gesperrt = Wahr"}));
  EXPECT_EQ(picked("Falsch"), (Results{" LAGER WHERE (LAGER.GESPERRT = 0)", "Gesperrt = Falsch"}));
}

TEST(Commit, KnowsADraggedOrLineByItsText) {
  SonstHost host;
  host.fill_lines({{"Anzahl = 1", 11}, {"Anzahl = 2", 11}, {kOr, -2}});
  ListBox& list = host.editor->ListCriteria;
  list.set_index(2);
  host.editor->ListCriteria_DragDrop(list, 0, 1);
  EXPECT_EQ(list.entries(),
            (std::vector<ListEntry>{{"Anzahl = 1", 11}, {kOr, 0}, {"Anzahl = 2", 11}}));
  Results results;
  host.editor->btnOK2_Click(results.text, results.formula);
  EXPECT_EQ(results, (Results{" LAGER WHERE (LAGER.ANZAHL = 1 OR LAGER.ANZAHL = 2)",
                              "Anzahl = 1 OR Anzahl = 2"}));
}

TEST(Commit, TellsTheSuiteTheVariantWithEveryTable) {
  SonstHost host;
  committed(host, {"Artname = 'A'", "Gruppe = 'B'", "Anzahl = 1"});
  EXPECT_EQ(host.suite->calls_of("AddTable"),
            (Texts{"AddTable('', 'LAGER', 'R7')", "AddTable('LAGER', 'HOLZART', 'R7')",
                   "AddTable('LAGER,HOLZART', 'LAGER', 'R7')",
                   "AddTable('LAGER,HOLZART', 'HOLZART', 'R7')",
                   "AddTable('LAGER,HOLZART', 'GRUPPE', 'R7')",
                   "AddTable('LAGER,HOLZART,GRUPPE', 'LAGER', 'R7')"}));
}

TEST(Commit, OfAFullList) {
  SonstHost host;
  constexpr std::size_t kOrLines = 32765;
  Texts lines(kOrLines + 2, kOr);
  lines.front() = "Anzahl = 1";
  lines.back() = "Anzahl = 2";
  std::string ors;
  for (std::size_t i = 0; i < kOrLines; ++i) ors += " OR ";
  const Results results = committed(host, lines);
  EXPECT_TRUE(results.text == " LAGER WHERE (LAGER.ANZAHL = 1" + ors + "LAGER.ANZAHL = 2)");
  EXPECT_TRUE(results.formula == "Anzahl = 1" + ors + "Anzahl = 2");
}

TEST(Commit, OfAnEmptyListIsEmpty) {
  SonstHost host;
  EXPECT_EQ(committed(host, {}), (Results{"", ""}));
  EXPECT_EQ(module_state().blnOK, "Wahr");
}

TEST(Commit, KeepsTheResultsInTheModule) {
  SonstHost host;
  put(host, {"Anzahl = 1"});
  host.editor->btnOk_Click();
  EXPECT_EQ(module_state().strSelektion_Fr_Wh, " LAGER WHERE (LAGER.ANZAHL = 1)");
  EXPECT_EQ(module_state().strSelektionFormula, "Anzahl = 1");
  EXPECT_EQ(module_state().blnOK, "Wahr");
}

TEST(Commit, ShowsTheHourglassAndHidesTheDialog) {
  SonstHost host;
  host.run("", false, [&] {
    put(host, {"Anzahl = 1"});
    host.forget();
    host.editor->btnOk_Click();
    EXPECT_EQ(host.calls().front(), "pointer hourglass");
    EXPECT_EQ(host.calls().back(), "pointer default");
    EXPECT_FALSE(host.editor->is_visible());
  });
}

// --- The word for OR

TEST(Formula, OfAnotherWordForOrKeepsOneAndBeforeIt) {
  SonstHost host;
  host.suite->answers().texts[3441] = "OU";
  host.editor->Form_Load();
  module_state().strOderLine = "=== OU ===";
  host.answer_fields("SONST", sonst_fields());
  host.start("SONST");
  EXPECT_EQ(committed(host, {"Anzahl = 1", "=== OU ===", "Anzahl = 2"}).formula,
            "Anzahl = 1 AND  OR Anzahl = 2");
}

TEST(Formula, OfAnOrLineInAnotherLanguageShowsTheLine) {
  SonstHost host;
  host.suite->answers().texts[3441] = "OU";
  host.editor->Form_Load();
  EXPECT_EQ(committed(host, {"Anzahl = 1", kOr, "Anzahl = 2"}).formula,
            "Anzahl = 1 AND === ODER === AND  AND Anzahl = 2");
}

// --- Lists that are refused

void expect_refused(const Texts& lines, std::string_view text) {
  SonstHost host;
  module_state().strSelektion_Fr_Wh = "old text";
  module_state().strSelektionFormula = "old formula";
  host.run("", false, [&] {
    put(host, lines);
    host.forget();
    host.user->expect_message({std::string(text), 48, "Kestrova", "", 0});
    host.editor->btnOk_Click();
    EXPECT_TRUE(host.editor->is_visible());
    EXPECT_EQ(module_state().blnOK, "Falsch");
    EXPECT_EQ(host.connection->calls_made(), 0U);
    EXPECT_TRUE(host.suite->calls_of("GetText").size() == 1);
  });
  EXPECT_EQ(module_state().strSelektion_Fr_Wh, "old text");
  EXPECT_EQ(module_state().strSelektionFormula, "old formula");
}

TEST(Commit, RefusesAListThatBeginsWithOr) {
  expect_refused({kOr, "Anzahl = 1"}, "T194");
  expect_refused({kOr}, "T194");
  expect_refused({kOr, "Anzahl = 1", kOr}, "T194");
}

TEST(Commit, RefusesAListThatEndsWithOr) { expect_refused({"Anzahl = 1", kOr}, "T193"); }

TEST(Commit, CopiesTheOldResultsOfARefusedList) {
  SonstHost host;
  module_state().strSelektion_Fr_Wh = "module text";
  module_state().strSelektionFormula = "module formula";
  host.user->expect_message({"T194", 48, "Kestrova", "", 0});
  EXPECT_EQ(committed(host, {kOr}), (Results{"module text", "module formula"}));
}

TEST(Cancel, TakesTheConfirmationBackAndKeepsTheResults) {
  SonstHost host;
  committed(host, {"Anzahl = 1"});
  host.run("", false, [&] {
    module_state().blnOK = "Wahr";
    host.editor->btnCancel_Click();
    EXPECT_FALSE(host.editor->is_visible());
  });
  EXPECT_EQ(module_state().blnOK, "Falsch");
  EXPECT_EQ(module_state().strSelektion_Fr_Wh, " LAGER WHERE (LAGER.ANZAHL = 1)");
  EXPECT_EQ(module_state().strSelektionFormula, "Anzahl = 1");
}

TEST(Commit, ThatFailsLeavesTheConfirmation) {
  SonstHost host;
  module_state().strSelektion_Fr_Wh = "old text";
  put(host, {"Unbekannt = 1"});
  EXPECT_THROW(host.editor->btnOk_Click(), DatabaseError);
  EXPECT_EQ(module_state().blnOK, "Wahr");
  EXPECT_EQ(module_state().strSelektion_Fr_Wh, "old text");
  EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
}

// --- Relations that the suite knows

const Columns kText = {{"A"}};

struct SuiteHost : RunHost {
  // The field "Art" has the number 5, in the list and in SELEKTION.
  explicit SuiteHost(const std::string& code, const std::string& list_key,
                     const std::string& model_relation,
                     std::shared_ptr<FakeSuite> its_suite = nullptr)
      : RunHost(std::move(its_suite)) {
    offer(list_key, {{"Art", 5}});
    const OfferedField art = {
        {.id = 5, .name = "ART", .nickname = "ART", .table = "LAGER"}, "Art", ""};
    answer_fields(list_key, {art});
    connection->answer("SELECT ISNULL(MODEL,'') FROM MODELS WHERE RELATION = 'BBFIZ'", kText,
                       {{"5"}});
    for (const char* key : {"BBF", "PERSONAL", "WAREN"}) {
      const std::string k = key;
      connection->answer("SELECT TOP 0 EXPR(" + k + ",5) FROM <" + k + ",5,R7>", kText);
    }
    answer_models(model_relation);
    start(code);
    forget();
  }
};

std::string text_of(const std::string& code, const std::string& list_key,
                    const std::string& model_relation) {
  SuiteHost host(code, list_key, model_relation);
  return committed(host, {"Art = 'X'", kOr, "Art = NULL"}).text;
}

TEST(CommitWorkOrders, RestrictsToTheWorkerOfTheCode) {
  EXPECT_EQ(text_of("4ARB17", "4ARB", "4ARB"),
            " FROM <BBF,5,R7><BBF,5,R7> WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID = 17 AND "
            "(EXPR(BBF,5) = 'X' OR (EXPR(BBF,5) IS NULL OR RTRIM(LTRIM(EXPR(BBF,5))) = ''))");
}

TEST(CommitWorkOrders, OfAllWorkersDoesNot) {
  EXPECT_EQ(text_of("4ARB", "4ARB", "4ARB"),
            " FROM <BBF,5,R7><BBF,5,R7> WHERE (EXPR(BBF,5) = 'X' OR (EXPR(BBF,5) IS NULL OR "
            "RTRIM(LTRIM(EXPR(BBF,5))) = ''))");
}

TEST(CommitRestricted, BeginsWithFrom) {
  EXPECT_EQ(text_of("BBF", "BBF", "BBF"),
            " FROM <BBF,5,R7><BBF,5,R7> WHERE (EXPR(BBF,5) = 'X' OR (EXPR(BBF,5) IS NULL OR "
            "RTRIM(LTRIM(EXPR(BBF,5))) = ''))");
}

TEST(CommitRestricted, OutsideTheCatalogueKeepsTheConditionButNotTheTables) {
  EXPECT_EQ(text_of("PERSONAL", "PERSONAL", "PERSONAL"),
            " FROM <PERSONAL,5,R7><PERSONAL,5,R7> WHERE  {PERSONAL,7} AND (EXPR(PERSONAL,5) = 'X' "
            "OR (EXPR(PERSONAL,5) IS NULL OR RTRIM(LTRIM(EXPR(PERSONAL,5))) = ''))");
}

// A suite whose restriction is nothing but blanks: no empty one, which would be left out.
TEST(CommitRestricted, KeepsABaseConditionOfBlanks) {
  class BlankSuite : public FakeSuite {
   public:
    std::shared_ptr<AccessLevelFilter> access_level_filter() override {
      struct Filter : AccessLevelFilter {
        std::string restrict(std::string_view table, std::string_view, const KesVar&,
                             std::int32_t) override {
          return table == "MODELS" ? " {MODELS,7}" : "  ";
        }
      };
      return std::make_shared<Filter>();
    }
  };
  SuiteHost host("PERSONAL", "PERSONAL", "PERSONAL", std::make_shared<BlankSuite>());
  EXPECT_EQ(committed(host, {"Art = 'X'"}).text,
            " FROM <PERSONAL,5,R7> WHERE    AND (EXPR(PERSONAL,5) = 'X')");
}

TEST(CommitCatalogue, AddsTheTablesOfTheFieldsToTheBase) {
  EXPECT_EQ(text_of("EXP_VER0", "EXP_VER0", "1VVM"),
            " FROM <VERTRAG,0,><VERTRAG,5,R7><VERTRAG,5,R7> WHERE VERTRAEGE.ID_FAKTART = 0 "
            "{VERTRAEGE,7} AND (EXPR(VERTRAG,5) = 'X' OR (EXPR(VERTRAG,5) IS NULL OR "
            "RTRIM(LTRIM(EXPR(VERTRAG,5))) = ''))");
  EXPECT_EQ(text_of("2VABR3", "2VABR3", "2VABR"),
            " FROM <VERTRAG,0,><VERTRAG,5,R7><VERTRAG,5,R7> WHERE VERTRAEGE.ID_FAKTART = 3 "
            "{VERTRAEGE,7} AND (EXPR(VERTRAG,5) = 'X' OR (EXPR(VERTRAG,5) IS NULL OR "
            "RTRIM(LTRIM(EXPR(VERTRAG,5))) = ''))");
}

TEST(CommitCatalogue, ThatIsRestrictedTakesTheRestrictedFields) {
  EXPECT_EQ(text_of("2ABR3", "LOG", "2ABR1"),
            " FROM <LOG,0,><LOG,5,R7><LOG,5,R7> WHERE NOT (LOGS_RECH.A3_NAME IS NULL) AND "
            "(EXPR(LOG,5) = 'X' OR (EXPR(LOG,5) IS NULL OR RTRIM(LTRIM(EXPR(LOG,5))) = ''))");
}

TEST(CommitCatalogue, TellsTheSuiteTheVariantWithTheTablesOfAField) {
  for (const auto& [code, list_key, model_relation, table_key] :
       {std::tuple("EXP_VER0", "EXP_VER0", "1VVM", "VERTRAG"),
        std::tuple("PERSONAL", "PERSONAL", "PERSONAL", "PERSONAL")}) {
    SCOPED_TRACE(code);
    SuiteHost host(code, list_key, model_relation);
    committed(host, {"Art = 'X'"});
    const std::string key = table_key;
    const std::string start = std::string(code) == "EXP_VER0" ? "<VERTRAG,0,>" : "";
    EXPECT_EQ(host.suite->calls_of("AddFieldTables").back(),
              "AddFieldTables('" + key + "', 5, '" + start + "', 'R7')");
  }
}

TEST(CommitContract, StoresTheListAndBuildsTheText) {
  for (const auto& [code, table] :
       {std::pair("VERTP12", "VERTRAG_PREISE"), std::pair("vertm12", "VERTRAG_MENGEN")}) {
    SCOPED_TRACE(code);
    SuiteHost host(code, "LOG", std::string(code) == "VERTP12" ? "VERTP" : "VERTM");
    const std::string source = std::string("SELECT * FROM ") + table + " WHERE ID = 12";
    host.answer_contract(source, "5 = 'OLD';");
    EXPECT_EQ(committed(host, {"Art = 'X'"}).text,
              " FROM <LOG,0,><LOG,5,R7> WHERE FHP_IMPORT.ERRORTEXT IS NULL AND "
              "FHP_IMPORT.ID_FHP_IMPORT IS NULL AND (EXPR(LOG,5) = 'X')");
    const auto row = host.connection->open(source, CursorType::kForwardOnly, LockType::kReadOnly);
    EXPECT_EQ(row->value("SELEKTION_VALUE"), Value("5 = 'X';"));
  }
}

// --- The text that a view counts

struct CountedHost : SuiteHost {
  CountedHost(const std::string& code, const std::string& key) : SuiteHost(code, key, key) {
    const SelektionRow art = {.id = 5, .name = "ART", .nickname = "ART", .table = "LAGER"};
    know_type(art, FieldType::kVarWChar);
    answer_catalogue({{0, art}}, {art});
    put(*this, {"Art = 'X'"});
    forget();
  }
};

TEST(Counted, IsTheTextOfAStoredFilter) {
  EXPECT_EQ(CountedHost("4PLN17", "4PLN").editor->counted_from_where(),
            " FROM LAGER WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17 AND (LAGER.ART = 'X')");
  EXPECT_EQ(CountedHost("4ARB17", "4ARB").editor->counted_from_where(),
            " FROM <BBF,5,R7> WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17 AND (EXPR(BBF,5) = 'X')");
  EXPECT_EQ(CountedHost("1VN", "1VN").editor->counted_from_where(),
            " FROM <WAREN,0,R7>,LAGER WHERE (LAGER.ART = 'X')");
}

// Their records are not those that a stored filter of any mode selects.
TEST(Counted, IsNothingOfRelationsThatOnlyACommitTranslates) {
  for (const char* code : {"BBF", "PERSONAL", "SONST"}) {
    SCOPED_TRACE(code);
    CountedHost host(code, code);
    EXPECT_EQ(host.editor->counted_from_where(), "");
    EXPECT_EQ(make_row_counter(*host.editor)->begin(), RowCount::kNone);
    EXPECT_THAT(host.connection->statements(), IsEmpty());
  }
}

}  // namespace
}  // namespace kestrova::test
