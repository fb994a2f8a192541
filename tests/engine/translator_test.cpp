// D_SelectionFromStr: a stored filter as the FROM/WHERE text of a statement.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/engine/engine_host.h"

namespace kestrova::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A field of one table; a field reached through one further table; one reached through two.
const SelektionRow kMenge = {.id = 3, .name = " MENGE ", .table = " LAGER "};
const SelektionRow kName = {.id = 12,
                            .name = "NAME",
                            .table = "LAGER",
                            .table2 = "PERSONAL",
                            .sqlselect = "INNER",
                            .sqlvalue = "PERSONAL.NAME",
                            .condition = "LAGER.ID_PERSONAL = PERSONAL.ID"};
const SelektionRow kOrt = {.id = 20,
                           .name = "ORT",
                           .table = "LAGER",
                           .table2 = "PERSONAL",
                           .table3 = "ORTE",
                           .sqlselect = "TRIPLE",
                           .sqlvalue = "ORTE.ORT",
                           .condition = "LAGER.ID_PERSONAL = PERSONAL.ID",
                           .condition2 = "PERSONAL.ID_ORT = ORTE.ID"};

// kMenge with names that a statement without blanks can be written from.
SelektionRow plain() {
  SelektionRow field = kMenge;
  field.name = "MENGE";
  field.table = "LAGER";
  return field;
}

class Translator : public ::testing::Test {
 protected:
  std::string translate(std::string_view relation, std::string_view mode,
                        std::string_view criteria) {
    return host.engine.D_SelectionFromStr(host.context, relation, mode, criteria, "V", 9);
  }

  // The text for fields outside the catalogue in mode "WAREN", each of a number type.
  std::string translate_fields(const std::vector<IndexedField>& fields, std::string_view criteria) {
    host.know_fields(fields, FieldType::kInteger);
    return translate("SONST", "WAREN", criteria);
  }

  // The text of criteria for a relation without base condition, field n being EXPR(BBHUNDE,100+n).
  std::string criteria_text(std::string_view criteria) {
    return translate("JAGD_HUNDE", "", criteria);
  }

  EngineHost host;
};

// --- Which relations -------------------------------------------------------------------------

TEST_F(Translator, ARelationOutsideTheCatalogueNeedsAMode) {
  for (const char* mode : {"", "waren", "4arb", "WAREN ", "4ARB17", "X"}) {
    EXPECT_EQ(translate("SONST", mode, "12 = 'X';"), "") << mode;
    EXPECT_EQ(translate("BBF", mode, "12 = 'X';"), "") << mode;
    EXPECT_EQ(translate("4ARB", mode, ""), "") << mode;
  }
  EXPECT_THAT(*host.log, IsEmpty());
}

TEST_F(Translator, ACatalogueRelationNeedsNoMode) {
  for (const char* mode : {"", "WAREN", "4ARB", "X"}) {
    EXPECT_EQ(translate("JAGD_HUNDE", mode, "12 = 'X';"),
              " FROM <BBHUNDE,0,><BBHUNDE,112,V> WHERE (EXPR(BBHUNDE,112) = 'X')")
        << mode;
  }
}

TEST_F(Translator, ACatalogueRelationAsksTheSuite) {
  EXPECT_EQ(translate("VERTSCH_BB", "", ""),
            " FROM <BBVS,0,> WHERE  {BB_VERTEILSCHLUSSEL_KOPF,9} ");
  host.connection->clear_log();
  EXPECT_EQ(translate("1VVM", "", "12 = 'X';"),
            " FROM <VERTRAG,0,><VERTRAG,112,V> WHERE VERTRAEGE.ID_FAKTART = 0 {VERTRAEGE,9} AND"
            " (EXPR(VERTRAG,112) = 'X')");
  EXPECT_THAT(host.calls(), ElementsAre("AddFieldTables('VERTRAG', 0, '', '')",
                                        "restrict('VERTRAEGE', 'VERTRAEGE.ID_FAKTART = 0', 9)",
                                        "MapFieldId('1VVM', 12)", "field_format('VERTRAG', 112)",
                                        "MapFieldId('1VVM', 12)", "field_format('VERTRAG', 112)",
                                        "MapFieldId('1VVM', 12)",
                                        "AddFieldTables('VERTRAG', 112, '<VERTRAG,0,>', 'V')",
                                        "GetFieldExpression('VERTRAG', 112, 0, 0)"));
  EXPECT_EQ(host.suite->live_services(), 0U);
}

TEST_F(Translator, ARelationInBothSetsHasTheBaseOfTheCatalogueAndRestrictedFields) {
  EXPECT_EQ(translate("2PVK", "", "12 = 'X';"),
            " FROM <PERSONAL,0,><PERSONAL,112,R7> WHERE PERSONAL.KUNDE = 1 {PERSONAL,9} AND"
            " (EXPR(PERSONAL,112) = 'X')");
  EXPECT_THAT(host.calls(),
              ElementsAre("AddFieldTables('PERSONAL', 0, '', '')",
                          "restrict('PERSONAL', 'PERSONAL.KUNDE = 1', 9)", "MapFieldId('2PVK', 12)",
                          "field_format('PERSONAL', 112)", "MapFieldId('2PVK', 12)",
                          "field_format('PERSONAL', 112)", "MapFieldId('2PVK', 12)",
                          "AddFieldTables('PERSONAL', 112, '<PERSONAL,0,>', 'R7')",
                          "GetFieldExpression('PERSONAL', 112, 0, 0)"));
}

TEST_F(Translator, AWorkOrderFilterTakesThePersonnelNumberAndRestrictedFields) {
  host.connection->answer("SELECT TOP 0 EXPR(BBF,112) FROM <BBF,112,R7>",
                          {{"", FieldType::kVarWChar}});
  host.connection->answer("SELECT TOP 0 EXPR(BBF,103) FROM <BBF,103,R7>",
                          {{"", FieldType::kInteger}});
  EXPECT_EQ(translate("4ARB17", "4ARB", "12 = 'X';=== ODER ===;3 > 5;"),
            " FROM <BBF,112,R7><BBF,103,R7> WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17 AND"
            " (EXPR(BBF,112) = 'X' OR EXPR(BBF,103) > 5)");
  EXPECT_THAT(
      host.calls(),
      ElementsAre("MapFieldId('4ARB17', 12)", "AddFieldTables('BBF', 112, '', 'R7')",
                  "GetFieldExpression('BBF', 112, 0, 0)",
                  opened("SELECT TOP 0 EXPR(BBF,112) FROM <BBF,112,R7>"), "#1 type 0", "#1 close",
                  "MapFieldId('4ARB17', 12)", "AddFieldTables('BBF', 112, '', 'R7')",
                  "GetFieldExpression('BBF', 112, 0, 0)",
                  opened("SELECT TOP 0 EXPR(BBF,112) FROM <BBF,112,R7>"), "#2 type 0", "#2 close",
                  "MapFieldId('4ARB17', 12)", "AddFieldTables('BBF', 112, '', 'R7')",
                  "GetFieldExpression('BBF', 112, 0, 0)",  //
                  "MapFieldId('4ARB17', 3)", "AddFieldTables('BBF', 103, '', 'R7')",
                  "GetFieldExpression('BBF', 103, 0, 0)",
                  opened("SELECT TOP 0 EXPR(BBF,103) FROM <BBF,103,R7>"), "#3 type 0", "#3 close",
                  "MapFieldId('4ARB17', 3)", "AddFieldTables('BBF', 103, '', 'R7')",
                  "GetFieldExpression('BBF', 103, 0, 0)",
                  opened("SELECT TOP 0 EXPR(BBF,103) FROM <BBF,103,R7>"), "#4 type 0", "#4 close",
                  "MapFieldId('4ARB17', 3)", "AddFieldTables('BBF', 103, '<BBF,112,R7>', 'R7')",
                  "GetFieldExpression('BBF', 103, 0, 0)"));
}

TEST_F(Translator, AWorkOrderFilterOfAllPersonsHasNoBaseCondition) {
  host.connection->answer("SELECT TOP 0 EXPR(BBF,112) FROM <BBF,112,R7>",
                          {{"", FieldType::kInteger}});
  EXPECT_EQ(translate("4ARB", "4ARB", "12 = 5;"), " FROM <BBF,112,R7> WHERE (EXPR(BBF,112) = 5)");
}

TEST_F(Translator, TheWorkOrderCodeCountsInUpperCaseOnlyForTheBaseCondition) {
  host.connection->answer("SELECT TOP 0 EXPR(LOG,112) FROM <LOG,112,R7>",
                          {{"", FieldType::kInteger}});
  EXPECT_EQ(translate("4arb", "4ARB", "12 = 5;"),
            " FROM <LOG,112,R7> WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID= AND (EXPR(LOG,112) = 5)");
}

TEST_F(Translator, ThePersonnelNumberStandsBehindFourCharacters) {
  EXPECT_EQ(translate("ÄÖÜß17", "4ARB", ""), " FROM  WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17 ");
  EXPECT_EQ(translate("ABC", "4ARB", ""), " FROM  WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID= ");
}

TEST_F(Translator, GoodsOfARestrictedRelationStartFromTheGoodsTable) {
  host.connection->answer("SELECT TOP 0 EXPR(PERSONAL,112) FROM <PERSONAL,112,R7>",
                          {{"", FieldType::kInteger}});
  EXPECT_EQ(translate("PERSONAL", "WAREN", "12 = 5;"),
            " FROM <WAREN,0,V><PERSONAL,112,R7> WHERE (EXPR(PERSONAL,112) = 5)");
}

// --- Fields of the SELEKTION table -----------------------------------------------------------

TEST_F(Translator, TheCatalogueQueryStaysOpenWhileTypesAreLookedUp) {
  const std::vector<IndexedField> fields = {{0, kName}, {2, plain()}};
  EXPECT_EQ(translate_fields(fields, "12 = 'X';=== ODER ===;3 > 5;"),
            " FROM <WAREN,0,V>,LAGER,PERSONAL WHERE LAGER.ID_PERSONAL = PERSONAL.ID AND"
            " (PERSONAL.NAME = 'X' OR LAGER.MENGE > 5)");
  EXPECT_THAT(
      host.calls(),
      ElementsAre(
          "AddFieldTables('WAREN', 0, '', 'V')",
          opened("SELECT 0 AS XXX,* FROM SELEKTION WHERE ID_SELEKTION = 12"
                 " UNION SELECT 2 AS XXX,* FROM SELEKTION WHERE ID_SELEKTION = 3 ORDER BY XXX"),
          // Field 12: its type for the operator and for the value, then its tables.
          opened("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 12"), "#2 close",
          opened("SELECT TOP 0 NAME FROM PERSONAL"), "#3 type NAME", "#3 close",
          opened("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 12"), "#4 close",
          opened("SELECT TOP 0 NAME FROM PERSONAL"), "#5 type NAME", "#5 close",
          "AddTable('<WAREN,0,V>', 'LAGER', 'V')", "AddTable('<WAREN,0,V>,LAGER', 'PERSONAL', 'V')",
          "#1 move_next",
          // Field 3.
          opened("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 3"), "#6 close",
          opened("SELECT TOP 0 MENGE FROM LAGER"), "#7 type MENGE", "#7 close",
          opened("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 3"), "#8 close",
          opened("SELECT TOP 0 MENGE FROM LAGER"), "#9 type MENGE", "#9 close",
          "AddTable('<WAREN,0,V>,LAGER,PERSONAL', 'LAGER', 'V')", "#1 move_next", "#1 close"));
  EXPECT_EQ(host.suite->live_services(), 0U);
}

TEST_F(Translator, AFieldOfOneTableIsItsTrimmedTableAndName) {
  host.know_type(plain(), FieldType::kInteger);
  host.answer_catalogue({{0, kMenge}}, {kMenge});
  EXPECT_EQ(translate("SONST", "WAREN", "3 > 5;"),
            " FROM <WAREN,0,V>, LAGER WHERE (LAGER.MENGE > 5)");
  EXPECT_THAT(host.suite->calls_of("AddTable"),
              ElementsAre("AddTable('<WAREN,0,V>', ' LAGER ', 'V')"));
}

TEST_F(Translator, AFieldOfOneTableIsItsExpressionAsItStands) {
  SelektionRow field = plain();
  field.sqlvalue = " ISNULL(LAGER.MENGE, 0) ";
  field.sqlselect = "";
  // Only the blank at the beginning of all criteria is cut.
  EXPECT_EQ(
      translate_fields({{0, field}, {1, field}}, "3 > 5;3 < 9;"),
      " FROM <WAREN,0,V>,LAGER WHERE (ISNULL(LAGER.MENGE, 0)  > 5 AND  ISNULL(LAGER.MENGE, 0) "
      " < 9)");
}

TEST_F(Translator, AFieldReachedThroughTwoTablesAddsThreeTablesAndTwoConditions) {
  EXPECT_EQ(translate_fields({{0, kOrt}}, "20 = 'X';"),
            " FROM <WAREN,0,V>,LAGER,PERSONAL,ORTE WHERE LAGER.ID_PERSONAL = PERSONAL.ID AND"
            " PERSONAL.ID_ORT = ORTE.ID AND (ORTE.ORT = 'X')");
  EXPECT_THAT(host.suite->calls_of("AddTable"),
              ElementsAre("AddTable('<WAREN,0,V>', 'LAGER', 'V')",
                          "AddTable('<WAREN,0,V>,LAGER', 'PERSONAL', 'V')",
                          "AddTable('<WAREN,0,V>,LAGER,PERSONAL', 'ORTE', 'V')"));
}

TEST_F(Translator, TheJoinKindCountsInAnyCaseAndWithBlanks) {
  SelektionRow inner = kName;
  inner.sqlselect = "  inner ";
  host.know_type(kName, FieldType::kInteger);
  host.answer_catalogue({{0, kName}}, {inner});
  EXPECT_EQ(translate("SONST", "WAREN", "12 = 'X';"),
            " FROM <WAREN,0,V>,LAGER,PERSONAL WHERE LAGER.ID_PERSONAL = PERSONAL.ID AND"
            " (PERSONAL.NAME = 'X')");
}

TEST_F(Translator, AnotherJoinKindAddsNoTableAndNoCondition) {
  SelektionRow field = plain();
  field.sqlselect = "OUTER";
  field.sqlvalue = "ANY.THING";
  field.condition = "A = B";
  field.condition2 = "B = C";
  EXPECT_EQ(translate_fields({{0, field}}, "3 > 5;"), " FROM <WAREN,0,V> WHERE (ANY.THING > 5)");
  EXPECT_THAT(host.suite->calls_of("AddTable"), IsEmpty());
}

TEST_F(Translator, AJoinedFieldWithoutExpressionComparesNothingButTestsItsColumnForNull) {
  SelektionRow field = kName;
  field.sqlvalue = {};
  host.know_type(kName, FieldType::kInteger);
  host.answer_catalogue({{0, kName}, {1, kName}}, {field, field});
  EXPECT_EQ(translate("SONST", "WAREN", "12 = 'X';12 = NULL;"),
            " FROM <WAREN,0,V>,LAGER,PERSONAL WHERE LAGER.ID_PERSONAL = PERSONAL.ID AND"
            " (= 'X' AND (LAGER.NAME IS NULL OR RTRIM(LTRIM(LAGER.NAME)) = ''))");
}

TEST_F(Translator, AConditionIsAddedOnceWhateverItsCase) {
  SelektionRow other = kName;
  other.id = 13;
  other.condition = "lager.id_personal = Personal.ID";
  EXPECT_EQ(translate_fields({{0, kName}, {1, other}, {2, kOrt}}, "12 = 1;13 = 2;20 = 3;"),
            " FROM <WAREN,0,V>,LAGER,PERSONAL,ORTE WHERE LAGER.ID_PERSONAL = PERSONAL.ID AND"
            " PERSONAL.ID_ORT = ORTE.ID AND"
            " (PERSONAL.NAME = 1 AND PERSONAL.NAME = 2 AND ORTE.ORT = 3)");
}

TEST_F(Translator, AConditionThatIsPartOfAnEarlierTextIsNotAdded) {
  SelektionRow other = kName;
  other.id = 13;
  other.condition = "ID_PERSONAL = PERSONAL.I";
  EXPECT_EQ(translate_fields({{0, kName}, {1, other}}, "12 = 1;13 = 2;"),
            " FROM <WAREN,0,V>,LAGER,PERSONAL WHERE LAGER.ID_PERSONAL = PERSONAL.ID AND"
            " (PERSONAL.NAME = 1 AND PERSONAL.NAME = 2)");
}

TEST_F(Translator, NullTablesAndConditionsAreEmpty) {
  SelektionRow field = kOrt;
  field.table3 = {};
  field.condition2 = {};
  EXPECT_EQ(translate_fields({{0, field}}, "20 = 'X';"),
            " FROM <WAREN,0,V>,LAGER,PERSONAL WHERE LAGER.ID_PERSONAL = PERSONAL.ID AND"
            " (ORTE.ORT = 'X')");
  EXPECT_EQ(host.suite->calls_of("AddTable").back(),
            "AddTable('<WAREN,0,V>,LAGER,PERSONAL', '', 'V')");
}

TEST_F(Translator, TrailingCommasAndBlanksOfTheTablesAreCut) {
  SelektionRow field = plain();
  field.table = "LAGER,BESTAND , , ";
  field.sqlvalue = "X";
  host.know_type(plain(), FieldType::kInteger);
  host.answer_catalogue({{0, plain()}}, {field});
  EXPECT_EQ(translate("AUFT17", "4ARB", "3 > 5;"),
            " FROM LAGER,BESTAND WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17 AND (X > 5)");
}

TEST_F(Translator, EachCriterionTakesTheNextRowOfTheCatalogueQuery) {
  // The row of field 12 is missing: field 12 is read from the row of field 3, unnoticed, and field
  // 3 from behind the last row.
  host.know_type(kName, FieldType::kInteger);
  host.know_type(plain(), FieldType::kInteger);
  host.answer_catalogue({{0, kName}, {1, plain()}}, {plain()});
  EXPECT_THROW(translate("SONST", "WAREN", "12 = 1;3 = 2;"), NoCurrentRecord);
  EXPECT_THAT(host.suite->calls_of("AddTable"),
              ElementsAre("AddTable('<WAREN,0,V>', 'LAGER', 'V')"));
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

TEST_F(Translator, TheSameFieldMayBeAskedTwice) {
  EXPECT_EQ(translate_fields({{0, plain()}, {1, plain()}}, "3 > 5;3 < 9;"),
            " FROM <WAREN,0,V>,LAGER WHERE (LAGER.MENGE > 5 AND LAGER.MENGE < 9)");
}

TEST_F(Translator, OnlyOrLinesOpenNoCatalogueQuery) {
  EXPECT_EQ(translate("SONST", "WAREN", "=== ODER ===;=== ODER ===;"),
            " FROM <WAREN,0,V> WHERE (OR  OR)");
  EXPECT_THAT(host.calls(), ElementsAre("AddFieldTables('WAREN', 0, '', 'V')"));
}

// --- Criteria --------------------------------------------------------------------------------

TEST_F(Translator, CriteriaOfAGroupAreJoinedByAndAndGroupsByOr) {
  EXPECT_EQ(criteria_text("1 = 'a';2 >= 10;=== ODER ===;3 LIKE 'A%';4 <> 5;5 < 6;"),
            " FROM <BBHUNDE,0,><BBHUNDE,101,V><BBHUNDE,102,V><BBHUNDE,103,V><BBHUNDE,104,V>"
            "<BBHUNDE,105,V> WHERE (EXPR(BBHUNDE,101) = 'a' AND EXPR(BBHUNDE,102) >= 10 OR"
            " EXPR(BBHUNDE,103) LIKE 'A%' AND EXPR(BBHUNDE,104) <> 5 AND EXPR(BBHUNDE,105) < 6)");
}

TEST_F(Translator, AListBelongsToItsOperatorAndLeavesAnEmptyValue) {
  EXPECT_EQ(
      criteria_text("1 IN ('a','b');2 = 5;"),
      " FROM <BBHUNDE,0,><BBHUNDE,101,V><BBHUNDE,102,V> WHERE (EXPR(BBHUNDE,101) IN ('a','b') "
      " AND EXPR(BBHUNDE,102) = 5)");
  EXPECT_EQ(criteria_text("1 IN ('a','b');"),
            " FROM <BBHUNDE,0,><BBHUNDE,101,V> WHERE (EXPR(BBHUNDE,101) IN ('a','b'))");
}

TEST_F(Translator, ADateStaysAsItIsStored) {
  host.suite->answers().field_formats[101] = "dd.mm.yyyy";
  EXPECT_EQ(criteria_text("1 >= GETDATE()-30;1 < '01.02.2021';1 IN ('1/2/2021','2/2/2021');"),
            " FROM <BBHUNDE,0,><BBHUNDE,101,V><BBHUNDE,101,V><BBHUNDE,101,V> WHERE"
            " (EXPR(BBHUNDE,101) >= GETDATE()-30 AND EXPR(BBHUNDE,101) < '01.02.2021' AND"
            " EXPR(BBHUNDE,101) IN ('1/2/2021','2/2/2021'))");
}

TEST_F(Translator, NullAsksForNothingOrBlanks) {
  const std::string is_null = "(EXPR(BBHUNDE,101) IS NULL OR RTRIM(LTRIM(EXPR(BBHUNDE,101))) = '')";
  const std::pair<const char*, std::string> cases[] = {
      {"1 = NULL;", is_null},
      {"1 = null;", is_null},
      {"1 = 'NULL';", is_null},
      {"1 = 'null';", is_null},
      {"1 =   Null  ;", is_null},
      {"1 <> NULL;", "NOT" + is_null},
      {"1 <> 'Null';", "NOT" + is_null},
      {"1 > NULL;", "NOT" + is_null},
      {"1 >= NULL;", "NOT" + is_null},
      {"1 LIKE NULL;", "NOT" + is_null},
      {"1 = ' NULL';", "EXPR(BBHUNDE,101) = ' NULL'"},
      {"1 = NULLS;", "EXPR(BBHUNDE,101) = NULLS"}};
  for (const auto& [criteria, text] : cases) {
    EXPECT_EQ(criteria_text(criteria), " FROM <BBHUNDE,0,><BBHUNDE,101,V> WHERE (" + text + ")")
        << criteria;
  }
}

TEST_F(Translator, NullOfAFieldOfTheSelektionTableTestsItsExpression) {
  EXPECT_EQ(translate_fields({{0, plain()}, {1, kName}}, "3 <> NULL;12 = NULL;"),
            " FROM <WAREN,0,V>,LAGER,PERSONAL WHERE LAGER.ID_PERSONAL = PERSONAL.ID AND"
            " (NOT(LAGER.MENGE IS NULL OR RTRIM(LTRIM(LAGER.MENGE)) = '') AND"
            " (PERSONAL.NAME IS NULL OR RTRIM(LTRIM(PERSONAL.NAME)) = ''))");
}

TEST_F(Translator, OrLinesStandWhereTheyAre) {
  const std::string tables = " FROM <BBHUNDE,0,><BBHUNDE,101,V>";
  const std::pair<const char*, const char*> cases[] = {
      {"=== ODER ===;1 = 5;", " WHERE (OR EXPR(BBHUNDE,101) = 5)"},
      {"1 = 5;=== ODER ===;", " WHERE (EXPR(BBHUNDE,101) = 5 OR)"},
      {"=== ODER ===;=== ODER ===;1 = 5;", " WHERE (OR  OR EXPR(BBHUNDE,101) = 5)"}};
  for (const auto& [criteria, text] : cases) {
    EXPECT_EQ(criteria_text(criteria), tables + text) << criteria;
  }
  EXPECT_EQ(criteria_text("=== ODER ===;"), " FROM <BBHUNDE,0,> WHERE (OR)");
  EXPECT_EQ(criteria_text("1 = 5;=== ODER ===;=== ODER ===;1 = 6;"),
            tables + "<BBHUNDE,101,V> WHERE (EXPR(BBHUNDE,101) = 5 OR  OR EXPR(BBHUNDE,101) = 6)");
}

TEST_F(Translator, AnOrLineIsTheExactText) {
  // Any other text is a criterion, and none that can be read.
  for (const char* record : {"=== oder ===", "=== ODER === ", "=== ODER"}) {
    EXPECT_THROW(criteria_text(std::string("1 = 5;") + record + ";1 = 6;"), InvalidArgument);
  }
  EXPECT_THROW(criteria_text("1 = 5; === ODER ===;1 = 6;"), TypeMismatch);
  host.context.strOderLine = "ODER";
  EXPECT_EQ(criteria_text("1 = 5;ODER;1 = 6;"),
            " FROM <BBHUNDE,0,><BBHUNDE,101,V><BBHUNDE,101,V> WHERE"
            " (EXPR(BBHUNDE,101) = 5 OR EXPR(BBHUNDE,101) = 6)");
}

TEST_F(Translator, ATrailingAndIsCutFromTheCriteria) {
  EXPECT_EQ(criteria_text("1 = 5 AND;"),
            " FROM <BBHUNDE,0,><BBHUNDE,101,V> WHERE (EXPR(BBHUNDE,101) = 5)");
}

TEST_F(Translator, TheLastRecordNeedsNoSemicolon) {
  EXPECT_EQ(criteria_text("1 = 5;1 = 6"), criteria_text("1 = 5;1 = 6;"));
}

TEST_F(Translator, TheRecordsAreThoseOfTheRecordWalker) {
  criteria_text("1 = 5;=== ODER ===;1 = 6;");
  EXPECT_THAT(host.suite->calls_of("TokenCount"), ElementsAre("TokenCount(';')"));
  const std::vector<std::string> records = host.suite->calls_of("TokenAt");
  for (const char* record : {"TokenAt(';', 0)", "TokenAt(';', 1)", "TokenAt(';', 2)"}) {
    EXPECT_THAT(records, ::testing::Contains(record));
  }
  EXPECT_THAT(records, ::testing::Each(::testing::AnyOf("TokenAt(';', 0)", "TokenAt(';', 1)",
                                                        "TokenAt(';', 2)")));
}

// --- No criteria -----------------------------------------------------------------------------

TEST_F(Translator, NoCriteriaGiveTheBaseAlone) {
  EXPECT_EQ(criteria_text(""), " FROM <BBHUNDE,0,>  ");
  EXPECT_EQ(translate("1VVM", "", ""),
            " FROM <VERTRAG,0,> WHERE VERTRAEGE.ID_FAKTART = 0 {VERTRAEGE,9} ");
  EXPECT_EQ(translate("SONST", "WAREN", ""), " FROM <WAREN,0,V>  ");
  EXPECT_EQ(translate("4ARB", "4ARB", ""), " FROM   ");
  EXPECT_EQ(translate("4ARB17", "4ARB", ""), " FROM  WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17 ");
  EXPECT_THAT(host.connection->statements(), IsEmpty());
}

// --- Labour bookings -------------------------------------------------------------------------

constexpr const char* kFill =
    "CREATE TABLE #BB_LEISTUNGS_KOPF (ID int)\r\n"
    "CREATE NONCLUSTERED INDEX IDX ON #BB_LEISTUNGS_KOPF (ID) ON [PRIMARY]\r\n"
    "INSERT INTO #BB_LEISTUNGS_KOPF (ID) SELECT BB_LEISTUNGS_KOPF.ID";

TEST_F(Translator, LabourBookingsFillTheTemporaryTableWithoutTheCriteria) {
  EXPECT_EQ(translate("LEISTUNGS_BB17", "", "12 = 5;"),
            " FROM <BBLTN,0,><BBLTN,112,R7> WHERE  {BB_LEISTUNGS_KOPF,9} AND"
            " (EXPR(BBLTN,112) = 5)");
  EXPECT_THAT(host.connection->statements(),
              ElementsAre("DROP TABLE #BB_LEISTUNGS_KOPF",
                          std::string(kFill) + " FROM <BBLTN,0,><BBLTN,112,R7> WHERE "
                                               " {BB_LEISTUNGS_KOPF,9} GROUP BY"
                                               " BB_LEISTUNGS_KOPF.ID"));
}

TEST_F(Translator, WagesFillTheTemporaryTable) {
  const std::string base =
      "WHERE BB_LEISTUNGS_KOPF.STORNODATUM IS NULL AND PERSONAL.ID_ACCESS_LEVELS IN (1,2)";
  EXPECT_EQ(translate("VERLOHN", "", "12 = 5;"),
            " FROM <BBLTN,0,><BBLTN,1,><BBLTN,112,V> " + base + " AND (EXPR(BBLTN,112) = 5)");
  EXPECT_EQ(translate("VERLOHN", "", ""), " FROM <BBLTN,0,><BBLTN,1,> " + base + " ");
  EXPECT_THAT(host.connection->statements(),
              ElementsAre("DROP TABLE #BB_LEISTUNGS_KOPF",
                          std::string(kFill) + " FROM <BBLTN,0,><BBLTN,1,><BBLTN,112,V> " + base +
                              " GROUP BY BB_LEISTUNGS_KOPF.ID",
                          "DROP TABLE #BB_LEISTUNGS_KOPF",
                          std::string(kFill) + " FROM <BBLTN,0,><BBLTN,1,> " + base +
                              " GROUP BY BB_LEISTUNGS_KOPF.ID"));
}

// A suite whose access levels restrict nothing.
class OpenSuite : public FakeSuite {
 public:
  using FakeSuite::FakeSuite;
  std::shared_ptr<AccessLevelFilter> access_level_filter() override {
    struct Filter : AccessLevelFilter {
      std::string restrict(std::string_view, std::string_view condition, const KesVar&,
                           std::int32_t) override {
        return std::string(condition);
      }
    };
    return std::make_shared<Filter>();
  }
};

TEST(LabourBookings, WithoutAnyConditionAllRecordsAreTaken) {
  EngineHost host(std::make_shared<OpenSuite>());
  EXPECT_EQ(host.engine.D_SelectionFromStr(host.context, "LEISTUNGS_BB", "", "", "V", 9),
            " FROM <BBLTN,0,>  ");
  EXPECT_EQ(host.engine.D_SelectionFromStr(host.context, "LEISTUNGS_BB", "", "12 = 5;", "V", 9),
            " FROM <BBLTN,0,><BBLTN,112,R7> WHERE (EXPR(BBLTN,112) = 5)");
  EXPECT_THAT(host.connection->statements(),
              ElementsAre("DROP TABLE #BB_LEISTUNGS_KOPF",
                          std::string(kFill) + " FROM <BBLTN,0,>  GROUP BY BB_LEISTUNGS_KOPF.ID",
                          "DROP TABLE #BB_LEISTUNGS_KOPF",
                          std::string(kFill) + " FROM <BBLTN,0,><BBLTN,112,R7> "
                                               " GROUP BY BB_LEISTUNGS_KOPF.ID"));
}

TEST_F(Translator, OnlyLabourBookingsFillTheTemporaryTable) {
  for (const char* relation : {"leistungs_bb", "LEISTUNGS_B", "VERLOHN1", "verlohn", "BELEG_BB"}) {
    translate(relation, "WAREN", "");
  }
  EXPECT_THAT(host.connection->statements(), IsEmpty());
}

TEST_F(Translator, TheTemporaryTableIsFilledAfterEverythingElse) {
  translate("LEISTUNGS_BB", "", "12 = 5;");
  const std::vector<std::string> calls = host.calls();
  ASSERT_GE(calls.size(), 3U);
  EXPECT_EQ(calls[calls.size() - 3], "GetFieldExpression('BBLTN', 112, 0, 0)");
  EXPECT_EQ(calls[calls.size() - 2], "execute DROP TABLE #BB_LEISTUNGS_KOPF");
}

// --- No connection ---------------------------------------------------------------------------

TEST_F(Translator, WithoutAConnectionOnlyTheSuitesFieldsCanBeTranslated) {
  host.context.dbado = nullptr;
  EXPECT_EQ(criteria_text("1 = 5;"),
            " FROM <BBHUNDE,0,><BBHUNDE,101,V> WHERE (EXPR(BBHUNDE,101) = 5)");
  EXPECT_EQ(translate("LEISTUNGS_BB17", "", "12 = 5;"),
            " FROM <BBLTN,0,><BBLTN,112,R7> WHERE  {BB_LEISTUNGS_KOPF,9} AND"
            " (EXPR(BBLTN,112) = 5)");
  EXPECT_EQ(translate("4ARB17", "4ARB", ""), " FROM  WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17 ");
  EXPECT_THROW(translate("4ARB17", "4ARB", "12 = 5;"), ObjectNotSet);
  EXPECT_THROW(translate("SONST", "WAREN", "12 = 5;"), ObjectNotSet);
}

}  // namespace
}  // namespace kestrova::test
