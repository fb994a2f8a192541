// The three ways to a field's type: by display format, by a query without rows, and the editor's.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/engine/engine_host.h"

namespace kestrova::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FieldTypes : public ::testing::Test {
 protected:
  EngineHost host;
  Comm_Sel& engine = host.engine;
};

// --- Catalogue relations: the display format -------------------------------------------------

TEST_F(FieldTypes, TheDisplayFormatDecidesTheType) {
  const std::pair<const char*, int> formats[] = {{"", 202},
                                                 {"dd.mm.yyyy", 7},
                                                 {"0", 3},
                                                 {"0.00", 5},
                                                 {"00", 3},
                                                 {"00.0", 5},
                                                 {"0,00", 3},
                                                 {"0 fm.", 5},
                                                 {"0.", 5},
                                                 {"#,##0", 0},
                                                 {"#0.00", 0},
                                                 {" ", 0},
                                                 {" 0", 0},
                                                 {"DD.MM.YYYY", 0},
                                                 {"dd.mm.yyyy ", 0},
                                                 {"mm/dd", 0},
                                                 {"@", 0},
                                                 {".0", 0},
                                                 {"dd.mm.yyyy hh:nn", 0}};
  for (const auto& [format, type] : formats) {
    host.suite->answers().field_formats[112] = format;
    EXPECT_EQ(engine.Get_TypeOfFieldNew(host.context, "1WL", 12), type) << "'" << format << "'";
  }
}

TEST_F(FieldTypes, TheFormatIsAskedByTableKeyAndMappedNumber) {
  engine.Get_TypeOfFieldNew(host.context, "VERLOHN", 12);
  EXPECT_THAT(*host.log, ElementsAre("MapFieldId('VERLOHN', 12)", "field_format('BBLTN', 112)"));
  EXPECT_EQ(host.suite->live_services(), 0U);
}

TEST_F(FieldTypes, ARelationWithoutTableKeyAsksWithAnEmptyOne) {
  EXPECT_EQ(engine.Get_TypeOfFieldNew(host.context, "HIZBB_SELEKTION_X", 12), 202);
  EXPECT_THAT(*host.log,
              ElementsAre("MapFieldId('HIZBB_SELEKTION_X', 12)", "field_format('', 112)"));
}

TEST_F(FieldTypes, ACatalogueRelationTakesTheFormatAlsoWhenItIsRestricted) {
  host.suite->answers().field_formats[112] = "0.00";
  EXPECT_EQ(engine.Get_TypeOfFieldFromID(host.context, 12, "1WL"), 5);
  EXPECT_EQ(engine.Get_TypeOfFieldFromID(host.context, 12, "2PVK"), 5);
  EXPECT_THAT(*host.log, ElementsAre("MapFieldId('1WL', 12)", "field_format('TRANSPORT', 112)",
                                     "MapFieldId('2PVK', 12)", "field_format('PERSONAL', 112)"));
}

TEST_F(FieldTypes, TheFormatNeedsNoConnection) {
  host.context.dbado = nullptr;
  EXPECT_EQ(engine.Get_TypeOfFieldFromID(host.context, 12, "1WL"), 202);
}

// --- Restricted relations: the expression over the FROM text ---------------------------------

TEST_F(FieldTypes, ARestrictedRelationAsksTheDatabaseForTheTypeOfTheExpression) {
  host.connection->answer("SELECT TOP 0 EXPR(BBF,112) FROM <BBF,112,R7>",
                          {{"", FieldType::kDBTimeStamp}, {"second", FieldType::kInteger}});
  EXPECT_EQ(engine.Get_TypeOfFieldFromID(host.context, 12, "4ARB17"), 135);
  EXPECT_THAT(
      *host.log,
      ElementsAre("MapFieldId('4ARB17', 12)", "AddFieldTables('BBF', 112, '', 'R7')",
                  "GetFieldExpression('BBF', 112, 0, 0)",
                  opened("SELECT TOP 0 EXPR(BBF,112) FROM <BBF,112,R7>"), "#1 type 0", "#1 close"));
  EXPECT_EQ(host.suite->live_services(), 0U);
}

TEST_F(FieldTypes, ARestrictedRelationNeedsAConnection) {
  host.context.dbado = nullptr;
  EXPECT_THROW(engine.Get_TypeOfFieldFromID(host.context, 12, "PERSONAL"), ObjectNotSet);
}

// --- Other relations: the column -------------------------------------------------------------

const SelektionRow kPlain = {.id = 12, .name = "MENGE", .table = "LAGER", .table2 = "PERSONAL"};

const SelektionRow kInner = {.id = 12,
                             .name = "MENGE",
                             .table = "LAGER",
                             .table2 = "PERSONAL",
                             .sqlselect = "INNER",
                             .sqlvalue = "P.NAME"};

TEST_F(FieldTypes, AFieldOfOneTableIsAskedByItsName) {
  host.know_type(kPlain, FieldType::kDouble);
  EXPECT_EQ(engine.Get_TypeOfFieldFromID(host.context, 12, "SONST"), 5);
  EXPECT_THAT(host.calls(),
              ElementsAre(opened("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 12"), "#1 close",
                          opened("SELECT TOP 0 MENGE FROM LAGER"), "#2 type MENGE", "#2 close"));
}

TEST_F(FieldTypes, AFieldOfOneTableIsAskedByItsNameEvenIfItHasAnExpression) {
  SelektionRow field = kPlain;
  for (const char* sqlselect : {"", "OUTER", "INNER JOIN"}) {
    field.sqlselect = sqlselect;
    field.sqlvalue = "P.NAME";
    EngineHost fresh;
    fresh.know_type(field, FieldType::kDouble);
    EXPECT_EQ(fresh.engine.Get_TypeOfFieldFromID(fresh.context, 12, "SONST"), 5) << sqlselect;
  }
}

TEST_F(FieldTypes, AJoinedFieldIsAskedByItsExpressionInTheSecondTable) {
  struct Case {
    const char* sqlselect;
    const char* sqlvalue;
    const char* query;
    const char* column;
  };
  const Case cases[] = {
      {"INNER", "P.NAME", "SELECT TOP 0 NAME FROM PERSONAL", "NAME"},
      {"TRIPLE", "P.NAME", "SELECT TOP 0 NAME FROM PERSONAL", "NAME"},
      {" inner ", "P.NAME", "SELECT TOP 0 NAME FROM PERSONAL", "NAME"},
      {"Triple", "DBO.P.NAME", "SELECT TOP 0 P.NAME FROM PERSONAL", "P.NAME"},
      {"INNER", "NAME", "SELECT TOP 0 NAME FROM PERSONAL", "NAME"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.sqlselect) + " " + c.sqlvalue);
    EngineHost fresh;
    SelektionRow field = kInner;
    field.sqlvalue = c.sqlvalue;
    field.sqlselect = c.sqlselect;
    fresh.connection->answer(
        "SELECT * FROM SELEKTION WHERE ID_SELEKTION = 13",
        {{"NAME_OF_FIELD"}, {"TABLE_NAME"}, {"TABLE_NAME_II"}, {"SQLSELECT"}, {"SQLVALUE"}},
        {{field.name, field.table, field.table2, field.sqlselect, field.sqlvalue}});
    fresh.connection->answer(c.query,
                             {{"first", FieldType::kBoolean}, {c.column, FieldType::kVarWChar}});
    EXPECT_EQ(fresh.engine.Get_TypeOfFieldFromID(fresh.context, 13, "SONST"), 202);
    EXPECT_THAT(fresh.calls(),
                ElementsAre(opened("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 13"), "#1 close",
                            opened(c.query), std::string("#2 type ") + c.column, "#2 close"));
  }
}

TEST_F(FieldTypes, AnUnknownFieldIsReadAtTheEnd) {
  host.connection->answer("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 12", {{"SQLSELECT"}});
  EXPECT_THROW(engine.Get_TypeOfFieldFromID(host.context, 12, "SONST"), NoCurrentRecord);
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
  EXPECT_THAT(host.calls(),
              ElementsAre(opened("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 12"), "#1 close"));
}

TEST_F(FieldTypes, OtherRelationsNeedAConnection) {
  host.context.dbado = nullptr;
  EXPECT_THROW(engine.Get_TypeOfFieldFromID(host.context, 12, "SONST"), ObjectNotSet);
}

// --- The editor's variant --------------------------------------------------------------------

class EditorFieldType : public FieldTypes {
 protected:
  EditorFieldType() {
    host.form->add("Ort", 7);
    host.form->add("Menge", 12);
    host.form->fields.set_index(1);
  }
};

TEST_F(EditorFieldType, ItTakesTheSelectedEntryAndNotTheName) {
  host.suite->answers().field_formats[112] = "0";
  EXPECT_EQ(engine.Get_TypeOfField(host.context, "Ort", true, nullptr, "1WL"), 3);
  EXPECT_EQ(engine.Get_TypeOfField(host.context, "", false, nullptr, "1WL"), 3);
  EXPECT_THAT(*host.log, ElementsAre("MapFieldId('1WL', 12)", "field_format('TRANSPORT', 112)",
                                     "MapFieldId('1WL', 12)", "field_format('TRANSPORT', 112)"));
}

TEST_F(EditorFieldType, ARestrictedRelationAsksTheDatabase) {
  host.connection->answer("SELECT TOP 0 EXPR(BBF,112) FROM <BBF,112,R7>",
                          {{"", FieldType::kBoolean}});
  EXPECT_EQ(engine.Get_TypeOfField(host.context, "Ort", true, nullptr, "BBF"), 11);
  EXPECT_THAT(
      *host.log,
      ElementsAre("MapFieldId('BBF', 12)", "AddFieldTables('BBF', 112, '', 'R7')",
                  "GetFieldExpression('BBF', 112, 0, 0)",
                  opened("SELECT TOP 0 EXPR(BBF,112) FROM <BBF,112,R7>"), "#1 type 0", "#1 close"));
}

TEST_F(EditorFieldType, OtherRelationsSearchTheCallersRowSet) {
  SelektionRow first = kInner;
  first.id = 7;
  const auto rows = host.open_selektion({first, kPlain});
  rows->move_next();
  host.connection->answer("SELECT TOP 0 MENGE FROM LAGER", {{"MENGE", FieldType::kDouble}});
  host.connection->clear_log();
  EXPECT_EQ(engine.Get_TypeOfField(host.context, "Ort", true, rows.get(), "SONST"), 5);
  EXPECT_THAT(host.calls(),
              ElementsAre("#1 move_first", "#1 find ID_SELEKTION = 12",
                          opened("SELECT TOP 0 MENGE FROM LAGER"), "#2 type MENGE", "#2 close"));
  ASSERT_FALSE(rows->eof());
  EXPECT_EQ(rows->value("ID_SELEKTION"), Value(12));
}

TEST_F(EditorFieldType, AJoinedFieldOfTheCallersRowSetIsAskedInTheSecondTable) {
  const auto rows = host.open_selektion({kInner});
  host.connection->answer("SELECT TOP 0 NAME FROM PERSONAL", {{"NAME", FieldType::kVarWChar}});
  EXPECT_EQ(engine.Get_TypeOfField(host.context, "Ort", true, rows.get(), "SONST"), 202);
}

TEST_F(EditorFieldType, AFieldThatTheCallersRowSetDoesNotHoldIsReadAtTheEnd) {
  SelektionRow other = kPlain;
  other.id = 13;
  const auto rows = host.open_selektion({other});
  EXPECT_THROW(engine.Get_TypeOfField(host.context, "Ort", true, rows.get(), "SONST"),
               NoCurrentRecord);
  EXPECT_THAT(host.calls(), ElementsAre("#1 move_first", "#1 find ID_SELEKTION = 12"));
}

TEST_F(EditorFieldType, AnAbsentRowSetIsAnError) {
  EXPECT_THROW(engine.Get_TypeOfField(host.context, "Ort", true, nullptr, "SONST"), ObjectNotSet);
  EXPECT_THAT(*host.log, IsEmpty());
}

TEST_F(EditorFieldType, WithoutASelectedEntryThereIsNoField) {
  host.form->fields.set_index(-1);
  EXPECT_THROW(engine.Get_TypeOfField(host.context, "Ort", true, nullptr, "1WL"), InvalidArgument);
  EXPECT_THAT(*host.log, IsEmpty());
}

// --- Failures --------------------------------------------------------------------------------

TEST_F(FieldTypes, EveryFailingDatabaseCallReachesTheCallerAndNothingStaysOpen) {
  for (const char* relation : {"SONST", "BBF"}) {
    host.know_type(kInner, FieldType::kInteger);
    host.connection->answer("SELECT TOP 0 EXPR(BBF,112) FROM <BBF,112,R7>",
                            {{"", FieldType::kInteger}});
    host.connection->clear_log();
    engine.Get_TypeOfFieldFromID(host.context, 12, relation);
    const std::size_t calls = host.connection->calls_made();
    ASSERT_GE(calls, 2U);
    for (std::size_t k = 1; k <= calls; ++k) {
      SCOPED_TRACE(std::string(relation) + " call " + std::to_string(k));
      host.connection->clear_log();
      host.connection->fail_on_call(k);
      EXPECT_THROW(engine.Get_TypeOfFieldFromID(host.context, 12, relation), DatabaseError);
      EXPECT_EQ(host.connection->open_recordsets(), 0U);
      host.connection->fail_on_call(0);
      EXPECT_EQ(engine.Get_TypeOfFieldFromID(host.context, 12, relation), 3);
    }
  }
}

}  // namespace
}  // namespace kestrova::test
