// What the caller and the user's context say reaches the services as it is, whatever it is.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/error.h"
#include "relations/relation_conditions.h"
#include "tests/engine/engine_host.h"

namespace kestrova::test {
namespace {

using ::testing::ElementsAre;

class PassedOn : public ::testing::TestWithParam<const char*> {
 protected:
  EngineHost host;
};

class PassedOnText : public PassedOn {};

TEST_P(PassedOnText, TheVariantReachesTheTablesOfCatalogueFields) {
  const std::string variant = GetParam();
  EXPECT_EQ(host.engine.D_SelectionFromStr(host.context, "1WL", "", "3 > 1;", variant, 0),
            " FROM <TRANSPORT,0,><TRANSPORT,103," + variant +
                "> WHERE  {TRANSPORTLOGISTIK_KOPF,0} AND (EXPR(TRANSPORT,103) > 1)");
}

TEST_P(PassedOnText, TheVariantReachesTheGoods) {
  const std::string variant = GetParam();
  EXPECT_EQ(host.engine.D_SelectionFromStr(host.context, "SONST", "WAREN", "", variant, 0),
            " FROM <WAREN,0," + variant + ">  ");
}

TEST_P(PassedOnText, TheVariantOfTheSelectionReachesRestrictedFields) {
  module_state().strVerType = GetParam();
  std::string condition;
  std::string from = "F";
  ApplyAccessLevels("1EXP", 5, condition, from, host.context);
  EXPECT_EQ(from, std::string("F<LOG,105,") + GetParam() + ">");
}

TEST_P(PassedOnText, TheNationalCurrencyIsTheUsers) {
  host.form->add("DM/EURO", 12);
  host.context.strNatWahrung = GetParam();
  const auto value = [&](const std::string& currency) {
    return host.engine.TransComp_NoLabels(host.context, "1WL", "DM/EURO = " + currency, "GETVALUE",
                                          false, false);
  };
  EXPECT_EQ(value(GetParam()), "0");
  EXPECT_EQ(value("OTHER"), "OTHER");
}

INSTANTIATE_TEST_SUITE_P(Texts, PassedOnText, ::testing::Values("A4", "R", "FIM"));

class PassedOnNumber : public ::testing::TestWithParam<std::int32_t> {
 protected:
  EngineHost host;
};

TEST_P(PassedOnNumber, TheAccessLevelsReachTheFilter) {
  const std::string number = std::to_string(GetParam());
  EXPECT_EQ(host.engine.D_SelectionFromStr(host.context, "1WL", "", "", "", GetParam()),
            " FROM <TRANSPORT,0,> WHERE  {TRANSPORTLOGISTIK_KOPF," + number + "} ");
}

TEST_P(PassedOnNumber, TheUsersLevelIsTheOptionOfTheServiceLists) {
  host.context.lngAccessLevel = GetParam();
  std::string condition;
  std::string from;
  GetRelationFromWhere("1SERV", condition, from, host.context, 3);
  EXPECT_TRUE(condition.ends_with(" {LISTENKOPF," + std::to_string(GetParam()) + "}")) << condition;
}

INSTANTIATE_TEST_SUITE_P(Numbers, PassedOnNumber, ::testing::Values(0, 4, -1, 2147483647));

struct OrderedList {
  const char* date_order;
  const char* shown;
};

class DateLists : public ::testing::TestWithParam<OrderedList> {
 protected:
  DateLists() {
    host.suite->answers().field_formats[112] = "dd.mm.yyyy";
    host.form->add("Datum", 12);
    host.context.strDateOrder = GetParam().date_order;
  }

  EngineHost host;
};

TEST_P(DateLists, AreShownInTheUsersDateOrder) {
  EXPECT_EQ(host.engine.TransComp_NoLabels(host.context, "1WL", "12 IN (3/4/2021,5/6/2021)",
                                           "GETOPERATOR", true, true),
            GetParam().shown);
}

TEST_P(DateLists, AreReadInTheUsersDateOrder) {
  EXPECT_EQ(host.engine.TransComp_NoLabels(host.context, "1WL", "Datum IN (3/4/2021)",
                                           "GETOPERATOR", false, false),
            "IN ('S(3/4/2021)')");
  EXPECT_THAT(
      host.suite->calls_of("server_date"),
      ElementsAre(std::string("server_date('3/4/2021', false, '") + GetParam().date_order + "')"));
}

INSTANTIATE_TEST_SUITE_P(Orders, DateLists,
                         ::testing::Values(OrderedList{"DMY", "IN ('03.04.2021','05.06.2021')"},
                                           OrderedList{"MDY", "IN ('04.03.2021','06.05.2021')"}));

class PassedOnFields : public ::testing::Test {
 protected:
  EngineHost host;
};

TEST_F(PassedOnFields, ADateListThatClosesBeforeItOpensStaysAsItIs) {
  host.suite->answers().field_formats[112] = "dd.mm.yyyy";
  EXPECT_EQ(
      host.engine.TransComp_NoLabels(host.context, "1WL", "12 IN )(5", "GETOPERATOR", true, true),
      "IN )(5");
}

TEST_F(PassedOnFields, ABlankElementOfADateListIsNoEmptyOne) {
  host.suite->answers().field_formats[108] = "dd.mm.yyyy";
  EXPECT_EQ(host.engine.TransComp_NoLabels(host.context, "1WL", "8 IN (5, ,,6)", "GETOPERATOR",
                                           true, false),
            "IN (5, ,6)");
}

TEST_F(PassedOnFields, BlanksBeforeTheTablesAreTrimmed) {
  const SelektionRow field = {.id = 3, .name = "MENGE", .table = " LAGER"};
  host.know_fields({{0, field}}, FieldType::kInteger);
  EXPECT_EQ(host.engine.D_SelectionFromStr(host.context, "AUFT17", "4ARB", "3 = 1;", "", 0),
            " FROM LAGER WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17 AND (LAGER.MENGE = 1)");
}

// Only a field that is made of TABLE_NAME and NAME_OF_FIELD has them trimmed.
TEST_F(PassedOnFields, TheTablesOfAJoinStayAsTheyStand) {
  const SelektionRow field = {.id = 3,
                              .name = "ORT",
                              .table = " LAGER ",
                              .table2 = " PERSONAL ",
                              .table3 = " ORTE ",
                              .sqlselect = "TRIPLE",
                              .sqlvalue = "ORTE.ORT",
                              .condition = "LAGER.P = PERSONAL.ID",
                              .condition2 = "PERSONAL.O = ORTE.ID"};
  host.know_fields({{0, field}}, FieldType::kInteger);
  EXPECT_EQ(host.engine.D_SelectionFromStr(host.context, "AUFT17", "4ARB", "3 = 1;", "", 0),
            " FROM LAGER , PERSONAL , ORTE WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17 AND "
            "LAGER.P = PERSONAL.ID AND PERSONAL.O = ORTE.ID AND (ORTE.ORT = 1)");
}

TEST_F(PassedOnFields, TheTypeOfAJoinedFieldIsAskedOfItsTableAsItStands) {
  const SelektionRow field = {.id = 3,
                              .name = "ORT",
                              .nickname = "Ort",
                              .table = "LAGER",
                              .table2 = " PERSONAL ",
                              .sqlselect = "INNER",
                              .sqlvalue = "PERSONAL.ORT"};
  host.connection->answer("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 3", selektion_columns(),
                          {row_of(field)});
  host.connection->answer("SELECT TOP 0 ORT FROM  PERSONAL ", {{"ORT", FieldType::kInteger}});
  EXPECT_EQ(host.engine.Get_TypeOfFieldFromID(host.context, 3, "SONST"), 3);
}

// A suite whose restrictions are nothing but blanks.
class BlankSuite : public FakeSuite {
 public:
  using FakeSuite::FakeSuite;
  std::shared_ptr<AccessLevelFilter> access_level_filter() override {
    struct Filter : AccessLevelFilter {
      std::string restrict(std::string_view, std::string_view, const KesVar&,
                           std::int32_t) override {
        return "  ";
      }
    };
    return std::make_shared<Filter>();
  }
};

// It is no empty one, which would be left out.
TEST(BlankCondition, IsJoinedAsItStands) {
  EngineHost host(std::make_shared<BlankSuite>());
  EXPECT_EQ(host.engine.D_SelectionFromStr(host.context, "1WL", "", "3 > 1;", "", 0),
            " FROM <TRANSPORT,0,><TRANSPORT,103,> WHERE    AND (EXPR(TRANSPORT,103) > 1)");
}

// --- A row of SELEKTION that does not say which column it stands for is an error, never a text

class IncompleteField : public ::testing::TestWithParam<SelektionRow> {
 protected:
  EngineHost host;
};

TEST_P(IncompleteField, HasNoName) {
  const auto rows = host.open_selektion({GetParam()});
  EXPECT_THROW(host.engine.Get_FieldName_Sel("N", rows.get()), InvalidUseOfNull);
}

// The user is not shown the bare identifier either.
TEST_P(IncompleteField, HasNoNameByItsIdentifier) {
  host.connection->answer(
      "SELECT NAME_OF_FIELD, TABLE_NAME, SQLVALUE FROM SELEKTION WHERE ID_SELEKTION = 3",
      {{"NAME_OF_FIELD"}, {"TABLE_NAME"}, {"SQLVALUE"}},
      {{GetParam().name, GetParam().table, GetParam().sqlvalue}});
  EXPECT_THROW(host.engine.Get_FieldNameFromID(3, host.connection), InvalidUseOfNull);
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

TEST_P(IncompleteField, IsNotTranslated) {
  const SelektionRow complete = {.id = 3, .name = "MENGE", .table = "LAGER"};
  host.know_type(complete, FieldType::kInteger);
  host.answer_catalogue({{0, complete}}, {GetParam()});
  EXPECT_THROW(host.engine.D_SelectionFromStr(host.context, "SONST", "WAREN", "3 = 1;", "", 0),
               InvalidUseOfNull);
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, IncompleteField,
    ::testing::Values(SelektionRow{.id = 3, .name = "MENGE", .nickname = "N"},
                      SelektionRow{.id = 3, .nickname = "N", .table = "LAGER"}),
    [](const auto& case_info) { return case_info.param.table.is_null() ? "NoTable" : "NoColumn"; });

TEST_F(PassedOnFields, AJoinedFieldWithoutExpressionHasNoType) {
  host.connection->answer("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 12",
                          {{"SQLSELECT"}, {"SQLVALUE"}, {"TABLE_NAME_II"}},
                          {{"INNER", Value(), "PERSONAL"}});
  EXPECT_THROW(host.engine.Get_TypeOfFieldFromID(host.context, 12, "SONST"), InvalidUseOfNull);
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

// A connection whose drop fails with an error that is none of the database's.
class StubbornConnection : public RecordingConnection {
 public:
  std::int64_t execute(std::string_view batch) override {
    if (batch.starts_with("DROP")) throw Overflow("scripted");
    return RecordingConnection::execute(batch);
  }
};

TEST_F(PassedOnFields, NoErrorOfTheDropHoldsTheTableBack) {
  const auto connection = std::make_shared<StubbornConnection>();
  host.context.dbado = connection;
  host.engine.CreateTemporyTable(host.context, "CHILD", "SELECT 1");
  EXPECT_EQ(connection->statements().size(), 1U);
}

}  // namespace
}  // namespace kestrova::test
