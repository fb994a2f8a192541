// Stored filters on the sample database: what the library makes of them runs, and selects the rows
// that plain SQL selects.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <vector>

#include "engine/comm_sel.h"
#include "interface/module_state.h"
#include "platform/standalone/settings_user_locale.h"
#include "relations/relation_codes.h"
#include "tests/examples/forest_fixture.h"
#include "tests/support/fake_user_interface.h"
#include "tests/support/golden.h"

namespace kestrova::test {
namespace {

// The suite that the fixture keeps, without ownership.
std::shared_ptr<Suite> shared_suite() { return {std::shared_ptr<Suite>(), &forest_suite()}; }

class ForestFilters : public ::testing::Test {
 protected:
  ForestFilters() {
    install_host({.suite = shared_suite(),
                  .user_interface = ui_,
                  .user_locale = std::make_shared<SettingsUserLocale>("DE", "DMY")});
  }

  std::string translate(std::string_view code, std::string_view mode, std::string_view criteria) {
    return Comm_Sel().D_SelectionFromStr(user_, code, mode, criteria, "", 0);
  }

  std::int64_t count(const std::string& from_where) {
    return number(*forest(), "SELECT COUNT(*)" + from_where);
  }

  std::shared_ptr<ScriptedUserInterface> ui_ = std::make_shared<ScriptedUserInterface>();
  KesVar user_ = forest_user();
};

TEST_F(ForestFilters, SelectTheRowsThatPlainSqlSelects) {
  for (const auto& row : golden::read(KESTROVA_GOLDEN_DIR "/filters.tsv")) {
    SCOPED_TRACE(row.place());
    const std::string text = translate(row["code"], row["mode"], row["criteria"]);
    const std::int64_t rows_by_hand = number(*forest(), row["counted_by_hand"]);
    EXPECT_EQ(count(text), rows_by_hand) << text;
    EXPECT_GT(rows_by_hand, 0) << "a filter that selects nothing compares nothing";
  }
}

// --- Every relation with every operator

// A criterion per operator for the fields of one type. Filters on NULL stand for all of them.
struct TypeFilters {
  std::int16_t type;
  std::vector<std::string_view> endings;
};

const std::vector<TypeFilters>& type_filters() {
  static const std::vector<TypeFilters> filters = {
      {202,
       {"= 'Fichte'", "> 'B'", "< 'M'", ">= 'B'", "<= 'M'", "<> 'O''Brien'", "LIKE '%ä%'",
        "IN ('A','B')", "= NULL", "<> NULL"}},
      {203, {"= 'Fichte'", "> 'B'", "< 'M'", ">= 'B'", "<= 'M'", "<> 'x'", "LIKE '%ä%'", "= NULL"}},
      {7,
       {"= '15.03.2025'", "> GETDATE()-30", "< GETDATE()+1.5", ">= '2025-01-01'", "<= '20251231'",
        "<> '01.02.2025'", "IN ('15.03.2025','16.03.2025')", "= NULL", "<> NULL"}},
      {135,
       {"= '15.03.2025'", "> GETDATE()-30", "< GETDATE()+1.5", ">= '2025-01-01'", "<= '20251231'",
        "<> '01.02.2025'", "IN ('15.03.2025','16.03.2025')", "= NULL", "<> NULL"}},
      {3, {"= 1", "> 1", "< 100", ">= 1", "<= 100", "<> 7", "IN (1,2,3)", "= NULL", "<> NULL"}},
      {2, {"= 1", "> 1", "< 100", ">= 1", "<= 100", "<> 7", "IN (1,2,3)", "= NULL", "<> NULL"}},
      {5, {"= 1.5", "> 1", "< 9.25", ">= 1", "<= 1.5", "<> 7", "IN (1.5,2)", "= NULL", "<> NULL"}},
      {131,
       {"= 1.5", "> 1", "< 9.25", ">= 1", "<= 1.5", "<> 7", "IN (1.5,2)", "= NULL", "<> NULL"}},
      {11, {"= 1", "= 0", "= NULL"}},
      {0, {"= NULL", "<> NULL"}},
  };
  return filters;
}

// A relation code with the mode in which it is translated.
struct Subject {
  std::string code;
  std::string mode;
};

// Every code that the tables name and the translator serves: exact ones, and prefixes with
// something behind them. The fields of "HIZBB_SELEKTION_" alone have no table.
std::vector<Subject> subjects() {
  std::vector<Subject> result = {{"4ARB17", "4ARB"}, {"4PLN17", "4ARB"}, {"1VN", "WAREN"}};
  for (std::string code : known_relation_codes()) {
    if (code.ends_with('*')) code.back() = '7';
    if (IsCatalogueRelation(code) && !GetRelationTableKey(code).empty()) {
      result.push_back({code, ""});
    }
  }
  return result;
}

// One field of each type that the relation offers. (Two fields hold the words for true and false in
// place of the boolean that their type says; filters on them stand in the golden table.)
std::map<std::int16_t, std::int16_t> field_per_type(const KesVar& user, const std::string& code) {
  std::vector<std::int16_t> ids;
  if (IsCatalogueRelation(code) || IsRestrictedRelation(code)) {
    for (std::int16_t id = 1; id <= 3000; ++id) {
      if (forest_suite().table_access()->MapFieldId(code, id) != 0) ids.push_back(id);
    }
  } else {
    for (const auto& row : rows(*forest(),
                                "SELECT ID_SELEKTION FROM SELEKTION WHERE VISIBLE = 1 AND "
                                "NICKNAME_OF_FIELD NOT IN ('ABGESCHLOSEN', 'STATUS') AND "
                                "RTRIM(LTRIM(PARAMETER)) = '" +
                                    code.substr(0, 4) + "'")) {
      ids.push_back(static_cast<std::int16_t>(std::stoi(row[0])));
    }
  }
  std::map<std::int16_t, std::int16_t> result;
  for (const std::int16_t id : ids) {
    result.emplace(Comm_Sel().Get_TypeOfFieldFromID(user, id, code), id);
  }
  return result;
}

TEST_F(ForestFilters, RunForEveryRelationTypeAndOperator) {
  std::size_t relations = 0;
  for (const Subject& subject : subjects()) {
    SCOPED_TRACE(subject.code);
    const auto fields = field_per_type(user_, subject.code);
    EXPECT_GE(fields.size(), 4U) << "text, date, whole number, number with decimals";
    for (const auto& [type, id] : fields) {
      const auto filters =
          std::find_if(type_filters().begin(), type_filters().end(),
                       [type = type](const TypeFilters& f) { return f.type == type; });
      ASSERT_NE(filters, type_filters().end()) << "type " << type << " of field " << id;
      for (const std::string_view ending : filters->endings) {
        const std::string criteria = std::to_string(id) + " " + std::string(ending) + ";";
        SCOPED_TRACE(criteria);
        const std::string text = translate(subject.code, subject.mode, criteria);
        EXPECT_NO_THROW(count(text)) << text;
      }
    }
    ++relations;
  }
  EXPECT_GE(relations, 100U);
}

TEST_F(ForestFilters, AFilterAndItsOppositeTogetherSelectEveryRow) {
  for (const Subject& subject : subjects()) {
    SCOPED_TRACE(subject.code);
    const std::string id = std::to_string(field_per_type(user_, subject.code).begin()->second);
    const std::int64_t without = count(translate(subject.code, subject.mode, id + " = NULL;"));
    const std::int64_t with = count(translate(subject.code, subject.mode, id + " <> NULL;"));
    const std::int64_t either = count(
        translate(subject.code, subject.mode, id + " = NULL;=== ODER ===;" + id + " <> NULL;"));
    EXPECT_EQ(without + with, either);
  }
}

TEST_F(ForestFilters, ALabourBookingFillsItsTableWithTheRowsOfTheRelation) {
  const std::string text = translate("LEISTUNGS_BB", "", "5 > 4;");
  EXPECT_EQ(number(*forest(), "SELECT COUNT(*) FROM #BB_LEISTUNGS_KOPF"),
            number(*forest(), "SELECT COUNT(*) FROM BB_LEISTUNGS_KOPF WHERE ID_ACCESS_LEVELS = 2"));
  EXPECT_EQ(
      number(*forest(),
             "SELECT COUNT(*) FROM #BB_LEISTUNGS_KOPF WHERE ID IN (SELECT BB_LEISTUNGS_KOPF.ID" +
                 text + ")"),
      number(*forest(),
             "SELECT COUNT(*) FROM BB_LEISTUNGS_KOPF WHERE ID_ACCESS_LEVELS = 2 AND STUNDEN > 4"));
}

}  // namespace
}  // namespace kestrova::test
