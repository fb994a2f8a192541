// Which fields of a list the editor leaves out: by the mapping of their numbers in either
// direction, and by the two lists that a business keeps among its models. Every test changes the
// catalogue of its own database before the suite reads it.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "tests/examples/editor_fixture.h"

namespace kestrova::test {
namespace {

class EditorPruning : public ForestEditor {
 protected:
  EditorPruning() : ForestEditor(small_forest()) { db().execute("BEGIN TRANSACTION"); }
  ~EditorPruning() override { db().execute("ROLLBACK TRANSACTION"); }

  static const std::shared_ptr<Connection>& small_forest() {
    static const std::shared_ptr<Connection> shared = make_forest(10);
    return shared;
  }

  // What the relation offers, in the order of the list.
  std::vector<int> offered(const std::string& code) {
    open(code);
    return numbers_of(editor().cboField);
  }
  bool offers(const std::string& code, int id) {
    const std::vector<int> ids = offered(code);
    return std::find(ids.begin(), ids.end(), id) != ids.end();
  }
  void unmap(const std::string& code, int number) {
    EXPECT_EQ(db().execute("DELETE FROM SUITE_FIELD_MAP WHERE RELATION = '" + code +
                           "' AND FIELD_ID = " + std::to_string(number)),
              1);
  }
  void map(const std::string& code, int id, int number) {
    db().execute("INSERT INTO SUITE_FIELD_MAP (RELATION, IS_PREFIX, FIELD_ID, FIELD_NO) VALUES ('" +
                 code + "', 0, " + std::to_string(id) + ", " + std::to_string(number) + ")");
  }
  void set_list(const std::string& relation, const std::string& list) {
    EXPECT_EQ(db().execute("UPDATE MODELS SET MODEL = '" + list + "' WHERE RELATION = '" +
                           relation + "'"),
              1);
  }
};

TEST_F(EditorPruning, LotRunsGoBackFromTheNumbersOfTheLots) {
  unmap("1VM_REVERS", 5);
  for (const char* run : {"1VM", "2ABR1", "2ABR8"}) {
    EXPECT_FALSE(offers(run, 705)) << run;
    EXPECT_TRUE(offers(run, 704)) << run;
  }
  for (const char* other : {"1LV", "1EXP", "VERTP7", "HIZ_SELEKTION_7"}) {
    EXPECT_TRUE(offers(other, 705)) << other;
  }
}

TEST_F(EditorPruning, InvoiceRunsGoBackFromTheNumbersOfTheInvoices) {
  unmap("1VM-A_REVERS", 3);
  for (const char* run : {"1VM-A", "2ABR1-A", "2ABR8-A"}) {
    EXPECT_FALSE(offers(run, 1503)) << run;
    EXPECT_TRUE(offers(run, 1504)) << run;
  }
  EXPECT_TRUE(offers("WIZ", 3));
}

TEST_F(EditorPruning, RelationsOfLotsTurnTheirOwnMappingRound) {
  unmap("1LV", 705);
  map("1LV", 2900, 5);
  EXPECT_FALSE(offers("1LV", 705));
  EXPECT_TRUE(offers("1LV", 2900));
}

TEST_F(EditorPruning, TurningRoundTakesIdentifiersUpTo3000) {
  unmap("1LV", 705);
  map("1LV", 3000, 5);
  EXPECT_TRUE(offers("1LV", 3000));
}

TEST_F(EditorPruning, TurningRoundTakesNoIdentifierAbove3000) {
  unmap("1LV", 705);
  map("1LV", 3001, 5);
  EXPECT_FALSE(offers("1LV", 3001));
}

TEST_F(EditorPruning, TurningRoundDropsNumbersOutside1To3000) {
  const std::vector<int> before = offered("1EXP");
  map("1LV", 2801, 3001);
  map("1LV", 2802, 40000);
  map("1LV", 2803, -5);
  map("1LV", 2804, 0);
  std::vector<int> without_sale = before;
  // 1LV offers the remark, which 1EXP does not, and no sale.
  const auto place = std::find(without_sale.begin(), without_sale.end(), 717);
  without_sale.insert(place, 716);
  std::erase_if(without_sale, [](int id) { return id >= 723 && id <= 725; });
  EXPECT_EQ(offered("1LV"), without_sale);
}

TEST_F(EditorPruning, OfTwoIdentifiersOfANumberTheHigherCounts) {
  map("NML", 1900, 12);
  EXPECT_TRUE(offers("NML", 1900));
  EXPECT_FALSE(offers("NML", 712));
}

TEST_F(EditorPruning, OtherRelationsMapTheNumberByTheirOwnCode) {
  unmap("WAREN", 4);
  map("WAREN", 4, 44);
  unmap("WAREN", 7);
  // The number becomes what the mapping answers for it, and a number without an answer goes.
  EXPECT_EQ(offered("WAREN"), (std::vector<int>{1, 2, 3, 44, 5, 6, 8, 9}));
}

TEST_F(EditorPruning, TheUserFieldsListHidesFieldsOfTheLotSelection) {
  set_list("USERFIELDS", "3, 12 ,,x,28,3001,-1,99999999999");
  for (const int hidden : {703, 712, 728}) {
    EXPECT_FALSE(offers("HIZ_SELEKTION_7", hidden)) << hidden;
    EXPECT_TRUE(offers("VERTP7", hidden)) << hidden;
    EXPECT_TRUE(offers("1VM", hidden)) << hidden;
  }
  EXPECT_EQ(offered("HIZ_SELEKTION_7").size(), 28U - 3U);
}

TEST_F(EditorPruning, WithoutAUserFieldsListNothingIsHidden) {
  db().execute("DELETE FROM MODELS WHERE RELATION = 'USERFIELDS'");
  EXPECT_EQ(offered("HIZ_SELEKTION_7").size(), 28U);
}

TEST_F(EditorPruning, TheWorkOrderListNamesTheFieldsThatAreOffered) {
  set_list("BBFIZ", "309, 301,777");
  EXPECT_EQ(offered("4ARB17"), (std::vector<int>{301, 309})) << "in the order of the catalogue";
  EXPECT_EQ(offered("4ARB"), (std::vector<int>{301, 309}));
  EXPECT_EQ(offered("BBF").size(), 9U);
}

TEST_F(EditorPruning, WithoutAWorkOrderListNoFieldIsOffered) {
  db().execute("DELETE FROM MODELS WHERE RELATION = 'BBFIZ'");
  EXPECT_EQ(offered("4ARB17"), std::vector<int>());
}

}  // namespace
}  // namespace kestrova::test
