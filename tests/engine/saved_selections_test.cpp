// D_Selection: a saved model as FROM/WHERE text. ConditionSelStr: a criteria string for people.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/engine/engine_host.h"
#include "tests/engine/failure_sweep.h"
#include "tests/support/golden.h"

namespace kestrova::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// --- Saved models -----------------------------------------------------------------------------

std::string model_query(const std::string& name, const std::string& relation) {
  return "SELECT MODEL FROM MODELS WHERE NAME = '" + name + "' AND RELATION = '" + relation + "'";
}

class SavedModel : public ::testing::Test {
 protected:
  void save(const std::string& name, const std::string& relation, Rows rows) {
    host.connection->answer(model_query(name, relation), {{"MODEL", FieldType::kLongVarWChar}},
                            std::move(rows));
  }

  std::string select(std::string_view relation, std::string_view name) {
    return host.engine.D_Selection(host.context, relation, name, "V", level);
  }

  // What the criteria string itself is translated to.
  std::string translated(std::string_view relation, std::string_view mode,
                         std::string_view criteria) {
    return host.engine.D_SelectionFromStr(host.context, relation, mode, criteria, "V", level);
  }

  EngineHost host;
  std::int32_t level = 9;
};

TEST_F(SavedModel, IsLookedUpByNameAndModelRelationAndTranslated) {
  save("Hunde", "JAGD_HUNDE", {{"12 = 5;"}});
  host.suite->answers().field_formats[112] = "0";
  EXPECT_EQ(select("JAGD_HUNDE", "Hunde"),
            " FROM <BBHUNDE,0,><BBHUNDE,112,V> WHERE (EXPR(BBHUNDE,112) = 5)");
  const std::vector<std::string> calls = host.calls();
  ASSERT_GE(calls.size(), 2U);
  EXPECT_EQ(calls[0], opened(model_query("Hunde", "JAGD_HUNDE")));
  EXPECT_EQ(calls[1], "#1 close");
  EXPECT_EQ(host.connection->statements().size(), 1U);
  EXPECT_EQ(host.suite->live_services(), 0U);
}

TEST_F(SavedModel, ResultIsTheTranslatorsUnchanged) {
  const std::string criteria = "12 = 'X';=== ODER ===;3 <> NULL;";
  for (const auto& [code, relation] :
       {std::pair<const char*, const char*>{"2PVA3", "2PVK"}, {"EXP_VER4", "2VABR"}}) {
    save("X", relation, {{criteria}});
    const std::string result = select(code, "X");
    EXPECT_EQ(result, translated(code, relation, criteria)) << code;
    EXPECT_NE(result, translated(code, relation, "")) << code;
  }
}

TEST_F(SavedModel, RelationIsTheModelRelationOfTheCode) {
  for (const auto& [code, relation] : {std::pair<const char*, const char*>{"2PVA3", "2PVK"},
                                       {"EXP_VER4", "2VABR"},
                                       {" bbf ", "BBF"},
                                       {"2ABR7", "2ABR1"},
                                       {"2ABR7-A", "2ABR7-A"},
                                       {"2TOP", "2TOP"}}) {
    EngineHost fresh;
    fresh.connection->answer(model_query("X", relation), {{"MODEL"}});
    fresh.engine.D_Selection(fresh.context, code, "X", "V", level);
    EXPECT_EQ(fresh.connection->statements(), std::vector<std::string>{model_query("X", relation)})
        << code;
  }
}

TEST_F(SavedModel, WithoutANameNothingIsLookedUp) {
  EXPECT_EQ(select("JAGD_HUNDE", ""), " FROM <BBHUNDE,0,>  ");
  EXPECT_THAT(host.connection->statements(), IsEmpty());
}

TEST_F(SavedModel, WithoutANameNoConnectionIsNeeded) {
  host.context.dbado = nullptr;
  EXPECT_EQ(select("JAGD_HUNDE", ""), " FROM <BBHUNDE,0,>  ");
  EXPECT_THROW(select("JAGD_HUNDE", "Hunde"), ObjectNotSet);
}

TEST_F(SavedModel, ABlankIsAName) {
  save(" ", "JAGD_HUNDE", {{"12 = 5;"}});
  EXPECT_EQ(select("JAGD_HUNDE", " "),
            " FROM <BBHUNDE,0,><BBHUNDE,112,V> WHERE (EXPR(BBHUNDE,112) = 5)");
}

TEST_F(SavedModel, AnUnknownNameGivesTheBaseTextAlone) {
  save("Nichts", "JAGD_HUNDE", {});
  EXPECT_EQ(select("JAGD_HUNDE", "Nichts"), " FROM <BBHUNDE,0,>  ");
  const std::vector<std::string> calls = host.calls();
  ASSERT_GE(calls.size(), 2U);
  EXPECT_EQ(calls[0], opened(model_query("Nichts", "JAGD_HUNDE")));
  EXPECT_EQ(calls[1], "#1 close");
  EXPECT_EQ(host.connection->statements().size(), 1U);
}

TEST_F(SavedModel, AModelWithoutTextGivesTheBaseTextAlone) {
  save("Leer", "JAGD_HUNDE", {{Value()}});
  EXPECT_EQ(select("JAGD_HUNDE", "Leer"), " FROM <BBHUNDE,0,>  ");
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

TEST_F(SavedModel, TheFirstOfSeveralModelsIsTaken) {
  save("Hunde", "JAGD_HUNDE", {{"12 = 5;"}, {"3 = 6;"}});
  EXPECT_EQ(select("JAGD_HUNDE", "Hunde"),
            " FROM <BBHUNDE,0,><BBHUNDE,112,V> WHERE (EXPR(BBHUNDE,112) = 5)");
}

// A name goes into the query as it stands.
TEST_F(SavedModel, ANameThatCouldEndItsLiteralIsRefusedBeforeAnythingIsAsked) {
  for (const char* name : {"O'Brien", "x' OR '1'='1", "a\tb", "a\xC2\x85"}) {
    EXPECT_THROW(select("JAGD_HUNDE", name), InvalidArgument) << name;
  }
  EXPECT_THAT(*host.log, ::testing::IsEmpty());
}

TEST_F(SavedModel, IsClosedBeforeItIsTranslated) {
  save("Kaputt", "JAGD_HUNDE", {{"Menge = 5;"}});
  EXPECT_THROW(select("JAGD_HUNDE", "Kaputt"), TypeMismatch);
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
  EXPECT_EQ(host.calls()[1], "#1 close");
}

// --- The mode is the model relation

TEST_F(SavedModel, OfAWorkOrderIsTranslatedInTheModeOfWorkOrders) {
  save("Offen", "4ARB", {{"12 = 'X';"}});
  host.connection->answer("SELECT TOP 0 EXPR(BBF,112) FROM <BBF,112,R7>",
                          {{"", FieldType::kVarWChar}});
  EXPECT_EQ(select("4ARB17", "Offen"),
            " FROM <BBF,112,R7> WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17 AND"
            " (EXPR(BBF,112) = 'X')");
  EXPECT_EQ(select("4ARB", "Offen"), " FROM <BBF,112,R7> WHERE (EXPR(BBF,112) = 'X')");
}

TEST_F(SavedModel, OfTheArticlesIsTranslated) {
  save("Lager", "WAREN", {{"12 = 5;"}});
  EXPECT_EQ(select("WAREN", "Lager"), translated("WAREN", "WAREN", "12 = 5;"));
  EXPECT_NE(select("WAREN", "Lager"), translated("WAREN", "WAREN", ""));
}

TEST_F(SavedModel, OfACodeThatOnlyMeansTheArticlesIsTranslatedInTheirMode) {
  const SelektionRow menge = {.id = 12, .name = "MENGE", .table = "WARENKATALOG"};
  save("Lager", "WAREN", {{"12 = 5;"}});
  host.know_fields({{0, menge}}, FieldType::kInteger);
  EXPECT_EQ(select(" waren ", "Lager"),
            " FROM <WAREN,0,V>,WARENKATALOG WHERE (WARENKATALOG.MENGE = 5)");
}

TEST_F(SavedModel, OfARelationWithoutAModeIsLookedUpButGivesNothing) {
  for (const char* code : {"BBF", "PERSONAL", "SONST"}) save("X", code, {{"12 = 5;"}});
  EXPECT_EQ(select("BBF", "X"), "");
  EXPECT_EQ(select("PERSONAL", "X"), "");
  EXPECT_EQ(select("SONST", "X"), "");
  EXPECT_EQ(select("SONST", ""), "");
  EXPECT_EQ(host.connection->statements().size(), 3U);
}

TEST_F(SavedModel, OfALowerCaseWorkOrderHasNoMode) {
  save("Offen", "4ARB17", {{"12 = 'X';"}});
  EXPECT_EQ(select("4arb17", "Offen"), "");
}

TEST_F(SavedModel, OfLabourBookingsFillsTheTemporaryTable) {
  save("Heute", "LEISTUNGS_BB", {{"12 = 5;"}});
  const std::string result = select("LEISTUNGS_BB_MV", "Heute");
  ASSERT_EQ(host.connection->statements().size(), 3U);
  EXPECT_EQ(host.connection->statements()[1], "DROP TABLE #BB_LEISTUNGS_KOPF");
  EXPECT_EQ(result, translated("LEISTUNGS_BB_MV", "LEISTUNGS_BB", "12 = 5;"));
}

// --- What is passed on

TEST_F(SavedModel, PassesTheAccessLevelAndTheVariantTagOn) {
  save("Lang", "1VVM", {{"12 = 5;"}});
  EXPECT_EQ(host.engine.D_Selection(host.context, "1VVM", "Lang", "V", level),
            " FROM <VERTRAG,0,><VERTRAG,112,V> WHERE VERTRAEGE.ID_FAKTART = 0 {VERTRAEGE,9} AND"
            " (EXPR(VERTRAG,112) = 5)");
  level = -4;
  EXPECT_EQ(host.engine.D_Selection(host.context, "1VVM", "Lang", "W", level),
            " FROM <VERTRAG,0,><VERTRAG,112,W> WHERE VERTRAEGE.ID_FAKTART = 0 {VERTRAEGE,-4} AND"
            " (EXPR(VERTRAG,112) = 5)");
  EXPECT_EQ(level, -4);
}

// --- A criteria string for people -------------------------------------------------------------

std::string name_query(int id) {
  return "SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = " + std::to_string(id);
}

const SelektionRow kMenge = {.id = 3, .name = "MENGE", .table = "LAGER"};
const SelektionRow kOrt = {.id = 12,
                           .name = "ORT",
                           .table = "LAGER",
                           .table2 = "PERSONAL",
                           .sqlselect = "INNER",
                           .sqlvalue = "PERSONAL.NAME"};
const SelektionRow kDatum = {.id = 14, .name = "DATUM", .table = "LAGER"};

class Described : public ::testing::Test {
 protected:
  Described() {
    know(kMenge, FieldType::kDouble, 1003);
    know(kOrt, FieldType::kVarWChar, 1012);
    know(kDatum, FieldType::kDBTimeStamp, 1014);
  }

  void know(const SelektionRow& field, FieldType type, Value id_string) {
    host.know_type(field, type);
    host.connection->answer(name_query(field.id), {{"ID_STRING", FieldType::kInteger}},
                            {{std::move(id_string)}});
  }

  std::string described(std::string_view criteria, std::string_view relation = "SONST") {
    return host.engine.ConditionSelStr(host.context, relation, criteria);
  }

  EngineHost host;
};

TEST_F(Described, AnEmptyStringIsAnEmptyText) {
  host.context.dbado = nullptr;
  EXPECT_EQ(described(""), "");
  EXPECT_THAT(*host.log, IsEmpty());
}

TEST_F(Described, OneCriterionIsOneLine) {
  EXPECT_EQ(described("3 >= 10;"), "1003 >= 10");
  EXPECT_EQ(described("12 LIKE 'A%';"), "1012 LIKE 'A%'");
  EXPECT_EQ(described("12 <> 'O'Neill';"), "1012 <> 'O'Neill'");
  EXPECT_EQ(described("12 = '';"), "1012 = ''");
}

TEST_F(Described, CriteriaAreLinesInTheirOrder) {
  EXPECT_EQ(described("12 = 'X';3 > 5;12 = 'Y';"), "1012 = 'X'\r\n1003 > 5\r\n1012 = 'Y'");
}

TEST_F(Described, AnOrLineIsALineOfItsOwn) {
  EXPECT_EQ(described("12 = 'X';=== ODER ===;3 > 5;"), "1012 = 'X'\r\n ODER \r\n1003 > 5");
  EXPECT_EQ(described("=== ODER ===;"), " ODER ");
  EXPECT_EQ(described("=== ODER ===;=== ODER ===;"), " ODER \r\n ODER ");
  EXPECT_EQ(described("=== ODER ===;3 > 5;"), " ODER \r\n1003 > 5");
  EXPECT_EQ(described("3 > 5;=== ODER ===;"), "1003 > 5\r\n ODER ");
}

TEST_F(Described, TheOrLineNeedsNoDatabase) {
  host.context.dbado = nullptr;
  EXPECT_EQ(described("=== ODER ===;"), " ODER ");
  EXPECT_THAT(*host.log, IsEmpty());
}

TEST_F(Described, TheOrLineIsTheCallers) {
  host.context.strOderLine = "--- OR ---";
  EXPECT_EQ(described("3 > 5;--- OR ---;3 > 6;"), "1003 > 5\r\n ODER \r\n1003 > 6");
  EXPECT_THROW(described("=== ODER ===;"), InvalidArgument);
  EXPECT_THROW(described("--- or ---;"), TypeMismatch);
}

TEST_F(Described, TextBehindTheLastSeparatorIsLeftOut) {
  EXPECT_EQ(described("12 = 'X'"), "");
  EXPECT_EQ(described("=== ODER ==="), "");
  EXPECT_EQ(described("3 > 5;12 = 'X'"), "1003 > 5");
  EXPECT_EQ(described("3 > 5;=== ODER ==="), "1003 > 5");
  EXPECT_EQ(described("3 > 5; "), "1003 > 5");
}

TEST_F(Described, AListBelongsToTheOperatorAndLeavesTheValueEmpty) {
  EXPECT_EQ(described("3 IN (1,2);"), "1003 IN (1,2) ");
  EXPECT_EQ(described("3 IN (1,2);12 = 'X';"), "1003 IN (1,2) \r\n1012 = 'X'");
  EXPECT_EQ(described("3 = ;"), "1003 = ");
}

TEST_F(Described, AFieldWithoutATextHasAnEmptyName) {
  know({.id = 20, .name = "F", .table = "T"}, FieldType::kInteger, Value());
  EXPECT_EQ(described("20 = 5;"), " = 5");
}

TEST_F(Described, TheFirstRowNamesTheField) {
  const SelektionRow field = {.id = 20, .name = "F", .table = "T"};
  host.know_type(field, FieldType::kInteger);
  host.connection->answer(name_query(20), {{"ID_STRING"}}, {{7}, {8}});
  EXPECT_EQ(described("20 = 5;"), "7 = 5");
}

// --- Dates

TEST_F(Described, ADateComesInTheFixedForm) {
  EXPECT_EQ(described("14 >= 3/4/2021;"), "1014 >= '03.04.2021'");
  EXPECT_EQ(described("14 >= '3/4/2021';"), "1014 >= '03.04.2021'");
  host.context.strDateOrder = "MDY";
  EXPECT_EQ(described("14 >= 3/4/2021;"), "1014 >= '04.03.2021'");
  host.context.strDateOrder = "ymd";
  EXPECT_EQ(described("14 >= 2021/4/3;"), "1014 >= '03.04.2021'");
}

TEST_F(Described, ADateInAnotherFormStaysAsItIs) {
  for (const char* value :
       {"'03.04.2021'", "3.4.2021", "GETDATE()-5", "GETDATE() - 30", "'2021/4'", "1/2/3/4", "''"}) {
    EXPECT_EQ(described(std::string("14 < ") + value + ";"), std::string("1014 < ") + value);
  }
}

TEST_F(Described, NullStaysNull) {
  EXPECT_EQ(described("14 = NULL;"), "1014 = NULL");
  EXPECT_EQ(described("14 = null;"), "1014 = null");
  EXPECT_EQ(described("14 <> Null;"), "1014 <> Null");
  EXPECT_EQ(described("14 = 'Null';"), "1014 = Null");
  EXPECT_EQ(described("12 = 'null';"), "1012 = Null");
  EXPECT_EQ(described("3 = nuLL;"), "1003 = nuLL");
}

TEST_F(Described, DatesOfAListComeInTheFixedForm) {
  EXPECT_EQ(described("14 IN (3/4/2021,'5/6/2021',,GETDATE()-1);"),
            "1014 IN ('03.04.2021','05.06.2021',GETDATE()-1) ");
  EXPECT_EQ(described("3 IN (3/4/2021,,5);"), "1003 IN (3/4/2021,,5) ");
}

TEST_F(Described, OnlyDateFieldsHaveDates) {
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/is_date_field_type.tsv")) {
    const int code = row.number("field_type");
    if (code < 0 || code > 210) continue;
    SCOPED_TRACE(code);
    EngineHost fresh;
    fresh.know_type(kDatum, static_cast<FieldType>(code));
    fresh.connection->answer(name_query(14), {{"ID_STRING"}}, {{1014}});
    EXPECT_EQ(fresh.engine.ConditionSelStr(fresh.context, "SONST", "14 = '3/4/2021';"),
              row.flag("is_date") ? "1014 = '03.04.2021'" : "1014 = '3/4/2021'");
  }
}

TEST_F(Described, AnImpossibleDateIsAnError) {
  EXPECT_THROW(described("14 = 31/6/2021;"), TypeMismatch);
  EXPECT_THROW(described("14 = a/b/c;"), TypeMismatch);
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

// --- Where the type comes from

TEST_F(Described, ACatalogueRelationAsksTheDisplayFormat) {
  host.suite->answers().field_formats[114] = "dd.mm.yyyy";
  EXPECT_EQ(described("14 = 3/4/2021;3 = 3/4/2021;", "1WL"),
            "1014 = '03.04.2021'\r\n1003 = 3/4/2021");
  EXPECT_EQ(host.connection->statements(),
            (std::vector<std::string>{name_query(14), name_query(3)}));
}

TEST_F(Described, ARestrictedRelationAsksTheExpression) {
  host.connection->answer("SELECT TOP 0 EXPR(BBF,114) FROM <BBF,114,R7>", {{"", FieldType::kDate}});
  EXPECT_EQ(described("14 = 3/4/2021;", "BBF"), "1014 = '03.04.2021'");
}

TEST_F(Described, TheNameIsAskedFirstAndClosedBeforeTheType) {
  described("3 > 5;12 = 'X';");
  std::vector<std::string> seen = host.calls();
  const std::vector<std::string> type_of_menge = {
      opened("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 3"), "close",
      opened("SELECT TOP 0 MENGE FROM LAGER"), "type MENGE", "close"};
  const std::vector<std::string> type_of_ort = {
      opened("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 12"), "close",
      opened("SELECT TOP 0 NAME FROM PERSONAL"), "type NAME", "close"};
  // The value, the date test and the operator each ask for the type.
  std::vector<std::string> expected = {opened(name_query(3)), "close"};
  for (int i = 0; i < 3; ++i) {
    expected.insert(expected.end(), type_of_menge.begin(), type_of_menge.end());
  }
  expected.insert(expected.end(), {opened(name_query(12)), "close"});
  for (int i = 0; i < 3; ++i) {
    expected.insert(expected.end(), type_of_ort.begin(), type_of_ort.end());
  }
  for (std::string& line : seen) {
    if (line.starts_with('#')) line.erase(0, line.find(' ') + 1);
  }
  EXPECT_EQ(seen, expected);
}

// --- Bad input

TEST_F(Described, AFieldPartThatIsNoNumberIsRefusedAndNothingIsSent) {
  for (const char* criteria : {"Menge = 5;", "12a = 5;", "1 2 = 5;", "12;", ";", "12 5;", ">= 5;",
                               "<> 5;", "LIKE 'A%';", "IN (1,2);", "0 OR 1 = 1;"}) {
    SCOPED_TRACE(criteria);
    EXPECT_THROW(described(criteria), TypeMismatch);
    EXPECT_THAT(host.connection->statements(), IsEmpty());
  }
}

TEST_F(Described, AnOperatorAtTheStartIsAnInvalidArgument) {
  EXPECT_THROW(described("= 5;"), InvalidArgument);
  EXPECT_THROW(described("> 5;"), InvalidArgument);
  EXPECT_THAT(host.connection->statements(), IsEmpty());
}

TEST_F(Described, AnIdentifierBeyond16BitsIsAnOverflow) {
  EXPECT_THROW(described("32768 = 5;"), Overflow);
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

TEST_F(Described, AFieldThatSelektionDoesNotHoldIsReadAtTheEnd) {
  host.connection->answer(name_query(99), {{"ID_STRING"}});
  EXPECT_THROW(described("99 = 5;"), NoCurrentRecord);
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

TEST_F(Described, ACriterionNeedsAConnection) {
  host.context.dbado = nullptr;
  EXPECT_THROW(described("3 > 5;"), ObjectNotSet);
}

TEST_F(Described, AMegabyteOfTextIsOneValue) {
  const std::string value = "'" + std::string(1U << 20, 'x') + "'";
  EXPECT_EQ(described("12 = " + value + ";"), "1012 = " + value);
}

// --- Failures ---------------------------------------------------------------------------------

struct Selection : EngineHost {
  Selection() {
    connection->answer(model_query("Offen", "4ARB"), {{"MODEL"}},
                       {{"12 = 'X';=== ODER ===;3 > 5;"}});
    for (const char* number : {"112", "103"}) {
      const std::string n = number;
      connection->answer("SELECT TOP 0 EXPR(BBF," + n + ") FROM <BBF," + n + ",R7>",
                         {{"", FieldType::kVarWChar}});
    }
  }
  std::string run() { return engine.D_Selection(context, "4ARB17", "Offen", "V", 9); }
};

struct Description : EngineHost {
  Description() {
    for (const char* id : {"12", "3"}) {
      const std::string number = std::string("10") + id;
      connection->answer(std::string("SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = ") + id,
                         {{"ID_STRING"}}, {{number}});
    }
    for (const char* number : {"112", "103"}) {
      const std::string n = number;
      connection->answer("SELECT TOP 0 EXPR(BBF," + n + ") FROM <BBF," + n + ",R7>",
                         {{"", FieldType::kDate}});
    }
  }
  std::string run() {
    return engine.ConditionSelStr(context, "BBF", "12 = 3/4/2021;=== ODER ===;3 > GETDATE();");
  }
};

TEST(SavedModelFailures, EveryDatabaseCall) {
  expect_every_database_failure_to_reach_the_caller<Selection>();
}

TEST(SavedModelFailures, EveryServiceCall) {
  expect_every_service_failure_to_reach_the_caller<Selection>();
}

TEST(DescribedFailures, EveryDatabaseCall) {
  expect_every_database_failure_to_reach_the_caller<Description>();
}

TEST(DescribedFailures, EveryServiceCall) {
  expect_every_service_failure_to_reach_the_caller<Description>();
}

}  // namespace
}  // namespace kestrova::test
