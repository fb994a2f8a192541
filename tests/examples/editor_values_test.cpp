// The value lists of the editor on the sample database, next to the values that plain SQL reads.
#include <algorithm>
#include <string>
#include <vector>

#include "tests/examples/editor_fixture.h"

namespace kestrova::test {
namespace {

using Texts = std::vector<std::string>;

class EditorValues : public ForestEditor {
 protected:
  EditorValues() = default;
  explicit EditorValues(std::shared_ptr<Connection> database) : ForestEditor(std::move(database)) {}

  // The values that a field offers.
  Texts offered(std::string_view field) {
    pick(editor().cboField, field);
    return texts_of(editor().cboValue);
  }
  // A user of another office.
  void become(int access_level) {
    user() = forest_user(
        "DE", access_level,
        "SELECT ID FROM ACCESS_LEVELS WHERE ID IN (" + std::to_string(access_level) + ")");
  }
};

// --- Who sees which values

struct OfficeCase {
  const char* relation;
  const char* field;
  const char* by_hand;  // the values of the office {}
};

const std::vector<OfficeCase> kOfficeCases = {
    // Catalogue relations, whose base condition holds the restriction
    {"1WL", "Auftragsnummer",
     "SELECT DISTINCT NUMMER FROM TRANSPORTLOGISTIK_KOPF WHERE ID_ACCESS_LEVELS = {} ORDER BY 1"},
    {"1WL", "Spediteur",
     "SELECT DISTINCT P.NAME FROM TRANSPORTLOGISTIK_KOPF T, PERSONAL P WHERE P.ID = T.ID_SPEDITEUR "
     "AND T.ID_ACCESS_LEVELS = {} ORDER BY 1"},
    {"EXP_VER0", "Vertragsnummer",
     "SELECT DISTINCT NUMMER FROM VERTRAEGE WHERE ID_FAKTART = 0 AND ID_ACCESS_LEVELS = {} "
     "ORDER BY 1"},
    // Restricted ones
    {"2PLIEF", "Name",
     "SELECT DISTINCT NAME FROM PERSONAL WHERE LIEFERANT = 1 AND (ID_ACCESS_LEVELS IS NULL OR "
     "ID_ACCESS_LEVELS = {}) ORDER BY 1"},
    {"WAREN", "Warengruppe",
     "SELECT DISTINCT G.NAME FROM WARENKATALOG W, WARENGRUPPE G WHERE G.ID = W.ID_WARENGRUPPE AND "
     "W.ID_FORMULA IS NULL AND W.ID_ACCESS_LEVELS = {} ORDER BY 1"},
    // The restriction of the main table, for fields of one, two and three tables
    {"1VN", "Bestand",
     "SELECT DISTINCT BESTAND FROM WARENKATALOG WHERE ID_ACCESS_LEVELS = {} ORDER BY 1"},
    {"1VN", "Lieferant",
     "SELECT DISTINCT P.NAME FROM WARENKATALOG W, PERSONAL P WHERE P.ID = W.ID_LIEFERANT AND "
     "W.ID_ACCESS_LEVELS = {} ORDER BY 1"},
    {"1VN", "Revier des Lieferanten",
     "SELECT DISTINCT R.NAME FROM WARENKATALOG W, PERSONAL P, REVIER R WHERE P.ID = W.ID_LIEFERANT "
     "AND R.ID = P.ID_REVIER AND W.ID_ACCESS_LEVELS = {} ORDER BY 1"},
};

TEST_F(EditorValues, AreThoseOfTheUsersOffice) {
  for (const OfficeCase& test : kOfficeCases) {
    SCOPED_TRACE(std::string(test.relation) + " " + test.field);
    Texts of_office[2];
    for (const int office : {2, 3}) {
      become(office);
      open(test.relation);
      std::string by_hand = test.by_hand;
      by_hand.replace(by_hand.find("{}"), 2, std::to_string(office));
      Texts expected = column(by_hand);
      const Texts values = offered(test.field);
      // NULL stands at the top of a list that can hold it.
      if (!values.empty() && values.front() == "Null" &&
          (expected.empty() || expected.front() != "Null")) {
        expected.insert(expected.begin(), "Null");
      }
      EXPECT_EQ(values, expected);
      EXPECT_GT(values.size(), 1U);
      of_office[office - 2] = values;
    }
    EXPECT_NE(of_office[0], of_office[1]) << "the offices hold different values";
  }
}

// --- How many

class EditorValuesOf100Lots : public EditorValues {
 protected:
  EditorValuesOf100Lots() : EditorValues(make_forest(100)) {}
};
class EditorValuesOf101Lots : public EditorValues {
 protected:
  EditorValuesOf101Lots() : EditorValues(make_forest(101)) {}
};

TEST_F(EditorValuesOf100Lots, AreShownWhole) {
  open("1LV");
  const Texts all = column("SELECT NUMMER FROM LOGS ORDER BY NUMMER");
  ASSERT_EQ(all.size(), 100U);
  EXPECT_EQ(offered("Losnummer"), all);
}

TEST_F(EditorValuesOf101Lots, AreShownWithoutTheFirst) {
  open("1LV");
  Texts all = column("SELECT NUMMER FROM LOGS ORDER BY NUMMER");
  ASSERT_EQ(all.size(), 101U);
  all.erase(all.begin());
  EXPECT_EQ(offered("Losnummer"), all);
}

TEST_F(EditorValues, OfAThousandLotsAreTheLastHundred) {
  open("1LV");
  const Texts all = column("SELECT DISTINCT NUMMER FROM LOGS ORDER BY NUMMER");
  EXPECT_EQ(offered("Losnummer"), Texts(all.end() - 100, all.end()));
}

TEST_F(EditorValues, OfASelektionFieldAreNotCutOff) {
  become(2);
  open("4PLN17");
  const Texts all = column("SELECT DISTINCT NUMMER FROM ARBEITSAUFTRAG_KOPF ORDER BY NUMMER");
  ASSERT_GT(all.size(), 100U);
  Texts shown = offered("Auftragsnummer");
  ASSERT_EQ(shown.front(), "Null");
  shown.erase(shown.begin());
  EXPECT_EQ(shown, all);
}

TEST_F(EditorValues, OfRelationsThatTheCatalogueDoesNotKnowAreNone) {
  for (const char* code : {"WVO", "BB"}) {
    open(code);
    EXPECT_EQ(editor().cboField.count(), 0) << code;
    EXPECT_EQ(editor().cboValue.count(), 0) << code;
  }
}

// --- NULL

TEST_F(EditorValues, OfACatalogueRelationShowNullOnceWhereTheRowsHoldIt) {
  open("1WL");
  ASSERT_GT(number(db(),
                   "SELECT COUNT(*) FROM TRANSPORTLOGISTIK_KOPF WHERE ABFUHRDATUM IS NULL AND "
                   "ID_ACCESS_LEVELS = 2"),
            1);
  const Texts dates = offered("Abfuhrdatum");
  EXPECT_EQ(dates.front(), "Null");
  EXPECT_EQ(std::count(dates.begin(), dates.end(), "Null"), 1);
  const Texts loads = offered("Fuhren");
  EXPECT_EQ(std::count(loads.begin(), loads.end(), "Null"), 0) << "never NULL in the rows";
}

TEST_F(EditorValues, OfASelektionFieldBeginWithNullUnlessItIsJoined) {
  open("4PLN17");
  EXPECT_EQ(offered("Bezeichnung").front(), "Null");
  EXPECT_EQ(offered("Merkmal 3").front(), "Null") << "also before values of a fixed list";
  for (const char* joined : {"Holzart", "Revier", "Holzartname"}) {
    const Texts values = offered(joined);
    EXPECT_EQ(std::count(values.begin(), values.end(), "Null"), 0) << joined;
  }
}

TEST_F(EditorValues, NullSelectsTheRowsWithoutAValue) {
  open("1WL");
  const Result result = run([&] { add_picked("Abfuhrdatum", "=", "Null"); });
  EXPECT_EQ(lines(), Texts{"Abfuhrdatum = Null"});
  EXPECT_EQ(column("SELECT TRANSPORTLOGISTIK_KOPF.ID" + result.from_where + " ORDER BY 1"),
            column("SELECT ID FROM TRANSPORTLOGISTIK_KOPF WHERE ABFUHRDATUM IS NULL AND "
                   "ID_ACCESS_LEVELS = 2 ORDER BY 1"));
}

// --- Where they come from, and how they are shown

TEST_F(EditorValues, OfWellKnownFieldsComeFromTheirOwnTables) {
  open("4PLN17");
  EXPECT_EQ(offered("Holzart"),
            column("SELECT HA FROM HOLZART WHERE DISABLE IS NULL OR DISABLE = 0 ORDER BY HA"));
  EXPECT_EQ(offered("Sorte"), column("SELECT HS FROM HOLZSORTE ORDER BY HS"));
  EXPECT_EQ(offered("Laub/Nadel"), column("SELECT DISTINCT LNH FROM HOLZART ORDER BY LNH"));
  EXPECT_EQ(offered("Sortiment"), column("SELECT NAME FROM DSART ORDER BY NAME"));
  for (int list = 1; list <= 10; ++list) {
    Texts expected =
        column("SELECT KURZNAME FROM RELTABLE WHERE RELTABLE_ID = " + std::to_string(list) +
               " ORDER BY KURZNAME");
    expected.insert(expected.begin(), "Null");
    // The business has a name of its own for the first.
    EXPECT_EQ(offered(list == 1 ? "Förderprogramm" : "Merkmal " + std::to_string(list)), expected);
  }
}

TEST_F(EditorValues, OfTheUnitFieldsAreTheUnits) {
  open("4PLN17");
  EXPECT_EQ(offered("Rindeprozent"), (Texts{"'cm'", "'%'"}));
  EXPECT_EQ(offered("DM/EURO"), (Texts{"DM", "EURO"}));
}

TEST_F(EditorValues, ThatAreDatesAndBooleansAreShownAsTheUserTypesThem) {
  open("1VN");
  EXPECT_EQ(offered("Lagerartikel"), (Texts{"Null", "Falsch", "Wahr"}));
  Texts dates = column(
      "SELECT DISTINCT CONVERT(nvarchar(10), ANGELEGT, 104), ANGELEGT FROM WARENKATALOG WHERE "
      "ID_ACCESS_LEVELS = 2 ORDER BY ANGELEGT");
  dates.insert(dates.begin(), "Null");
  EXPECT_EQ(offered("Angelegt am"), dates);
}

}  // namespace
}  // namespace kestrova::test
