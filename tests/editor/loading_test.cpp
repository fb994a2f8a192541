// Stored selections into the criteria list, and the list back into a contract.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text.h"
#include "tests/editor/run_host.h"

namespace kestrova::test {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;
using Lines = std::vector<ListEntry>;
using Texts = std::vector<std::string>;

const ListEntry kOr = {"=== ODER ===", -2};

// --- Models

// "SONST" with the model "Alt" (7). The names of its fields are the texts 110 to 113; a criteria
// string that begins with the OR line keeps the pickers out of the test.
struct ModelHost : RunHost {
  ModelHost() {
    answer_fields("SONST", sonst_fields());
    answer_models("SONST", {{7, " Alt "}});
    answer_criteria(7, "");
    for (const OfferedField& field : sonst_fields()) {
      const int id = field.row.id;
      connection->answer(
          "SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = " + std::to_string(id),
          {{"ID_STRING", FieldType::kInteger}}, {{100 + id}});
    }
    suite->answers().texts[110] = "Holzart";
    suite->answers().texts[111] = "Anzahl";
    suite->answers().texts[113] = "Datum";
    start("SONST");
  }

  // Stores the criteria and double clicks on the model.
  Lines load(Value criteria) {
    const std::string sql = "SELECT MODEL FROM MODELS WHERE ID = 70";
    connection->answer(sql, {{"MODEL"}}, {{std::move(criteria)}});
    return load();
  }
  Lines load() {
    editor->Model.set_item_data(0, 70);
    forget();
    editor->Model_DblClick();
    return editor->ListCriteria.entries();
  }
};

TEST(LoadModel, AddsALinePerRecord) {
  ModelHost host;
  EXPECT_EQ(
      host.load("=== ODER ===;10 = 'FI';11 >= 5;=== ODER ===;10 IN ('A','B');"),
      (Lines{
          kOr, {"Holzart = 'FI'", 10}, {"Anzahl >= 5", 11}, kOr, {"Holzart IN ('A','B') ", 10}}));
}

TEST(LoadModel, ReadsTheModelThenTheNamesAndTypesOfItsFields) {
  ModelHost host;
  host.load("=== ODER ===;10 = 'FI';");
  const Texts calls = host.calls();
  ASSERT_GE(calls.size(), 4U);
  EXPECT_EQ(calls[0], opened("SELECT MODEL FROM MODELS WHERE ID = 70"));
  EXPECT_TRUE(calls[1].ends_with(" close"));
  EXPECT_EQ(calls[2], "pointer hourglass");
  EXPECT_EQ(calls.back(), "pointer default");
  EXPECT_EQ(host.suite->calls_of("GetText"), Texts({"GetText(110)"}));
  EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
  EXPECT_EQ(host.connection->open_recordsets(), 1U);
}

TEST(LoadModel, SkipsEmptyRecordsAndTrimsTheOthers) {
  ModelHost host;
  EXPECT_EQ(host.load(" === ODER === ;; ; 10 = 'FI' ;;"), (Lines{kOr, {"Holzart = 'FI'", 10}}));
}

TEST(LoadModel, ReadsALastRecordWithoutSeparator) {
  ModelHost host;
  EXPECT_EQ(host.load("=== ODER ===;11 < 3"), (Lines{kOr, {"Anzahl < 3", 11}}));
}

TEST(LoadModel, OfNullLoadsNothingButShowsItsName) {
  ModelHost host;
  host.fill_lines({kOr});
  EXPECT_THAT(host.load(Value()), IsEmpty());
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
}

// Another user has deleted it: the list must not be taken for its filter.
TEST(LoadModel, WithoutARowSaysSoAndKeepsTheList) {
  ModelHost host;
  host.editor->Model.set_entry_text(0, "Neu");
  host.fill_lines({kOr});
  host.connection->answer("SELECT MODEL FROM MODELS WHERE ID = 70", {{"MODEL"}});
  try {
    host.load();
    ADD_FAILURE() << "no error";
  } catch (const NoCurrentRecord& error) {
    EXPECT_STREQ(error.what(), "The model 'Neu' has been deleted meanwhile.");
  }
  EXPECT_EQ(host.editor->ListCriteria.entries(), (Lines{kOr}));
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
  EXPECT_EQ(host.connection->open_recordsets(), 1U);
  EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
}

TEST(LoadModel, WithoutASelectedModelDoesNothing) {
  ModelHost host;
  host.load("=== ODER ===;10 = 'FI';");
  host.editor->ListCriteria.set_index(1);
  host.editor->Model.set_index(-1);
  host.forget();
  host.editor->Model_DblClick();
  EXPECT_EQ(host.editor->ListCriteria.entries(), (Lines{kOr, {"Holzart = 'FI'", 10}}));
  EXPECT_EQ(host.editor->ListCriteria.index(), 1);
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
  EXPECT_THAT(*host.log, IsEmpty());
}

TEST(LoadModel, TakesAnOtherOrLineForACriterion) {
  ModelHost host;
  EXPECT_THROW(host.load("=== ODER ===;=== oder ===;"), Error);
}

TEST(LoadModel, ShowsDatesInTheUsersForm) {
  ModelHost host;
  EXPECT_EQ(host.load("=== ODER ===;13 = '3/4/2021';13 > '31.12.2024';13 < GETDATE()-3;"
                      "13 < GETDATE()+5;13 > getdate()+1;13 = NULL;13 <> null;"
                      "13 IN (3/4/2021,'01.02.2024');"),
            (Lines{kOr,
                   {"Datum = '03.04.2021'", 13},
                   {"Datum > '31.12.2024'", 13},
                   {"Datum < -3", 13},
                   {"Datum < +5", 13},
                   {"Datum > getdate()+1", 13},
                   {"Datum = NULL", 13},
                   {"Datum <> null", 13},
                   {"Datum IN ('03.04.2021','01.02.2024') ", 13}}));
}

TEST(LoadModel, KeepsGetdateInOtherFields) {
  ModelHost host;
  EXPECT_EQ(host.load("=== ODER ===;10 = 'GETDATE()';"),
            (Lines{kOr, {"Holzart = 'GETDATE()'", 10}}));
}

TEST(LoadModel, ShowsARelativeDateAsAnOffsetThatIsReadBack) {
  ModelHost host;
  EXPECT_EQ(host.load("=== ODER ===;13 < GETDATE();13 < GETDATE() - 92;13 >= GETDATE() + 1,5;"
                      "13 = GETDATE() - x;"),
            (Lines{kOr,
                   {"Datum < +0", 13},
                   {"Datum < -92", 13},
                   {"Datum >= +1,5", 13},
                   {"Datum =  - x", 13}}));
}

TEST(LoadModel, ShowsABooleanAsTheWordFromWhichItIsStoredAgain) {
  ModelHost host;
  host.suite->answers().texts[114] = "Gesperrt";
  EXPECT_EQ(host.load("=== ODER ===;14 = 1;14 = 0;14 = NULL;14 = '1';14 = 'TRUE';14 = +1;14 = -1;"
                      "14 = '-1';14 = 'FALSE';14 IN (1,0);"),
            (Lines{kOr,
                   {"Gesperrt = Wahr", 14},
                   {"Gesperrt = Falsch", 14},
                   {"Gesperrt = NULL", 14},
                   {"Gesperrt = Wahr", 14},
                   {"Gesperrt = Wahr", 14},
                   {"Gesperrt = Wahr", 14},
                   {"Gesperrt = Wahr", 14},
                   {"Gesperrt = Wahr", 14},
                   {"Gesperrt = Falsch", 14},
                   {"Gesperrt IN (1,0) ", 14}}));
  host.editor->ListCriteria.remove(10);
  EXPECT_EQ(host.editor->GetWriteString(host.context),
            "=== ODER ===;14 = 1;14 = 0;14 = NULL;14 = 1;14 = 1;14 = 1;14 = 1;14 = 1;14 = 0;");
}

TEST(LoadModel, RefusesAValueThatIsNoFlag) {
  for (const char* record : {"14 = 2", "14 = 'x'", "14 = GETDATE()", "14 = ''", "14 = "}) {
    ModelHost host;
    host.suite->answers().texts[114] = "Gesperrt";
    host.fill_lines({kOr});
    try {
      host.load("=== ODER ===;" + std::string(record) + ";");
      ADD_FAILURE() << "not refused: " << record;
    } catch (const InvalidArgument& error) {
      EXPECT_THAT(error.what(), ::testing::HasSubstr(std::string(text::trim(record))));
    }
    EXPECT_EQ(host.editor->ListCriteria.entries(), Lines{kOr}) << record;
  }
}

TEST(LoadModel, ShowsAListThatIsReadBackCutWholeAndInTheOrderInWhichItCanBeKept) {
  ModelHost host;
  EXPECT_EQ(host.load("=== ODER ===;10 IN ('Eder (Tölz)','Grünwald');10 IN ('A (b)','CC (d)');"
                      "13 IN (GETDATE()-12345);"),
            (Lines{kOr,
                   {"Holzart IN ('Grünwald','Eder (Tölz)') ", 10},
                   {"Holzart IN ('A (b)','CC (d)') ", 10},
                   {"Datum IN (GETDATE()-12345) ", 13}}));
  EXPECT_THROW(host.editor->GetWriteString(host.context), InvalidArgument);
  host.editor->ListCriteria.remove(3);
  EXPECT_THROW(host.editor->GetWriteString(host.context), InvalidArgument);
  host.editor->ListCriteria.remove(2);
  EXPECT_EQ(host.editor->GetWriteString(host.context),
            "=== ODER ===;10 IN ('Grünwald','Eder (Tölz)') ;");
}

TEST(GetWriteString, RefusesOnlyWhatCouldNotBeReadBack) {
  ModelHost host;
  host.fill_lines({{"Holzart = 'x') OR ('1'='1'", 10}});
  EXPECT_EQ(host.editor->GetWriteString(host.context), "10 = 'x') OR ('1'='1';");
  host.fill_lines({{"Holzart = 'Huber; Söhne'", 10}});
  EXPECT_THROW(host.editor->GetWriteString(host.context), InvalidArgument);
}

TEST(LoadModel, ShowsTheStoredWordOfABooleanColumnWithoutItsQuotes) {
  ModelHost host;
  host.suite->answers().texts[114] = "Status";
  host.suite->answers().texts[5] = "nein";
  host.suite->answers().texts[6] = "ja";
  EXPECT_EQ(host.load("=== ODER ===;14 = 'ja';14 = 'nein';14 = 1;14 = 'TRUE';14 = Null;"),
            (Lines{kOr,
                   {"Status = Wahr", 14},
                   {"Status = Falsch", 14},
                   {"Status = Wahr", 14},
                   {"Status = Wahr", 14},
                   {"Status = Null", 14}}));
}

TEST(LoadModel, RefusesAWordThatTheBooleanColumnDoesNotHold) {
  ModelHost host;
  host.suite->answers().texts[114] = "Status";
  EXPECT_THROW(host.load("=== ODER ===;14 = 'offen';"), InvalidArgument);
}

TEST(LoadModel, ShowsTheUnitOfTheBarkAllowanceAndLeavesTheMoneyUnit) {
  ModelHost host;
  host.suite->answers().texts[117] = "RINDEPROZENT";
  host.suite->answers().texts[118] = "DM/EURO";
  EXPECT_EQ(host.load("=== ODER ===;17 = 1;17 = 0;18 = 0;18 = EURO;"),
            (Lines{kOr,
                   {"RINDEPROZENT = cm", 17},
                   {"RINDEPROZENT = 0", 17},
                   {"DM/EURO = 0", 18},
                   {"DM/EURO = EURO", 18}}));
}

TEST(LoadModel, SelectsTheFirstLineAndLoadsItIntoThePickers) {
  ModelHost host;
  host.answer_values("SELECT HA FROM HOLZART WHERE ISNULL(DISABLE,0) = 0 ORDER BY HA", {"FI"});
  EXPECT_EQ(host.load("10 <> 'FI';11 = 5;"), (Lines{{"Holzart <> 'FI'", 10}, {"Anzahl = 5", 11}}));
  EXPECT_EQ(host.editor->ListCriteria.index(), 0);
  EXPECT_EQ(host.editor->cboField.text(), "Holzart");
  EXPECT_EQ(host.editor->cboOperator.text(), "<>");
  EXPECT_EQ(host.editor->cboValue.text(), "FI");
  EXPECT_EQ(host.editor->Formula.text(), "Holzart <> 'FI'");
}

TEST(LoadModel, OfACatalogueRelationNamesFieldsAsTheListDoes) {
  RunHost host;
  host.offer("VERLOHN", {{"first", 5}, {"second", 5}, {"third", 6}});
  host.answer_models("VERLOHN", {{7, "Alt"}});
  host.answer_criteria(7, "=== ODER ===;5 = 'X';06 = 'Y';9 = 'Z';");
  for (const char* field : {"5", "6", "9"}) {
    const std::string id = field;
    host.connection->answer("SELECT TOP 0 EXPR(BBLTN," + id + ") FROM <BBLTN," + id + ",R7>",
                            {{"A"}});
  }
  host.start("VERLOHN");
  EXPECT_EQ(host.editor->ListCriteria.entries(),
            (Lines{kOr, {"first = 'X'", 5}, {"third = 'Y'", 6}, {" = 'Z'", 9}}));
}

// --- Texts that the host hands in

// "NML" with the fields Holzart (5), Datum (6) and Menge (7).
struct TextHost : RunHost {
  TextHost() {
    offer("LOG", {{"Holzart", 5}, {"Datum", 6}, {"Menge", 7}});
    suite->answers().field_formats = {{6, "dd.mm.yyyy"}, {7, "0.00"}};
    answer_models("NML");
    start("NML");
  }

  Lines load(const std::string& criteria) {
    run(criteria);
    return editor->ListCriteria.entries();
  }
};

TEST(LoadText, AddsALinePerTerminatedRecord) {
  TextHost host;
  EXPECT_EQ(host.load("=== ODER ===;5 = 'FI';7 >= 5,5;;=== ODER ===;5 LIKE 'A%';9 = 1;5 = 'lost'"),
            (Lines{kOr,
                   {"Holzart = 'FI'", 5},
                   {"Menge >= 5,5", 7},
                   kOr,
                   {"Holzart LIKE 'A%'", 5},
                   {" = 1", 9}}));
}

TEST(LoadText, ReplacesTheList) {
  TextHost host;
  host.fill_lines({{"Holzart = 'X'", 5}});
  EXPECT_THAT(host.load(""), IsEmpty());
}

TEST(LoadText, KeepsGetdateInDates) {
  TextHost host;
  EXPECT_EQ(host.load("=== ODER ===;6 < GETDATE()-3;6 = '3/4/2021';6 = 'null';6 IN (3/4/2021);"),
            (Lines{kOr,
                   {"Datum < GETDATE()-3", 6},
                   {"Datum = '03.04.2021'", 6},
                   {"Datum = Null", 6},
                   {"Datum IN ('03.04.2021') ", 6}}));
}

TEST(LoadText, FailsForAFieldThatIsNoNumber) {
  TextHost host;
  std::string text;
  std::string formula;
  EXPECT_THROW(host.editor->Run(host.context, text, formula, false, "=== ODER ===;A = 1;"),
               TypeMismatch);
  EXPECT_THROW(host.editor->Run(host.context, text, formula, false, "=== ODER ===;40000 = 1;"),
               Overflow);
  EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
  EXPECT_EQ(host.load("=== ODER ===;5 = 'FI';"), (Lines{kOr, {"Holzart = 'FI'", 5}}));
}

// A criteria string of that many records, and the lines that show it. Most are OR lines, which ask
// for no type.
std::pair<std::string, Lines> numbered_criteria(int count) {
  std::string criteria;
  Lines lines;
  for (int i = 0; i < count; ++i) {
    const std::string number = std::to_string(i);
    const bool is_or = i % 50 != 0;
    criteria += is_or ? kOr.text + ";" : "7 = " + number + ";";
    lines.push_back(is_or ? kOr : ListEntry{"Menge = " + number, 7});
  }
  return {criteria, lines};
}

TEST(LoadText, FillsAListUpToItsLimitAndWritesItBack) {
  TextHost host;
  const auto [criteria, lines] = numbered_criteria(32767);
  EXPECT_TRUE(host.load(criteria) == lines);
  EXPECT_TRUE(host.editor->GetWriteString(host.context) == criteria);
  host.editor->ListCriteria.clear();
  host.editor->FillListCriteria(host.context, criteria, "NML");
  EXPECT_TRUE(host.editor->ListCriteria.entries() == lines);
}

TEST(LoadText, RefusesMoreLinesThanAListHoldsAndChangesNothing) {
  TextHost host;
  const std::string criteria = numbered_criteria(32768).first;
  host.load("=== ODER ===;5 = 'FI';");
  const Lines lines = {kOr, {"Holzart = 'FI'", 5}};
  std::string text;
  std::string formula;
  EXPECT_THROW(host.editor->Run(host.context, text, formula, false, criteria), Overflow);
  EXPECT_EQ(host.editor->ListCriteria.entries(), lines);
  EXPECT_THROW(host.editor->FillListCriteria(host.context, criteria, "NML"), Overflow);
  EXPECT_EQ(host.editor->ListCriteria.entries(), lines);
  EXPECT_EQ(host.editor->ListCriteria.index(), 0);
  EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
}

TEST(LoadText, LeavesTheCaption) {
  TextHost host;
  host.load("=== ODER ===;");
  EXPECT_EQ(host.editor->caption(), "Selektion");
}

// --- Contracts

struct ContractHost : RunHost {
  explicit ContractHost(const std::string& code = "VERTP12") {
    offer("LOG", {{"Holzart", 5}, {"Datum", 6}, {"Menge", 7}});
    suite->answers().field_formats = {{6, "dd.mm.yyyy"}, {7, "0.00"}};
    answer_models(text::upper(code).substr(0, 5));
    start(code);
  }

  Lines load(const std::string& table, Value criteria) {
    connection->answer("SELECT SELEKTION_VALUE FROM " + table + " WHERE ID = 12",
                       {{"SELEKTION_VALUE"}}, {{std::move(criteria)}});
    forget();
    run();
    return editor->ListCriteria.entries();
  }
};

TEST(LoadContract, ReadsTheSelectionOfPrices) {
  for (const char* code : {"VERTP12", "vertp12"}) {
    SCOPED_TRACE(code);
    ContractHost host(code);
    EXPECT_EQ(host.load("VERTRAG_PREISE", "=== ODER ===;6 > GETDATE()+1;5 = 'lost'"),
              (Lines{kOr, {"Datum > GETDATE()+1", 6}}));
    EXPECT_EQ(host.connection->statements(),
              Texts({"SELECT SELEKTION_VALUE FROM VERTRAG_PREISE WHERE ID = 12",
                     model_state_query("VERTP")}));
  }
}

// The row set in which the selection is also stored.
TEST(LoadContract, OpensItsRowForWriting) {
  ContractHost host;
  host.load("VERTRAG_PREISE", "");
  EXPECT_THAT(*host.log, Contains("open SELECT SELEKTION_VALUE FROM VERTRAG_PREISE WHERE ID = 12 "
                                  "[keyset, optimistic]"));
}

TEST(LoadContract, ReadsTheSelectionOfQuantities) {
  ContractHost host("VERTM12");
  EXPECT_EQ(host.load("VERTRAG_MENGEN", "=== ODER ===;7 < 3;"), (Lines{kOr, {"Menge < 3", 7}}));
}

TEST(LoadContract, OfNullShowsAnEmptyList) {
  ContractHost host;
  host.fill_lines({kOr});
  EXPECT_THAT(host.load("VERTRAG_PREISE", Value()), IsEmpty());
}

const std::string kContract = "SELECT * FROM VERTRAG_PREISE WHERE ID = 12";

// The calls on the contract's row while the list is committed.
Texts stored(RunHost& host, const std::vector<ListEntry>& lines) {
  host.fill_lines(lines);
  host.forget();
  host.editor->btnOk_Click();
  Texts calls;
  std::string number;
  for (const std::string& line : *host.log) {
    if (line.starts_with("open " + kContract) || line.find(" set_value ") != std::string::npos ||
        line.ends_with(" update")) {
      calls.push_back(line.starts_with('#') ? line.substr(line.find(' ') + 1) : line);
    }
  }
  return calls;
}

TEST(StoreContract, ReplacesWhatItHeldByTheList) {
  ContractHost host;
  host.answer_contract(kContract, "5 = 'OLD';");
  EXPECT_EQ(
      stored(host, {{"Holzart = 'FI'", 5},
                    {"Menge >= 5,5", 0},
                    kOr,
                    {"Datum = 3.4.2021", 6},
                    {"Datum < -3", 6},
                    {"Datum > 5", 6},
                    {"Datum = 'NULL'", 6},
                    {"Datum IN ('3.4.2021')", 6},
                    {"Datum IN (-3)", 6},
                    {"holzart IN ('A', 'B') ", 5}}),
      Texts({"open " + kContract + " [keyset, optimistic]",
             "set_value SELEKTION_VALUE = 5 = 'FI';7 >= 5,5;=== ODER ===;6 = 'S(3.4.2021)';"
             "6 < GETDATE()-3;6 > GETDATE()+5;6 = Null;6 IN ('S(3.4.2021)') ;6 IN (GETDATE()-3) ;"
             "5 IN ('A', 'B') ;",
             "update"}));
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

TEST(StoreContract, OfAnEmptyListStoresAnEmptyText) {
  ContractHost host;
  host.answer_contract(kContract, "5 = 'OLD';");
  EXPECT_EQ(stored(host, {}), Texts({"open " + kContract + " [keyset, optimistic]",
                                     "set_value SELEKTION_VALUE = ", "update"}));
}

TEST(StoreContract, StoresWhatWasLoadedAgain) {
  const std::string criteria =
      "5 = 'FI';6 > GETDATE()+1;7 <> 1,5;5 IN ('A', 'B') ;=== ODER ===;5 = Null;";
  ContractHost host;
  host.answer_contract(kContract, criteria);
  host.answer_values(
      "SELECT DISTINCT EXPR(LOG,5) FROM <LOG,0,><LOG,5,R7> WHERE FHP_IMPORT.ERRORTEXT IS NULL AND "
      "FHP_IMPORT.ID_FHP_IMPORT IS NULL ORDER BY 1",
      {});
  host.load("VERTRAG_PREISE", criteria);
  EXPECT_EQ(stored(host, {}), Texts({"open " + kContract + " [keyset, optimistic]",
                                     "set_value SELEKTION_VALUE = " + criteria, "update"}));
}

}  // namespace
}  // namespace kestrova::test
