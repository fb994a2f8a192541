// A run whose caller context names another connection and another currency than that of the start:
// the editor's own queries and lists go by the start, lookups of fields by the run.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/editor/run_host.h"

namespace kestrova::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using Texts = std::vector<std::string>;

const std::string kHoldings = plain_query("ANZAHL");
const std::string kFieldType = "SELECT TOP 0 ANZAHL FROM LAGER";
const std::string kTextNumber = "SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = 11";
const std::string kCriteria = "SELECT MODEL FROM MODELS WHERE ID = 3";

void know_anzahl(RunHost& host, RecordingConnection& connection) {
  const SelektionRow anzahl = {.id = 11, .name = "ANZAHL", .nickname = "ANZAHL", .table = "LAGER"};
  connection.answer("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 11", selektion_columns(),
                    {row_of(anzahl)});
  connection.answer(kFieldType, {{"ANZAHL", FieldType::kInteger}});
  connection.table("LAGER", {{"ANZAHL", FieldType::kInteger}});
  connection.answer(kTextNumber, {{"ID_STRING", FieldType::kInteger}}, {{111}});
  const std::string of_field = " FROM SELEKTION WHERE ID_SELEKTION = 11";
  connection.answer("SELECT TABLE_NAME,TABLE_NAME_II,TABLE_NAME_III" + of_field,
                    {{"TABLE_NAME"}, {"TABLE_NAME_II"}, {"TABLE_NAME_III"}},
                    {{"LAGER", Value(), Value()}});
  connection.answer("SELECT CONDITION, CONDITIONII" + of_field, {{"CONDITION"}, {"CONDITIONII"}},
                    {{Value(), Value()}});
  connection.answer("SELECT SQLSELECT" + of_field, {{"SQLSELECT"}}, {{Value()}});
  connection.answer("SELECT NAME_OF_FIELD, TABLE_NAME, SQLVALUE" + of_field,
                    {{"NAME_OF_FIELD"}, {"TABLE_NAME"}, {"SQLVALUE"}},
                    {{"ANZAHL", "LAGER", Value()}});
  host.suite->answers().texts[111] = "Anzahl";
}

// Started on `connection` in DM; run on `other` in SEK. Only what the rules ask of each is
// scripted, so that any other question fails.
struct TwoConnections : RunHost {
  TwoConnections() {
    answer_fields("SONST", sonst_fields());
    answer_values(kHoldings, {1, 2});
    answer_values(plain_query("EURO"), {true, false});
    answer_models("SONST", {{3, "Alt"}});
    answer_criteria(3, "");
    start("SONST");
    know_anzahl(*this, *other);
    context.dbado = other;
    context.strNatWahrung = "SEK";
    forget();
  }

  const std::shared_ptr<RecordingConnection> other = std::make_shared<RecordingConnection>();
};

TEST(RunOnAnotherConnection, PicksValuesOfTheStart) {
  TwoConnections host;
  host.run("", false, [&] {
    host.pick(host.editor->cboField, "Anzahl");
    EXPECT_THAT(host.texts_of(host.editor->cboValue), ElementsAre("Null", "1", "2"));
    EXPECT_THAT(host.connection->statements(), Contains(kHoldings));
    EXPECT_THAT(host.other->statements(), Not(Contains(kHoldings)));
    host.compose("Anzahl", "=", "2");
    host.forget();
    host.other->clear_log();
    host.editor->btnInsert_Click();
    EXPECT_EQ(host.other->statements().front(), "SELECT * FROM SELEKTION WHERE ID_SELEKTION = 11")
        << "the field's type is a lookup";
    EXPECT_THAT(host.lines(), ElementsAre("Anzahl = 2"));
  });
}

TEST(RunInAnotherCurrency, OffersTheUnitsOfTheStart) {
  TwoConnections host;
  host.other->answer("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 18", selektion_columns(),
                     {row_of(sonst_fields()[8].row)});
  host.other->table("LAGER", {{"EURO", FieldType::kBoolean}});
  host.other->answer("SELECT TOP 0 EURO FROM LAGER", {{"EURO", FieldType::kBoolean}});
  host.run("", false, [&] {
    host.pick(host.editor->cboField, "DM/EURO");
    EXPECT_THAT(host.texts_of(host.editor->cboValue), ElementsAre("EURO", "DM"));
  });
}

TEST(RunOnAnotherConnection, LoadsModelsOfTheStart) {
  TwoConnections host;
  host.answer_criteria(3, "11 >= 5;");
  host.connection->open(kCriteria, CursorType::kForwardOnly, LockType::kReadOnly);
  host.run("", false, [&] {
    host.forget();
    host.other->clear_log();
    host.editor->Model_DblClick();
    EXPECT_THAT(host.lines(), ElementsAre("Anzahl >= 5"));
    EXPECT_EQ(host.connection->statements().front(), kCriteria);
    EXPECT_THAT(host.connection->statements(), Not(Contains(kTextNumber)));
    EXPECT_EQ(host.other->statements().front(), kTextNumber);
    EXPECT_THAT(host.other->statements(), Not(Contains(kCriteria)));
  });
}

TEST(RunOnAnotherConnection, CommitsByItsOwnLookups) {
  TwoConnections host;
  RunHost::Results results;
  host.run("", false, [&] {
    host.fill_lines({{"Anzahl = 2", 11}});
    host.forget();
    host.other->clear_log();
    host.editor->btnOK2_Click(results.text, results.formula);
  });
  EXPECT_EQ(results.text, " LAGER WHERE (LAGER.ANZAHL = 2)");
  EXPECT_THAT(host.connection->statements(), IsEmpty());
  EXPECT_THAT(host.other->statements(),
              Contains("SELECT NAME_OF_FIELD, TABLE_NAME, SQLVALUE FROM SELEKTION WHERE "
                       "ID_SELEKTION = 11"));
}

TEST(RunOnAnotherConnection, ReadsAndStoresTheContractOfTheStart) {
  RunHost host;
  host.offer("LOG", {{"Holzart", 5}});
  host.answer_models("VERTP");
  const std::string value = "SELECT SELEKTION_VALUE FROM VERTRAG_PREISE WHERE ID = 12";
  const std::string row = "SELECT * FROM VERTRAG_PREISE WHERE ID = 12";
  host.connection->answer(value, {{"SELEKTION_VALUE"}}, {{"=== ODER ===;5 = 'FI';"}});
  host.answer_contract(row, "5 = 'OLD';");
  host.answer_values(
      "SELECT DISTINCT EXPR(LOG,5) FROM <LOG,0,><LOG,5,R7> WHERE FHP_IMPORT.ERRORTEXT IS NULL "
      "AND FHP_IMPORT.ID_FHP_IMPORT IS NULL ORDER BY 1",
      {"FI"});
  host.start("VERTP12");
  const auto other = std::make_shared<RecordingConnection>();
  host.context.dbado = other;
  host.forget();
  host.run("", false, [&] {
    EXPECT_THAT(host.lines(), ElementsAre("=== ODER ===", "Holzart = 'FI'"));
    host.editor->ListCriteria.set_index(0);
    host.editor->btnDelete_Click();
    host.editor->btnOk_Click();
  });
  EXPECT_EQ(host.connection->statements().front(), value);
  EXPECT_EQ(host.connection->statements().back(), row);
  EXPECT_EQ(host.connection->open(row, CursorType::kForwardOnly, LockType::kReadOnly)
                ->value("SELEKTION_VALUE"),
            Value("5 = 'FI';"));
  EXPECT_THAT(other->log(), IsEmpty()) << "the suite knows the fields";
}

}  // namespace
}  // namespace kestrova::test
