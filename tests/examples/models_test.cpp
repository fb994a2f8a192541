// The saved models of the sample database: who sees which, that each translates and runs, and what
// a clerk reads and picks.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "engine/comm_sel.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"
#include "tests/examples/forest_fixture.h"
#include "tests/support/fake_user_interface.h"

namespace kestrova::test {
namespace {

// The model relations of the sample database, and a relation code that uses each.
const std::map<std::string, std::string> kRelationCodes = {{"1VM", "1VM"},
                                                           {"2ABR1", "2ABR4"},
                                                           {"2ABR1-A", "2ABR1-A"},
                                                           {"1VVM", "EXP_VER0"},
                                                           {"2VABR", "2VABR3"},
                                                           {"2PVK", "2PVA3"},
                                                           {"1LV", "1LV"},
                                                           {"1EXP", "1EXP"},
                                                           {"WAREN", "WAREN"},
                                                           {"4ARB", "4ARB17"},
                                                           {"BELEG_BB", "BELEG_BB_2021"},
                                                           {"LEISTUNGS_BB", "LEISTUNGS_BB_MV"}};

// The one model that cannot be looked up by its name.
constexpr const char* kUnreachable = "O'Brien Holzhandel";

// An editor that is nothing but its field list and its value list.
class ListsOnly : public SelectionForm {
 public:
  const ComboBox& field_list() const override { return fields; }
  const ComboBox& value_list() const override { return values; }

  ComboBox fields{"cboField", ComboBox::Style::kDropDownList};
  ComboBox values{"cboValue", ComboBox::Style::kFreeText};
};

// Labour bookings make a temporary table, so these tests have a database of their own.
const std::shared_ptr<Connection>& models_forest() {
  static const std::shared_ptr<Connection> shared = make_forest();
  return shared;
}

class ForestModelList : public ::testing::Test {
 protected:
  ForestModelList() {
    const auto locale = std::make_shared<SettingsUserLocale>("DE", "DMY");
    install_host({make_standalone_suite(models_forest(), locale),
                  std::make_shared<ScriptedUserInterface>(), locale});
    module_state().theSelectionForm = form;
  }
  ~ForestModelList() override { install_host({}); }

  static Connection& db() { return *models_forest(); }

  // The users of the sample database: headquarters sees all access levels, a region its own.
  static KesVar user(std::int32_t id) {
    KesVar context = forest_user(
        "DE", id,
        id == 1 ? "SELECT ID FROM ACCESS_LEVELS"
                : "SELECT ID FROM ACCESS_LEVELS WHERE ID IN (" + std::to_string(id) + ")");
    context.dbado = models_forest();
    return context;
  }
  static KesVar headquarters() { return user(1); }
  static KesVar north() { return user(2); }
  static KesVar south() { return user(3); }

  using Entries = std::vector<ListEntry>;

  Entries listed(const KesVar& context, std::string_view code) {
    ComboBox list("Model", ComboBox::Style::kDropDownList);
    EntryListPort port(list);
    engine.Fill_ComboModel(context, port, code, false);
    EXPECT_EQ(list.index(), -1);
    return list.entries();
  }

  // The same list from a query written by hand; hidden is a condition on the models left out.
  static Entries by_hand(const std::string& relation, const std::string& hidden) {
    Entries entries = {{"", 0}};
    for (const auto& row :
         rows(db(), "SELECT ID, NAME FROM MODELS WHERE RELATION = '" + relation +
                        "' AND NOT ISNULL(ID_ACCESS_LEVELS,0) IN (" + hidden + ") ORDER BY NAME")) {
      entries.push_back({row[1], std::stoi(row[0])});
    }
    return entries;
  }

  std::string preselected(const KesVar& context, std::string_view code) {
    ComboBox list("Model", ComboBox::Style::kDropDownList);
    EntryListPort port(list);
    engine.Fill_ComboModel(context, port, code, true);
    return std::to_string(list.index()) + " " + list.text();
  }

  std::shared_ptr<ListsOnly> form = std::make_shared<ListsOnly>();
  Comm_Sel engine;
};

// --- What there is ----------------------------------------------------------------------------

TEST_F(ForestModelList, HasModelsOfEveryKind) {
  const std::string own = " FROM MODELS WHERE RELATION NOT IN ('USERFIELDS','BBFIZ')";
  EXPECT_EQ(number(db(), "SELECT COUNT(*)" + own), 60);
  EXPECT_EQ(number(db(), "SELECT COUNT(*)" + own + " AND STANDARD = 1"), 12);
  EXPECT_EQ(number(db(), "SELECT COUNT(*)" + own + " AND NICHT_ANDERBAR = 1"), 11);
  EXPECT_EQ(number(db(), "SELECT COUNT(*)" + own + " AND ID_ACCESS_LEVELS = 2"), 6);
  EXPECT_EQ(number(db(), "SELECT COUNT(*)" + own + " AND ID_ACCESS_LEVELS = 3"), 5);
  EXPECT_EQ(rows(db(), "SELECT RELATION, NAME" + own + " AND MODEL IS NULL"),
            (std::vector<std::vector<std::string>>{{"2ABR1", "Ohne Filter"}}));
  EXPECT_EQ(rows(db(), "SELECT RELATION, NAME" + own + " AND NAME LIKE '%''%'"),
            (std::vector<std::vector<std::string>>{{"2ABR1", kUnreachable}}));
  std::set<std::string> relations;
  for (const auto& row : rows(db(), "SELECT RELATION" + own)) relations.insert(row[0]);
  std::set<std::string> expected;
  for (const auto& [relation, code] : kRelationCodes) expected.insert(relation);
  EXPECT_EQ(relations, expected);
}

// --- Who sees which ---------------------------------------------------------------------------

TEST_F(ForestModelList, ShowsEachUserTheModelsOfTheirAccessLevels) {
  std::size_t seen_by_headquarters = 0;
  std::size_t seen_by_north = 0;
  std::size_t seen_by_south = 0;
  for (const auto& [relation, code] : kRelationCodes) {
    SCOPED_TRACE(relation);
    const Entries all = listed(headquarters(), code);
    const Entries northern = listed(north(), code);
    const Entries southern = listed(south(), code);
    EXPECT_EQ(all, by_hand(relation, "99"));
    EXPECT_EQ(northern, by_hand(relation, "3"));
    EXPECT_EQ(southern, by_hand(relation, "2"));
    seen_by_headquarters += all.size() - 1;
    seen_by_north += northern.size() - 1;
    seen_by_south += southern.size() - 1;
  }
  EXPECT_EQ(seen_by_headquarters, 60U);
  EXPECT_EQ(seen_by_north, 55U);
  EXPECT_EQ(seen_by_south, 54U);
}

TEST_F(ForestModelList, HidesAModelOfAnotherRegion) {
  const auto has = [](const Entries& entries, std::string_view name) {
    return std::any_of(entries.begin(), entries.end(),
                       [name](const ListEntry& entry) { return entry.text == name; });
  };
  EXPECT_TRUE(has(listed(headquarters(), "1VM"), "Nur Nord"));
  EXPECT_TRUE(has(listed(north(), "1VM"), "Nur Nord"));
  EXPECT_FALSE(has(listed(south(), "1VM"), "Nur Nord"));
  EXPECT_TRUE(has(listed(headquarters(), "2ABR1"), "FSC-Ware"));
  EXPECT_FALSE(has(listed(north(), "2ABR1"), "FSC-Ware"));
  EXPECT_TRUE(has(listed(south(), "2ABR1"), "FSC-Ware"));
}

TEST_F(ForestModelList, IsSharedByTheCodesOfAGroup) {
  for (const auto& [code, relation] : std::map<std::string, std::string>{{"2ABR8", "2ABR1"},
                                                                         {"2ABR5-A", "2ABR1-A"},
                                                                         {"EXP_VER2", "2VABR"},
                                                                         {"2PWS", "2PVK"},
                                                                         {"2TOP", "1LV"},
                                                                         {"1VN", "WAREN"},
                                                                         {"ELDAT_EXPORT", "1EXP"},
                                                                         {"1VVM", "1VVM"}}) {
    const Entries entries = listed(headquarters(), code);
    EXPECT_EQ(entries, by_hand(relation, "99")) << code;
    EXPECT_EQ(entries.size(), 6U) << code;
  }
}

TEST_F(ForestModelList, IsOneEmptyEntryForACodeWithoutModels) {
  for (const char* code : {" 1VM", "JAGD_WILD", "NICHTS", ""}) {
    EXPECT_EQ(listed(headquarters(), code), (Entries{{"", 0}})) << code;
  }
}

TEST_F(ForestModelList, SelectsTheStandardModelOfTheUser) {
  const auto position = [](const Entries& entries, std::string_view name) {
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [name](const ListEntry& entry) { return entry.text == name; });
    return std::to_string(found - entries.begin()) + " " + std::string(name);
  };
  EXPECT_EQ(preselected(headquarters(), "1VM"), position(by_hand("1VM", "99"), "Fichte stark"));
  EXPECT_EQ(preselected(north(), "1VM"), position(by_hand("1VM", "3"), "Ohne Abfuhr"));
  EXPECT_EQ(preselected(headquarters(), "2ABR6"),
            position(by_hand("2ABR1", "99"), "Abschlag Nadelholz"));
  // The south has chosen none: the entry for no model.
  EXPECT_EQ(preselected(south(), "1VM"), "0 ");
}

// --- Every model translates and runs ----------------------------------------------------------

class ForestSavedModel : public ForestModelList {
 protected:
  std::string selection(std::string_view code, std::string_view name) {
    return engine.D_Selection(headquarters(), code, name, "", level);
  }
  std::int64_t selected(std::string_view code, std::string_view name) {
    return number(db(), "SELECT COUNT(*)" + selection(code, name));
  }
  const std::int32_t level = 1;
};

TEST_F(ForestSavedModel, TranslatesAndRunsUnlessItsNameHasAnApostrophe) {
  int executed = 0;
  int narrowing = 0;
  for (const auto& model : rows(db(),
                                "SELECT RELATION, NAME, ISNULL(MODEL,'') FROM MODELS "
                                "WHERE RELATION NOT IN ('USERFIELDS','BBFIZ')")) {
    if (model[1] == kUnreachable) continue;
    const std::string& code = kRelationCodes.at(model[0]);
    SCOPED_TRACE(model[0] + " " + model[1]);
    EXPECT_EQ(selection(code, model[1]),
              engine.D_SelectionFromStr(headquarters(), code, model[0], model[2], "", level));
    const std::int64_t found = selected(code, model[1]);
    ++executed;
    // Work orders have no base tables of their own, so there is nothing to compare with.
    if (model[0] == "4ARB") continue;
    const std::int64_t all = selected(code, "");
    EXPECT_GT(all, 0);
    EXPECT_LE(found, all);
    if (found < all) ++narrowing;
  }
  EXPECT_EQ(executed, 59);
  EXPECT_GE(narrowing, 45);
}

TEST_F(ForestSavedModel, SelectsWhatAQueryByHandSelects) {
  EXPECT_EQ(selected("4ARB17", "Unerledigt"),
            number(db(),
                   "SELECT COUNT(*) FROM ARBEITSAUFTRAG_KOPF WHERE PERSONAL_ID = 17 "
                   "AND ABGESCHLOSEN = 0"));
  EXPECT_EQ(selected("4ARB", "Unerledigt"),
            number(db(), "SELECT COUNT(*) FROM ARBEITSAUFTRAG_KOPF WHERE ABGESCHLOSEN = 0"));
  EXPECT_EQ(selected("4ARB17", "Revier Tannbach"),
            number(db(),
                   "SELECT COUNT(*) FROM ARBEITSAUFTRAG_KOPF A LEFT JOIN REVIER R "
                   "ON R.ID = A.ID_REVIER WHERE A.PERSONAL_ID = 17 AND R.NAME = 'Tannbach'"));
  EXPECT_EQ(selected("WAREN", "Lagerartikel"),
            number(db(),
                   "SELECT COUNT(*) FROM WARENKATALOG WHERE ID_FORMULA IS NULL "
                   "AND ID_ACCESS_LEVELS IS NOT NULL AND LAGERFUEHREND = 1"));
  EXPECT_EQ(selected("2PVK", "Kunden in München"),
            number(db(), "SELECT COUNT(*) FROM PERSONAL WHERE KUNDE = 1 AND ORT = 'München'"));
  EXPECT_EQ(selected("2PVK", "Waldbesitzer und Lieferanten"),
            number(db(),
                   "SELECT COUNT(*) FROM PERSONAL WHERE KUNDE = 1 "
                   "AND (WALDBESITZER = 1 OR LIEFERANT = 1)"));
}

TEST_F(ForestSavedModel, WithoutTextIsTheBaseSelection) {
  EXPECT_EQ(selection("2ABR4", "Ohne Filter"), selection("2ABR4", ""));
  EXPECT_NE(selection("2ABR4", "Große Lose"), selection("2ABR4", ""));
}

TEST_F(ForestSavedModel, ThatDoesNotExistIsTheBaseSelection) {
  EXPECT_EQ(selection("2ABR4", "Gibt es nicht"), selection("2ABR4", ""));
  // Models are no group across relations.
  EXPECT_EQ(selection("2ABR4", "Fichte stark"), selection("2ABR4", ""));
  EXPECT_EQ(selection("2ABR4-A", "Offene Posten"), selection("2ABR4-A", ""));
  EXPECT_NE(selection("2ABR1-A", "Offene Posten"), selection("2ABR1-A", ""));
}

TEST_F(ForestSavedModel, WithAnApostropheInItsNameFailsAndTheNextOneWorks) {
  const std::string before = selection("2ABR4", "Große Lose");
  for (const char* code : {"2ABR1", "2ABR4"}) {
    EXPECT_THROW(selection(code, kUnreachable), InvalidArgument) << code;
    EXPECT_THROW(selection(code, "'"), InvalidArgument) << code;
  }
  EXPECT_EQ(selection("2ABR4", "Große Lose"), before);
}

TEST_F(ForestSavedModel, OfLabourBookingsFillsItsTemporaryTable) {
  const std::int64_t bookings = selected("LEISTUNGS_BB_MV", "Holzernte");
  EXPECT_GT(bookings, 0);
  EXPECT_LT(bookings, number(db(), "SELECT COUNT(*) FROM #BB_LEISTUNGS_KOPF"));
}

// --- What a clerk reads -----------------------------------------------------------------------

class ForestDescription : public ForestModelList {
 protected:
  std::string described(std::string_view code, std::string_view criteria) {
    return engine.ConditionSelStr(headquarters(), code, criteria);
  }
};

TEST_F(ForestDescription, NamesTheFieldsByTheirTextNumbers) {
  const auto model = rows(db(), "SELECT MODEL FROM MODELS WHERE NAME = 'Laufende Aufträge'");
  EXPECT_EQ(described("4ARB", model.at(0).at(0)), "1004 = Null\r\n1003 <= GETDATE()");
}

TEST_F(ForestDescription, ShowsDatesInTheFixedFormByTheirColumns) {
  EXPECT_EQ(described("4PLN", "103 >= 1/3/2025;=== ODER ===;102 = 1/3/2025;105 > 1/3/2025;"),
            "1003 >= '01.03.2025'\r\n ODER \r\n1002 = 1/3/2025\r\n1005 > 1/3/2025");
  // By a joined table, and by the expression of a relation with access levels.
  EXPECT_EQ(described("4PLN", "117 >= '1/3/2025';108 = '1/3/2025';"),
            "1017 >= '01.03.2025'\r\n1008 = '1/3/2025'");
  EXPECT_EQ(described("4ARB17", "303 IN (1/3/2025,2/3/2025);"),
            "1003 IN ('01.03.2025','02.03.2025') ");
}

TEST_F(ForestDescription, KnowsEveryModelOfTheWorkOrders) {
  int described_models = 0;
  for (const auto& model : rows(db(), "SELECT MODEL FROM MODELS WHERE RELATION = '4ARB'")) {
    std::string expected;
    std::size_t begin = 0;
    for (std::size_t end; (end = model[0].find(';', begin)) != std::string::npos; begin = end + 1) {
      const std::string record = model[0].substr(begin, end - begin);
      const std::size_t blank = record.find(' ');
      expected += (expected.empty() ? "" : "\r\n") +
                  rows(db(), "SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = " +
                                 record.substr(0, blank))[0][0] +
                  record.substr(blank);
    }
    EXPECT_EQ(described("4ARB", model[0]), expected);
    ++described_models;
  }
  EXPECT_EQ(described_models, 5);
}

TEST_F(ForestDescription, OfAFieldThatSelektionDoesNotHoldFails) {
  EXPECT_THROW(described("1VM", "703 = 'FI';"), NoCurrentRecord);
}

// --- What a clerk picks -----------------------------------------------------------------------

class ForestPick : public ForestModelList {
 protected:
  std::string picked(std::string_view relation, std::string_view nickname, std::string_view value) {
    const auto fields = db().open(
        "SELECT * FROM SELEKTION WHERE RTRIM(PARAMETER) = '" + std::string(relation) + "'",
        CursorType::kStatic, LockType::kReadOnly);
    return engine.ApcboValue(headquarters(), value, nickname, fields.get(), relation);
  }
};

TEST_F(ForestPick, IsQuotedByTheColumnOfTheField) {
  EXPECT_EQ(picked("4PLN", "AUFTRAGSNUMMER", "5"), "5");
  EXPECT_EQ(picked("4PLN", "BEZEICHNUNG", "Läuterung"), "'Läuterung'");
  EXPECT_EQ(picked("4PLN", "BEGINN", "01.03.2025"), "'01.03.2025'");
  EXPECT_EQ(picked("4PLN", "MENGE", "12.5"), "12.5");
  EXPECT_EQ(picked("4PLN", "HA", "FI"), "'FI'");
  EXPECT_EQ(picked("4PLN", "PLANDATUM", "01.03.2025"), "'01.03.2025'");
  EXPECT_EQ(picked("4PLN", "PLANMENGE", "7"), "7");
  EXPECT_EQ(picked("4PLN", "DM/EURO", "1"), "1");
  EXPECT_EQ(picked("4PLN", "LAUB/NADEL", "Nadelholz"), "'Nadelholz'");
  EXPECT_EQ(picked("4PLN", "BEZEICHNUNG", "O'Neill"), "'O'Neill'");
  EXPECT_EQ(picked("1VN", "ARTIKELNAME", "Helm"), "'Helm'");
  EXPECT_EQ(picked("1VN", "PREIS", "9.90"), "9.90");
  EXPECT_EQ(picked("1VN", "LIEFERANT_REVIER", "Tannbach"), "'Tannbach'");
}

TEST_F(ForestPick, OfEveryVisibleFieldHasTheFormOfItsColumn) {
  int fields = 0;
  for (const auto& row : rows(db(),
                              "SELECT NICKNAME_OF_FIELD, ISNULL(SQLSELECT,''), NAME_OF_FIELD, "
                              "TABLE_NAME, ISNULL(SQLVALUE,''), ISNULL(TABLE_NAME_II,'') "
                              "FROM SELEKTION WHERE RTRIM(PARAMETER) = '4PLN' AND VISIBLE = 1")) {
    SCOPED_TRACE(row[0]);
    const bool joined = !row[1].empty();
    const std::string column = joined ? row[4].substr(row[4].find('.') + 1) : row[2];
    const std::string& table = joined ? row[5] : row[3];
    const FieldType type = db().open("SELECT TOP 0 " + column + " FROM " + table,
                                     CursorType::kForwardOnly, LockType::kReadOnly)
                               ->type(std::size_t{0});
    const bool is_text_or_date = type == FieldType::kVarWChar || type == FieldType::kLongVarWChar ||
                                 type == FieldType::kDBTimeStamp;
    const std::string value = picked("4PLN", row[0], "20250301");
    EXPECT_EQ(value, is_text_or_date ? "'20250301'" : "20250301");
    rows(db(), "SELECT TOP 1 1 FROM " + table + " WHERE " + column + " = " + value);
    ++fields;
  }
  EXPECT_GE(fields, 20);
}

// A field that is computed from a joined table has no column to take its type from. The catalogue
// offers none to users.
TEST_F(ForestPick, OfAComputedFieldOfAJoinedTableHasNoColumn) {
  EXPECT_THROW(picked("4PLN", "PLANWERT", "5"), ItemNotFound);
  EXPECT_EQ(number(db(), "SELECT VISIBLE FROM SELEKTION WHERE NICKNAME_OF_FIELD = 'PLANWERT'"), 0);
}

TEST_F(ForestPick, OfAnUnknownNicknameIsNothing) {
  EXPECT_EQ(picked("4PLN", "GIBT ES NICHT", "5"), "");
  EXPECT_EQ(picked("4PLN", "", "5"), "");
  EXPECT_EQ(picked("NICHTS", "HA", "5"), "");
  EXPECT_THROW(picked("4PLN", "O'Neill", "5"), BadCriterion);
}

TEST_F(ForestPick, OfACatalogueRelationIsQuotedByTheFieldSelectedInTheEditor) {
  for (const auto& [field, expected] :
       std::map<std::int32_t, std::string>{{7, "'1'"}, {3, "'1'"}, {4, "1"}, {5, "1"}}) {
    form->fields.clear();
    form->fields.add("Feld");
    form->fields.set_item_data(0, field);
    form->fields.set_index(0);
    form->values.clear();
    form->values.add("1");
    form->values.set_index(0);
    EXPECT_EQ(engine.ApcboValue(headquarters(), "1", "", nullptr, "WAREN"), expected) << field;
    form->values.clear();
    form->values.add("Null");
    form->values.set_index(0);
    EXPECT_EQ(engine.ApcboValue(headquarters(), "Null", "", nullptr, "WAREN"), "Null") << field;
  }
}

}  // namespace
}  // namespace kestrova::test
