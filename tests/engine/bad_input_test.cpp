// Stored filters that nobody should have stored: each has one clear outcome.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/engine/engine_host.h"

namespace kestrova::test {
namespace {

using ::testing::IsEmpty;

class BadInput : public ::testing::Test {
 protected:
  std::string translate(std::string_view relation, std::string_view criteria) {
    return host.engine.D_SelectionFromStr(host.context, relation, "WAREN", criteria, "V", 9);
  }

  // The result for the catalogue relation with one criterion on field 12.
  static std::string with_criterion(const std::string& criterion) {
    return " FROM <BBHUNDE,0,><BBHUNDE,112,V> WHERE (EXPR(BBHUNDE,112) " + criterion + ")";
  }

  EngineHost host;
};

const char* const kRelations[] = {"JAGD_HUNDE", "2PVK", "BBF", "SONST"};

TEST_F(BadInput, AFieldPartThatIsNoNumberIsRefusedAndNothingIsSent) {
  for (const char* relation : kRelations) {
    for (const char* criteria :
         {"Menge = 5;", "12a = 5;", "1.5 = 5;", "1 2 = 5;", "12", ";", "12 5;", " ;", ">= 5;",
          "<> 5;", "< 5;", "LIKE 'A%';", "IN (1,2);", "0 OR 1 = 1;"}) {
      SCOPED_TRACE(std::string(relation) + " " + criteria);
      EXPECT_THROW(translate(relation, criteria), TypeMismatch);
      EXPECT_THAT(host.connection->statements(), IsEmpty());
    }
  }
}

TEST_F(BadInput, AnOperatorAtTheStartIsAnInvalidArgument) {
  for (const char* relation : kRelations) {
    for (const char* criteria : {"= 5;", "> 5;", "=;", ">;", "=> 5;", "=== oder ===;"}) {
      SCOPED_TRACE(std::string(relation) + " " + criteria);
      EXPECT_THROW(translate(relation, criteria), InvalidArgument);
      EXPECT_THAT(host.connection->statements(), IsEmpty());
    }
  }
}

TEST_F(BadInput, AnIdentifierBeyond16BitsIsAnOverflow) {
  for (const char* relation : kRelations) {
    for (const char* criteria : {"32768 = 5;", "-32769 = 5;", "99999999999999999999999 = 5;"}) {
      SCOPED_TRACE(std::string(relation) + " " + criteria);
      EXPECT_THROW(translate(relation, criteria), Overflow);
      EXPECT_EQ(host.connection->open_recordsets(), 0U);
    }
  }
}

TEST_F(BadInput, AFieldThatSelektionDoesNotHoldIsReadAtTheEnd) {
  host.answer_catalogue({{0, {.id = 12}}}, {});
  host.connection->answer("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 12", {{"SQLSELECT"}});
  EXPECT_THROW(translate("SONST", "12 = 5;"), NoCurrentRecord);
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

TEST_F(BadInput, AFieldThatTheSuiteDoesNotOfferIsTheSuitesError) {
  host.suite->answers().map_field_id = [](std::string_view, std::int32_t) -> std::int32_t {
    throw ItemNotFound("The suite does not know the field.");
  };
  for (const char* relation : {"JAGD_HUNDE", "2PVK", "BBF"}) {
    EXPECT_THROW(translate(relation, "12 = 5;"), ItemNotFound) << relation;
  }
}

TEST_F(BadInput, QuotesAndParenthesesWithoutPartnerAreRefused) {
  for (const char* criteria :
       {"12 = 'X;", "12 = X';", "12 = 'O'Neill';", "12 IN (1,2;", "12 IN (;"}) {
    EXPECT_THROW(translate("JAGD_HUNDE", criteria), InvalidArgument) << criteria;
  }
  EXPECT_THAT(host.connection->statements(), IsEmpty());
}

TEST_F(BadInput, AMissingValueIsTheServersToJudge) {
  EXPECT_EQ(translate("JAGD_HUNDE", "12 = ;"), with_criterion("="));
}

TEST_F(BadInput, ASemicolonInAValueSplitsTheRecord) {
  EXPECT_THROW(translate("JAGD_HUNDE", "12 = 'a;b';"), InvalidArgument);
  EXPECT_THAT(host.connection->statements(), IsEmpty());
}

TEST_F(BadInput, AMegabyteOfTextIsOneValue) {
  const std::string value = "'" + std::string(1U << 20, 'x') + "'";
  EXPECT_EQ(translate("JAGD_HUNDE", "12 = " + value + ";"), with_criterion("= " + value));
}

TEST_F(BadInput, AMegabyteOfUmlautsIsOneValue) {
  std::string value = "'";
  for (int i = 0; i < (1 << 19); ++i) value += "ä";
  value += "'";
  EXPECT_EQ(translate("JAGD_HUNDE", "12 = " + value + ";"), with_criterion("= " + value));
}

// A suite whose FROM text does not grow.
class CompactSuite : public FakeSuite {
 public:
  std::shared_ptr<TableAccessService> table_access() override { return std::make_shared<Access>(); }

 private:
  struct Access : TableAccessService {
    void FillFieldList(std::string_view, EntryList&, const KesVar&, std::int32_t) override {}
    std::int32_t MapFieldId(std::string_view, std::int32_t id) override { return id; }
    std::string AddFieldTables(std::string_view, std::int32_t, std::string_view, std::string_view,
                               const KesVar&) override {
      return "T";
    }
    std::string GetFieldExpression(std::string_view, std::int32_t number, std::int32_t,
                                   std::int32_t, const KesVar&) override {
      return "F" + std::to_string(number);
    }
    std::string field_format(std::string_view, std::int32_t, const KesVar&) override { return "0"; }
    std::string AddTable(std::string_view, std::string_view, std::string_view) override {
      return "T";
    }
    std::string AddCondition(std::string_view, std::string_view) override { return ""; }
    std::string order_restriction(const KesVar&) override { return ""; }
  };
};

TEST(ManyRecords, EveryOneOf32767IsInTheResult) {
  EngineHost host(std::make_shared<CompactSuite>());
  std::string criteria;
  std::string expected;
  for (int i = 1; i <= 32767; ++i) {
    const std::string id = std::to_string(i);
    criteria += id + " = " + id + ";";
    expected += (i == 1 ? "F" : " AND F") + id + " = " + id;
  }
  EXPECT_EQ(host.engine.D_SelectionFromStr(host.context, "JAGD_HUNDE", "", criteria, "V", 9),
            " FROM T WHERE (" + expected + ")");
}

TEST(ManyRecords, EveryOneOf32767IsAMemberOfTheCatalogueQuery) {
  EngineHost host(std::make_shared<CompactSuite>());
  const SelektionRow field = {.id = 3, .name = "MENGE", .table = "LAGER"};
  std::vector<IndexedField> fields;
  std::string criteria;
  std::string expected;
  for (int i = 0; i < 32767; ++i) {
    fields.emplace_back(i, field);
    criteria += "3 = " + std::to_string(i) + ";";
    expected += std::string(i == 0 ? "" : " AND ") + "LAGER.MENGE = " + std::to_string(i);
  }
  host.know_type(field, FieldType::kInteger);
  host.answer_catalogue(fields, std::vector<SelektionRow>(fields.size(), field));
  EXPECT_EQ(host.engine.D_SelectionFromStr(host.context, "SONST", "WAREN", criteria, "V", 9),
            " FROM T WHERE (" + expected + ")");
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

}  // namespace
}  // namespace kestrova::test
